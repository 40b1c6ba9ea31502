#include "shell/Workstation.h"

#include "document/SoundFileCommands.h"
#include "dsp/SignalTables.h"
#include "shell/CommandTable.h"
#include "spectral/SpectrogramCommands.h"

namespace parlowen {
namespace {

constexpr int kLeastForAnalysis = 2000;   // samples that a cut or pasted sound needs for its picture to be made anew

constexpr std::pair<const char*, int> kFunctionKeys[] = {{"F1", 270}, {"F5", 220}, {"F6", 170}, {"F7", 180}, {"F8", 210}};

/// Menus whose commands are tools: choosing one ends the tool before it.
bool IsTool(Menu menu) {
  return menu == Menu::Pitch || menu == Menu::Tone || menu == Menu::Spectrum || menu == Menu::Vowel ||
         menu == Menu::Palate;
}

}  // namespace

Workstation::Workstation(Window& ownWindow, std::string folder)
    : window(ownWindow), view(ownWindow, document, states, spectrogram), dataFolder(std::move(folder)) {
  InitSignalTables();
}

bool Workstation::dispatchCommand(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || !states.IsEnabled(number)) return false;
  if (IsTool(row->menu)) view.EndTool();
  RunCommand(*this, *row);
  DocumentChanged();
  return true;
}

void Workstation::OpenFile(const std::string& path) {
  openPath(window, document, states, path, ChannelMode::One, false);
  DocumentChanged();
}

void Workstation::Select(int start, int end) {
  view.Select(start, end);
  DocumentChanged();
}

void Workstation::Click(Pane pane, Point at, MouseButton button, bool shift) {
  view.Click(pane, at, button, shift);
  DocumentChanged();
}

bool Workstation::Key(const std::string& key) {
  if (key == "Space") return dispatchCommand(document.selectionDefined() ? 160 : 40023);
  for (const auto& [name, command] : kFunctionKeys)
    if (key == name) return dispatchCommand(command);
  const bool used = view.Key(key);
  DocumentChanged();
  return used;
}

void Workstation::DocumentChanged() {
  states.enableCommand(40015, document.activity == activities::kRegionChosen);
  if (seenGeneration_ != document.soundGeneration) {
    seenGeneration_ = document.soundGeneration;
    seenSamples_ = document.samplesVersion;
    seenCount_ = document.sampleCount;
    spectrogram = {};
    view.Reset();
    window.Repaint();
    return;
  }
  if (seenSamples_ == document.samplesVersion) return;
  seenSamples_ = document.samplesVersion;
  const bool resized = seenCount_ != document.sampleCount;
  seenCount_ = document.sampleCount;
  if (!spectrogram.shown) return;
  if (resized && document.sampleCount < kLeastForAnalysis) {
    spectrogram = {};
  } else {
    RedrawSpectrogram(document, spectrogram);
  }
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
