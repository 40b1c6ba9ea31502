#include "articulation/ArticulationWindow.h"

#include <algorithm>
#include <memory>

#include "base/Files.h"
#include "spectral/Formants.h"
#include "spectral/ToolTexts.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "普通话声韵母发音的唇位、舌位图";
constexpr UiText kDemonstrateButton = "演示", kEstimateButton = "由选定段估计";
constexpr UiText kHint = "左键、↑↓：选音；←→：动作的各步";
constexpr UiText kNoRecording = "没有该音的声音文件！";
constexpr UiText kRateTooHigh = "采样频率太高，请先转换！";
constexpr UiText kNoFormants = "所选段没有共振峰！";

constexpr int kPlay = 1701, kDemonstrate = 1702, kEstimate = 1703;
constexpr int kStepMilliseconds = 80;

class ArticulationWindow : public ToolWindow {
 public:
  explicit ArticulationWindow(const ArticulationDesk& desk) : desk_(desk) {}

  std::string Name() const override { return "articulation"; }
  std::string Title() const override { return kTitle; }
  std::vector<ToolControl> Controls() const override {
    return {{kPlay, messages::kPlay, true},
            {kDemonstrate, kDemonstrateButton, true},
            {kEstimate, kEstimateButton, true}};
  }
  Point PreferredSize() const override { return {900, 500}; }
  Picture Draw(int width, int height) const override {
    return ArticulationPicture(desk_.state, width, height);
  }

  void Click(Window& window, Point at, MouseButton button, bool) override {
    const int sound = SoundUnder(at);
    if (button == MouseButton::Left && sound >= 0) Choose(window, sound);
  }
  bool Key(Window& window, const std::string& key) override {
    ArticulationState& state = desk_.state;
    if (key == "Up" || key == "Down") {
      Choose(window, std::clamp(state.sound + (key == "Up" ? -1 : 1), 0, kMandarinSounds - 1));
    } else if (key == "Left" || key == "Right") {
      state.demonstrating = false;
      state.step = std::clamp(state.step + (key == "Left" ? -1 : 1), 0, LastStepOf(state.Sound()));
      window.Repaint();
    } else {
      return false;
    }
    return true;
  }
  void Press(Window& window, const ToolControl& control) override {
    ArticulationState& state = desk_.state;
    switch (control.number) {
      case kPlay: return Play(window);
      case kDemonstrate:
        state.step = 0;
        state.demonstrating = LastStepOf(state.Sound()) > 0;
        return window.Repaint();
      case kEstimate: return EstimateFromSelection(window, desk_.document, state);
      default: return;
    }
  }
  int TickMilliseconds() const override { return desk_.state.demonstrating ? kStepMilliseconds : 0; }
  void Tick(Window& window) override {
    ArticulationState& state = desk_.state;
    const int last = LastStepOf(state.Sound());
    state.step = std::min(state.step + 1, last);
    state.demonstrating = state.step < last;
    window.Repaint();
  }
  std::string Hover(Point at) const override {
    const int sound = SoundUnder(at);
    if (sound < 0) return {};
    const MandarinSound& under = MandarinSounds()[static_cast<std::size_t>(sound)];
    return std::string(under.key) + "  [" + under.ipa + "]  " + under.description.Get();
  }
  std::string Instructions() const override { return kHint; }
  void Closed(Window&) override { desk_.state.demonstrating = false; }

 private:
  void Choose(Window& window, int sound) {
    if (sound != desk_.state.sound) desk_.state.step = 0;
    desk_.state.sound = sound;
    desk_.state.demonstrating = false;
    window.Repaint();
  }
  void Play(Window& window) {
    const std::string path = desk_.dataFolder + "/pinyin/" + desk_.state.Sound().file + ".wav";
    if (!desk_.play || !desk_.play(window, path)) window.ShowStatus(kNoRecording);
  }

  ArticulationDesk desk_;
};

}  // namespace

void ShowArticulationCommand(Window& window, const ArticulationDesk& desk) {
  window.OpenToolWindow(std::make_unique<ArticulationWindow>(desk));
}

void EstimateFromSelection(Window& window, const SoundDocument& document, ArticulationState& state) {
  if (!document.selectionDefined()) return window.ShowStatus(messages::kMarkFirst);
  if (document.sampleRate >= kHighRate) return window.Notify(kRateTooHigh);
  LpcAnalyser analyser;
  const auto formants = MedianFormants(FormantTrack(
      document.Samples(), document.sampleRate, document.selectionStart, document.selectionEnd, analyser));
  if (!formants) return window.Notify(kNoFormants);
  state.estimate = EstimateTract(*formants);
  state.estimatedSound = document.Stamp();
  window.Repaint();
}

}  // namespace parlowen
