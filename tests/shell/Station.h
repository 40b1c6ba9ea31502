#pragma once
#include "shell/Workstation.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen::testing {

/// A whole workstation with a window that writes down what happens, and a folder for its help pages and
/// sounds.
struct Station {
  TempFolder folder;
  FakeWindow window;
  Workstation w{window, folder.path()};

  void Load(std::vector<std::int16_t> samples, std::uint32_t rate = 16000, const std::string& behind = "") {
    WavBytes wav;
    wav.samples = std::move(samples);
    wav.rate = rate;
    wav.behind = behind;
    w.OpenFile(WriteFile(folder / "sound1.wav", wav.Bytes()));
    if (!window.Log().empty()) std::abort();
  }
  void Click(Pane pane, int x, MouseButton button = MouseButton::Left, bool shift = false) {
    w.Click(pane, {x, 5}, button, shift);
  }
};

}  // namespace parlowen::testing
