#include "prosody/ToneWindow.h"

#include <algorithm>

#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "prosody/ToneCommands.h"
#include "prosody/TonePicture.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kRange = 1301, kEqualDurations = 1302, kStandard = 1303, kFromLabels = 1304, kCompare = 1305,
              kRemove = 1306;

constexpr UiText kTitle = "声调格局图";
constexpr UiText kRangeButton = "范围", kStandardButton = "普通话参考";
constexpr UiText kLabelsButton = "按标志加入", kRemoveButton = "撤消";
constexpr UiText kRangeHelp = "T值、D值的音高范围";
constexpr UiText kStandardHelp = "T值坐标中55、35、214、51的参考线";
constexpr UiText kLabelsHelp = "标志带1的每个标注段为一个语料，组名按标注的调号";
constexpr UiText kCompareHelp = "与已结束的统计（.bin文件）比较，画成虚线";
constexpr UiText kRemoveHelp = "撤消选中的语料，没有选中时撤消最后一个";
constexpr UiText kInstructions = "左键：选最近的曲线，语料的声音已调入时选定该段；←→：语料；↑↓：组";
constexpr UiText kGroupLine = "%s  %d个  调值 %s  时长 %.1f ms（标准差 %.1f）";
constexpr UiText kItemLine = "%s 第%d个  %s %.3f--%.3f秒  调值 %s  时长 %.0f ms";

/// The index behind or before `now` in 0 .. count − 1; from none the first or the last.
int Stepped(int now, int step, int count) {
  if (now < 0) return step > 0 ? 0 : count - 1;
  return std::clamp(now + step, 0, count - 1);
}

}  // namespace

std::string ToneWindow::Title() const { return kTitle; }

std::string ToneWindow::Instructions() const { return kInstructions; }

std::vector<ToolControl> ToneWindow::Controls() const {
  return {{kRange, kRangeButton, true, tones_.givenRange.has_value(), kRangeHelp},
          {kEqualDurations, kEqualButton, true, tones_.equalDurations, kEqualHelp},
          {kStandard, kStandardButton, true, tones_.showsStandard, kStandardHelp},
          {kFromLabels, kLabelsButton, true, false, kLabelsHelp},
          {kCompare, messages::kCompare, true, tones_.compared.has_value(), kCompareHelp},
          {kRemove, kRemoveButton, true, false, kRemoveHelp}};
}

Picture ToneWindow::Draw(int width, int height) const {
  width_ = width;
  height_ = height;
  return TonePicture(tones_, width, height);
}

void ToneWindow::Click(Window& window, Point at, MouseButton button, bool) {
  if (button != MouseButton::Left) return;
  const int hit = ToneAt(tones_, at, width_, height_);
  if (hit >= 0) PickTone(window, desk_, tones_, hit);
}

bool ToneWindow::Key(Window& window, const std::string& key) {
  if (tones_.items.empty()) return false;
  if (key == "Up" || key == "Down") {
    StepGroup(window, key == "Up" ? -1 : 1);
    return true;
  }
  if (tones_.view != ToneView::Group || (key != "Left" && key != "Right")) return false;
  StepItem(window, key == "Left" ? -1 : 1);
  return true;
}

void ToneWindow::StepItem(Window& window, int step) {
  const std::vector<int> items = tones_.ShownItems();
  const auto found = std::find(items.begin(), items.end(), tones_.picked);
  const int now = found == items.end() ? -1 : static_cast<int>(found - items.begin());
  PickTone(window, desk_, tones_,
           items[static_cast<std::size_t>(Stepped(now, step, static_cast<int>(items.size())))]);
}

void ToneWindow::StepGroup(Window& window, int step) {
  const auto& groups = tones_.statistics.groups;
  const bool inGroup = tones_.view == ToneView::Group;
  const int now = inGroup ? tones_.statistics.GroupNamed(tones_.group) : tones_.picked;
  const int next = Stepped(now, step, static_cast<int>(groups.size()));
  if (!inGroup) return PickTone(window, desk_, tones_, next);
  if (next == now) return;
  tones_.group = groups[static_cast<std::size_t>(next)].name;
  PickTone(window, desk_, tones_, -1);
}

void ToneWindow::Press(Window& window, const ToolControl& control) {
  switch (control.number) {
    case kRange: return AskToneRange(window, tones_);
    case kEqualDurations: tones_.equalDurations = !tones_.equalDurations; break;
    case kStandard: tones_.showsStandard = !tones_.showsStandard; break;
    case kFromLabels: return AddLabelledTones(window, desk_, tones_);
    case kCompare: return CompareTones(window, tones_);
    case kRemove: return RemoveToneCommand(window, tones_);
    default: return;
  }
  window.Repaint();
}

std::string ToneWindow::Hover(Point at) const {
  const int hit = ToneAt(tones_, at, width_, height_);
  if (hit < 0) return {};
  if (tones_.view != ToneView::Group) {
    const ToneGroup& group = tones_.statistics.groups[static_cast<std::size_t>(hit)];
    return Format(kGroupLine.Get(), IpaFromGbk(group.name).c_str(), static_cast<int>(group.items.size()),
                  tones_.statistics.DigitsOf(group).c_str(), group.milliseconds, group.millisecondsDeviation);
  }
  const ToneItem& item = tones_.items[static_cast<std::size_t>(hit)];
  const double rate = item.sampleRate;
  return Format(kItemLine.Get(), IpaFromGbk(item.group).c_str(), NumberInGroup(tones_.items, hit),
                FromGbk(item.sound).c_str(), item.start / rate, item.end / rate,
                ToneDigits(ToneTs(item.points, tones_.statistics.range)).c_str(), item.Milliseconds());
}

std::string ToneWindow::Text() const {
  return tones_.items.empty() ? std::string() : IpaFromGbk(ToneReport(tones_.items, tones_.statistics));
}

void ToneWindow::Closed(Window& window) {
  tones_.view = ToneView::None;
  tones_.picked = -1;
  window.Repaint();
}

}  // namespace parlowen
