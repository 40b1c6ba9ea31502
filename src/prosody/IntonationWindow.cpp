#include "prosody/IntonationWindow.h"

#include <algorithm>

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "pitch/SemitoneScale.h"
#include "prosody/IntonationCommands.h"
#include "prosody/IntonationPicture.h"
#include "ui/Messages.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {
namespace {

constexpr int kSave = 1401, kCompare = 1402, kShow = 1403, kAddSpeaker = 1404, kUseSpeaker = 1405,
              kPlay = 1406;
constexpr int kReach = 5;  // pixels

constexpr UiText kTitle = "语调分析";
constexpr UiText kAddSpeakerButton = "加入说话人调域", kUseSpeakerButton = "用说话人调域";
constexpr UiText kCompareHelp = "把已保存的语调数据（.itn）画成灰色";
constexpr UiText kAddSpeakerHelp = "把这句话的调域加入说话人调域文件（.tnr）";
constexpr UiText kUseSpeakerHelp = "Q值按说话人的调域计算；再按一次：按这句话的调域";
constexpr UiText kPlayHelp = "放选中的单元，没有选中时放整段";

}  // namespace

std::string IntonationWindow::Title() const { return kTitle; }

std::string IntonationWindow::Instructions() const { return IntonationHint(); }

std::vector<ToolControl> IntonationWindow::Controls() const {
  const bool shown = state_.result.has_value();
  const bool spoken = shown && SpeakerRecordOf(*state_.result).has_value();
  return {{kSave, messages::kSaveData, shown},
          {kCompare, messages::kCompare, shown, state_.compared.has_value(), kCompareHelp},
          {kShow, messages::kShowData, shown},
          {kAddSpeaker, kAddSpeakerButton, spoken, false, kAddSpeakerHelp},
          {kUseSpeaker, kUseSpeakerButton, shown, shown && state_.result->speaker, kUseSpeakerHelp},
          {kPlay, messages::kPlay, shown && desk_.play, false, kPlayHelp}};
}

Picture IntonationWindow::Draw(int width, int height) const {
  width_ = width;
  height_ = height;
  return IntonationPicture(state_, width, height);
}

void IntonationWindow::Click(Window& window, Point at, MouseButton button, bool) {
  if (!state_.result) return;
  Intonation& intonation = *state_.result;
  const IntonationLayout layout(intonation, width_, height_);
  if (button == MouseButton::Left) {
    const int frame = FrameAtColumn(intonation, layout, at.x);
    if (AddBoundary(intonation, SampleOfFrame(frame, intonation.sampleRate))) MeasureAgain(window);
  } else if (const int boundary = BoundaryAtColumn(intonation, layout, at.x, kReach); boundary >= 0) {
    intonation.boundaries.erase(intonation.boundaries.begin() + boundary);
    MeasureAgain(window);
  }
}

void IntonationWindow::MeasureAgain(Window& window) {
  MeasureIntonation(*state_.result);
  state_.chosen = -1;
  window.Repaint();
}

bool IntonationWindow::Key(Window& window, const std::string& key) {
  if (!state_.result || (key != "Left" && key != "Right")) return false;
  const int last = static_cast<int>(state_.result->units.size()) - 1;
  const int step = key == "Left" ? -1 : 1;
  const int next = state_.chosen < 0 ? (step > 0 ? 0 : last) : std::clamp(state_.chosen + step, 0, last);
  ChooseIntonationUnit(window, state_, next);
  return true;
}

void IntonationWindow::Press(Window& window, const ToolControl& control) {
  switch (control.number) {
    case kSave: return SaveIntonation(window, state_);
    case kCompare: return CompareIntonation(window, state_);
    case kShow: return ShowIntonationReport(window, desk_, state_);
    case kAddSpeaker: return AddToSpeakerRange(window, state_);
    case kUseSpeaker: return UseSpeakerRange(window, state_);
    case kPlay: return Play(window);
    default: return;
  }
}

void IntonationWindow::Play(Window& window) {
  if (!state_.result || !desk_.play) return;
  const Intonation& intonation = *state_.result;
  int start = intonation.start, end = intonation.end;
  if (state_.chosen >= 0) {
    start = intonation.units[static_cast<std::size_t>(state_.chosen)].start;
    end = intonation.units[static_cast<std::size_t>(state_.chosen)].end;
  }
  // The sound may have been cut since.
  const int count = desk_.document.sampleCount;
  desk_.play(window, std::min(start, count), std::min(end, count));
}

std::string IntonationWindow::Hover(Point at) const {
  if (!state_.result) return {};
  const Intonation& intonation = *state_.result;
  const IntonationLayout layout(intonation, width_, height_);
  for (const IntonationUnit& unit : intonation.units)
    if (at.x >= layout.Column(unit.start / static_cast<double>(intonation.sampleRate)) &&
        at.x < layout.Column(unit.end / static_cast<double>(intonation.sampleRate)))
      return UnitLine(unit);
  return {};
}

std::string IntonationWindow::Text() const {
  return state_.result ? IpaFromGbk(IntonationReport(*state_.result)) : std::string();
}

void IntonationWindow::Closed(Window& window) {
  desk_.document.EndTool(Activity::Intonation);
  window.Repaint();
}

}  // namespace parlowen
