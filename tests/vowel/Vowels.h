#pragma once
#include "document/SoundFileCommands.h"
#include "dsp/SignalTables.h"
#include "support/FakeWindow.h"
#include "support/Vowels.h"
#include "vowel/VowelState.h"

namespace parlowen::testing {

/// What a handler needs, with the nine synthetic vowels loaded: 0.45 s each, F0 near 110 Hz, formants as the
/// sounds' manifest tells them.
struct VowelStation {
  VowelStation() {
    InitSignalTables();
    openByName(window, document, states,
               PARLOWEN_SOURCE_DIR "/sounds/synthetic_vowels_two_channels_16000.wav");
    window.log.clear();
  }
  void Select(int start, int end) {
    document.selectionStart = start;
    document.selectionEnd = end;
  }
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  VowelState vowels;
};

/// The middle of a vowel.
inline int MiddleOf(int vowel) { return vowel * 7200 + 3200; }

}  // namespace parlowen::testing
