#include "spectral/FrameCommands.h"

#include <algorithm>
#include <memory>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "spectral/FramePicture.h"
#include "spectral/ToolTexts.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kFrameTitle = "帧参数";
constexpr UiText kComparisonTitle = "两帧的参数比较";
constexpr UiText kFrameLine = "%.0f Hz  窄带 %.1f  LPC %.1f";
constexpr UiText kVoicedOrNot = "是浊音(YES)?清音(NO)?";

int FramePosition(const SoundDocument& document) {
  return document.selectionStart >= 0 ? document.selectionStart
                                      : document.viewStart + document.viewLength / 2;
}

class FrameWindow : public ToolWindow {
 public:
  FrameWindow(SoundDocument& document, FrameState& state) : document_(document), state_(state) {}
  std::string Name() const override { return "frame"; }
  std::string Title() const override { return kFrameTitle; }
  Picture Draw(int width, int height) const override {
    height_ = height;
    return FramePicture(state_, width, height);
  }
  std::string Hover(Point at) const override {
    const int k = FramePlot(state_.sampleRate, height_).PointAt(at.x);
    if (!state_.hasFrame || k < 0) return {};
    const auto point = static_cast<std::size_t>(k);
    return Format(kFrameLine.Get(), k * state_.sampleRate / 512.0, state_.frame.narrow[point],
                  state_.frame.lpc[point]);
  }
  std::string Text() const override { return state_.hasFrame ? JoinLines(FrameLines(state_.frame)) : ""; }
  void Closed(Window& window) override {
    state_.frameOpen = false;
    EndActivity(window, document_, Activity::Frame);
  }

 private:
  SoundDocument& document_;
  FrameState& state_;
  mutable int height_ = 640;  ///< as drawn last
};

class ComparisonWindow : public ToolWindow {
 public:
  ComparisonWindow(SoundDocument& document, FrameState& state) : document_(document), state_(state) {}
  std::string Name() const override { return "compare"; }
  std::string Title() const override { return kComparisonTitle; }
  Picture Draw(int width, int height) const override {
    Picture picture{width, height, {}};
    picture.Add(ComparisonPicture(state_));
    return picture;
  }
  Point PreferredSize() const override { return {kComparisonWidth, kComparisonHeight}; }
  std::string Hover(Point at) const override {
    const int k = ComparisonPlot(state_).PointAt(at.x);
    if (!state_.hasComparison || k < 0) return {};
    const auto point = static_cast<std::size_t>(k);
    return Format("%.0f Hz  A %.1f  B %.1f", k * state_.sampleRate / 512.0, state_.comparison.a.curve[point],
                  state_.comparison.b.curve[point]);
  }
  std::string Text() const override {
    return state_.hasComparison ? JoinLines(ComparisonLines(state_.comparison)) : "";
  }
  void Closed(Window& window) override {
    state_.comparisonOpen = false;
    EndActivity(window, document_, Activity::Compare);
  }

 private:
  SoundDocument& document_;
  FrameState& state_;
};

void TakeFrame(const SoundDocument& document, FrameState& state, LpcAnalyser& analyser) {
  state.frame = AnalyseFrame(document, FramePosition(document), analyser);
  state.sampleRate = document.sampleRate;
  state.sound = document.Stamp();
  state.hasFrame = true;
}

void TakeComparison(const SoundDocument& document, FrameState& state, bool voiced, LpcAnalyser& analyser) {
  state.comparison =
      CompareFrames(document, document.selectionStart, document.selectionEnd, voiced, analyser);
  state.sampleRate = document.sampleRate;
  state.sound = document.Stamp();
  state.hasComparison = true;
}

bool BothMarked(const SoundDocument& document) {
  return document.selectionStart >= 0 && document.selectionEnd >= 0;
}

}  // namespace

void ShowFrameCommand(Window& window, SoundDocument& document, FrameState& state, LpcAnalyser& analyser) {
  TakeFrame(document, state, analyser);
  state.shownStart = document.selectionStart;
  state.shownEnd = document.selectionEnd;
  window.OpenToolWindow(std::make_unique<FrameWindow>(document, state));
  state.frameOpen = true;
  document.BeginTool(Activity::Frame);
  window.Repaint();
}

bool CompareFramesCommand(Window& window, SoundDocument& document, FrameState& state, LpcAnalyser& analyser) {
  if (!BothMarked(document)) {
    window.ShowStatus(messages::kMarkFirst);
    return false;
  }
  const bool voiced = window.AskYesNo(kVoicedOrNot, window.Caption());
  TakeComparison(document, state, voiced, analyser);
  state.shownStart = document.selectionStart;
  state.shownEnd = document.selectionEnd;
  window.OpenToolWindow(std::make_unique<ComparisonWindow>(document, state));
  state.comparisonOpen = true;
  document.BeginTool(Activity::Compare);
  window.Repaint();
  return true;
}

void FollowSelectedFrames(Window& window, const SoundDocument& document, FrameState& state,
                          LpcAnalyser& analyser) {
  if (!state.frameOpen && !state.comparisonOpen) return;
  if (state.shownStart == document.selectionStart && state.shownEnd == document.selectionEnd) return;
  state.shownStart = document.selectionStart;
  state.shownEnd = document.selectionEnd;
  if (state.frameOpen && document.selectionStart >= 0) TakeFrame(document, state, analyser);
  if (state.comparisonOpen && BothMarked(document))
    TakeComparison(document, state, state.comparison.voiced, analyser);
  window.Repaint();
}

}  // namespace parlowen
