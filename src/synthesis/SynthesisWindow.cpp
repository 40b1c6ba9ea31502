#include "synthesis/SynthesisWindow.h"

#include <algorithm>
#include <cctype>

#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kSynthesize = 1, kLeave = 2, kSave = 1034, kPlayOriginal = 1036, kLoadRecord = 1101,
              kScale = 1102, kLoadOther = 1103;
constexpr int kLargestZoom = 16;

constexpr UiText kTitle = "选定段按给定音高合成声音";
constexpr UiText kSynthesizeButton = "合成放音";
constexpr UiText kLeaveButton = "退出";
constexpr UiText kSaveButton = "保存合成音";
constexpr UiText kPlayOriginalButton = "播放原音";
constexpr UiText kLoadOtherButton = "调入PitchTier";
constexpr UiText kInstructions =
    "在上面窗口中用鼠标左键从左到右设置所需合成音高的值（只浊音部分有效），至少两个点，也可按住左键画，右键结束一次设定"
    "（绿线为原音高，红线为设置值）";
constexpr UiText kTooManyPoints = "一次设定最多 50 个点，请用鼠标右键结束";

/// The contour of a job's frames; frames that it does not have are unvoiced.
std::vector<float> PresentContour(const SoundDocument& document, const SynthesisJob& job) {
  std::vector<float> present(static_cast<std::size_t>(std::max(0, job.frames)), kUnvoiced);
  for (int i = 0; i < job.frames && job.firstFrame + i < document.ContourLength(); ++i)
    present[static_cast<std::size_t>(i)] = document.pitch[static_cast<std::size_t>(job.firstFrame + i)];
  return present;
}

}  // namespace

SynthesisWindow::SynthesisWindow(const SynthesisDesk& desk)
    : desk_(desk), present_(PresentContour(desk.document, desk.state.job)) {}

std::string SynthesisWindow::Title() const { return kTitle; }

std::string SynthesisWindow::Instructions() const { return kInstructions; }

std::vector<ToolControl> SynthesisWindow::Controls() const {
  const bool voiced = std::any_of(present_.begin(), present_.end(), [](float period) { return period >= 1; });
  return {{kSynthesize, kSynthesizeButton, true},
          {kLeave, kLeaveButton, true},
          {kSave, kSaveButton, desk_.state.job.ready},
          {kPlayOriginal, kPlayOriginalButton, true},
          {kLoadRecord, kLoadRecordTitle, true},
          {kScale, kScaleTitle, voiced},
          {kLoadOther, kLoadOtherButton, static_cast<bool>(desk_.readTarget)}};
}

Picture SynthesisWindow::Draw(int width, int height) const {
  SynthesisView view = view_;
  const SynthesisJob& job = desk_.state.job;
  view.cursor = desk_.player.CursorIn(job.output.data());
  if (const auto original = desk_.player.CursorSample()) view.cursor = *original - job.start;
  return SynthesisPicture(desk_.state, present_, drawing_.points(), view, width, height);
}

void SynthesisWindow::Click(Window& window, Point at, MouseButton button, bool) {
  TargetCurve& target = desk_.state.target;
  if (button == MouseButton::Right) {
    drawing_.End(target, present_);
  } else if (at.x < 0) {
    return;
  } else {
    const auto result = drawing_.AddPoint(target, {view_.FrameAt(at.x), at.y}, desk_.state.job.sampleRate);
    if (result == TargetDrawing::Result::Full) window.Notify(kTooManyPoints);
  }
  window.Repaint();
}

void SynthesisWindow::Drag(Window& window, Point at) {
  drawing_.DrawTo(desk_.state.target, {view_.FrameAt(std::max(0, at.x)), at.y}, desk_.state.job.sampleRate);
  window.Repaint();
}

