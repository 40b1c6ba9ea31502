#pragma once
#include <map>

#include "document/SoundFileCommands.h"
#include "dsp/SignalTables.h"
#include "support/FakeWindow.h"
#include "vowel/VowelState.h"

namespace parlowen::testing {

/// A FakeWindow that also keeps the open tool window and fills forms with several fields:
/// "set:1000=283,1008=2350".
class ChartWindow : public FakeWindow {
 public:
  std::unique_ptr<ToolWindow> tool;

  bool AskInput(InputForm& form) override {
    const std::string answer = answers.empty() ? "" : answers.front();
    if (answer.starts_with("set:")) {
      log.push_back("input|" + form.title + "|" + form.fields[0].value + "," + form.fields[1].value);
      form.fields[0].value = answer.substr(9, answer.find(',') - 9);
      form.fields[1].value = answer.substr(answer.rfind('=') + 1);
    } else {
      return FakeWindow::AskInput(form);
    }
    answers.pop_front();
    return true;
  }
  void OpenToolWindow(std::unique_ptr<ToolWindow> opened) override {
    if (tool) tool->Closed(*this);
    tool = std::move(opened);
    log.push_back("window|" + tool->Name());
  }
};

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
  ChartWindow window;
  CommandStates states;
  SoundDocument document;
  VowelState vowels;
};

inline constexpr struct {
  const char* name;
  double f1, f2, f3;
} kVowels[] = {{"a", 760, 1280, 2500}, {"o", 480, 850, 2450},  {"ɤ", 500, 1250, 2450},
               {"i", 290, 2300, 3000}, {"u", 330, 720, 2350},  {"y", 290, 1950, 2350},
               {"ɛ", 560, 1750, 2500}, {"ɚ", 520, 1350, 1750}, {"ɿ", 370, 1400, 2650}};

/// The middle of a vowel.
inline int MiddleOf(int vowel) { return vowel * 7200 + 3200; }

}  // namespace parlowen::testing
