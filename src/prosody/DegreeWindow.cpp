#include "prosody/DegreeWindow.h"

#include "base/Format.h"
#include "prosody/TonePicture.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {
namespace {

constexpr int kClear = 1351, kEqualDurations = 1352;

constexpr UiText kTitle = "五度坐标图";
constexpr UiText kClearButton = "清除";
constexpr UiText kCurveLine = "调值 %s  T %.1f…%.1f  时长 %.0f ms";
constexpr UiText kTextHead = "范围\t%.1f--%.1f Hz\n序号\t调值\t时长(ms)\tT值(0--100%%)\n";

}  // namespace

std::string DegreeWindow::Title() const { return kTitle; }

std::vector<ToolControl> DegreeWindow::Controls() const {
  return {{kClear, kClearButton, !degree_.curves.empty()},
          {kEqualDurations, kEqualButton, true, degree_.equalDurations, kEqualHelp}};
}

Picture DegreeWindow::Draw(int width, int height) const {
  width_ = width;
  height_ = height;
  return DegreePicture(degree_, width, height);
}

void DegreeWindow::Press(Window& window, const ToolControl& control) {
  if (control.number == kClear) degree_.curves.clear();
  if (control.number == kEqualDurations) degree_.equalDurations = !degree_.equalDurations;
  window.Repaint();
}

std::string DegreeWindow::Hover(Point at) const {
  const int nearest = DegreeCurveAt(degree_, at, width_, height_);
  if (nearest < 0) return {};
  const DegreeCurve& curve = degree_.curves[static_cast<std::size_t>(nearest)];
  const TonePoints t = ToneTs(curve.points, degree_.range);
  return Format(kCurveLine.Get(), ToneDigits(t).c_str(), t.front(), t.back(), curve.milliseconds);
}

std::string DegreeWindow::Text() const {
  if (degree_.curves.empty()) return {};
  std::string text = Format(kTextHead.Get(), degree_.range.lowHertz, degree_.range.highHertz);
  for (std::size_t i = 0; i < degree_.curves.size(); ++i) {
    const TonePoints t = ToneTs(degree_.curves[i].points, degree_.range);
    text += Format("%d\t%s\t%.0f", static_cast<int>(i) + 1, ToneDigits(t).c_str(),
                   degree_.curves[i].milliseconds);
    for (const double value : t) text += Format("\t%.2f", value);
    text += "\n";
  }
  return text;
}

}  // namespace parlowen