bool SynthesisWindow::Key(Window& window, const std::string& key) {
  std::string name = key;
  if (name.size() == 1) name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  const bool playing = desk_.player.playing();
  const int page = VisibleWidth();
  if (name == "T" || (playing && (name == "Space" || name == "Escape"))) {
    desk_.player.stopPlayback();
  } else if (name == "Space") {
    Synthesize(window);
  } else if (name == "Escape") {
    closing_ = true;
  } else if (name == "X" || name == "S") {
    ZoomTo(name == "X" ? view_.zoom * 2 : view_.zoom / 2);
  } else if (name == "Left" || name == "Right") {
    ScrollTo(window, view_.scroll + (name == "Left" ? -page : page) / 10);
  } else if (name == "PageUp" || name == "PageDown") {
    ScrollTo(window, view_.scroll + (name == "PageUp" ? -page : page));
  } else if (name == "Home" || name == "End") {
    ScrollTo(window, name == "Home" ? 0 : LargestScroll());
  } else {
    return false;
  }
  return true;
}

void SynthesisWindow::Press(Window& window, const ToolControl& control) {
  switch (control.number) {
    case kSynthesize: return Synthesize(window);
    case kLeave: closing_ = true; return;
    case kSave: SaveSynthWave(desk_.state.job, window, desk_.exportFolder); return;
    case kPlayOriginal: return PlayOriginal(window);
    case kLoadRecord:
      if (auto target = AskRecordedTarget(window)) TakeTarget(std::move(*target));
      return;
    case kScale:
      if (const auto factor = AskTargetFactor(window))
        TakeTarget(ScaledTarget(present_, *factor, desk_.state.job.sampleRate));
      return;
    case kLoadOther:
      if (!desk_.readTarget) return;
      if (auto target = desk_.readTarget(window, desk_.state.job.firstFrame, desk_.state.job.frames))
        TakeTarget(std::move(*target));
      return;
    default: return;
  }
}

void SynthesisWindow::Synthesize(Window& window) {
  SynthesisJob& job = desk_.state.job;
  desk_.player.stopPlayback();  // it reads the output
  SynthesizeOverlapAdd(job, desk_.state.target);
  desk_.player.startPlayback(0, job.length, PlayMode::Forward, job.output.data());
  window.Repaint();
}

void SynthesisWindow::PlayOriginal(Window& window) {
  const SynthesisJob& job = desk_.state.job;
  desk_.player.startPlayback(job.start, job.start + job.length, PlayMode::Forward,
                             desk_.document.samples.data());
  window.Repaint();
}

void SynthesisWindow::TakeTarget(TargetCurve target) {
  drawing_.Drop();
  desk_.state.target = OnVoicedFrames(target, present_, desk_.state.job.sampleRate);
}

// --- What is seen

int SynthesisWindow::VisibleWidth() const { return std::max(1, width_ - kSynthesisGutter); }

int SynthesisWindow::LargestScroll() const {
  return width_ > 0 ? std::max(0, desk_.state.job.frames * view_.zoom - VisibleWidth()) : 0;
}

int SynthesisWindow::WholeWidth(int width) const {
  return std::max(width, desk_.state.job.frames * view_.zoom + kSynthesisGutter);
}

std::optional<ToolScrollBar> SynthesisWindow::ScrollBar() const {
  if (LargestScroll() == 0) return {};
  return ToolScrollBar{view_.scroll, LargestScroll(), VisibleWidth(), std::max(1, VisibleWidth() / 20), {}};
}

void SynthesisWindow::ScrollTo(Window& window, int position) {
  view_.scroll = std::clamp(position, 0, LargestScroll());
  window.Repaint();
}

void SynthesisWindow::Scroll(Window& window, int steps) {
  ScrollTo(window, view_.scroll + steps * VisibleWidth() / 10);
}

void SynthesisWindow::Resized(int width, int) {
  // A short selection begins as large as it fits: a frame a pixel is hard to draw on.
  if (width_ == 0)
    view_.zoom =
        std::clamp((width - kSynthesisGutter) / std::max(1, desk_.state.job.frames), 1, kLargestZoom);
  width_ = width;
  view_.scroll = std::clamp(view_.scroll, 0, LargestScroll());
}

void SynthesisWindow::ZoomTo(int zoom) {
  const int middle = view_.FrameAt(VisibleWidth() / 2);
  view_.zoom = std::clamp(zoom, 1, kLargestZoom);
  view_.scroll = std::clamp(middle * view_.zoom - VisibleWidth() / 2, 0, LargestScroll());
}

std::string SynthesisWindow::Hover(Point at) const { return TargetReadout(at.y); }

void SynthesisWindow::Closed(Window&) { desk_.player.stopPlayback(); }

}  // namespace parlowen
