#include "vowel/GroupPlot.h"

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "ui/Text.h"
#include "vowel/ChartPicture.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "用相对Bark坐标画元音组位置图";

constexpr int kLeft = 700, kRight = 900, kTop = 320, kBottom = 520;

}  // namespace

Picture GroupPlotPicture(const GroupPlot& plot, int width, int height) {
  Picture picture{width, height, {}};
  picture.Add(PolylineMark{
      {{kLeft, kTop}, {kRight, kTop}, {kRight, kBottom}, {kLeft, kBottom}, {kLeft, kTop}}, colours::kGrid});
  picture.Add(TextMark{kLeft, 270, kTitle});
  picture.Add(TextMark{kRight, 300, "B2Min", colours::kText, 12, Anchor::Middle, Face::Figures});
  picture.Add(TextMark{kLeft, 300, "B2Max", colours::kText, 12, Anchor::Middle, Face::Figures});
  picture.Add(TextMark{kRight + 20, kTop, "B1Min", colours::kText, 12, Anchor::Left, Face::Figures});
  picture.Add(TextMark{kRight + 20, kBottom, "B1Max", colours::kText, 12, Anchor::Left, Face::Figures});
  for (const VowelGroup& group : plot.groups) {
    AddShape(picture, PointShape::Diamond, group.x, group.y, colours::kChartPoint);
    if (plot.showNames) AddName(picture, group.x + 6, group.y - 8, IpaFromGbk(group.name));
  }
  return picture;
}

std::string GroupPlotHover(const GroupPlot& plot, Point at) {
  const int nearest = NearestPlace(at, static_cast<int>(plot.groups.size()), [&](int i) {
    const VowelGroup& group = plot.groups[static_cast<std::size_t>(i)];
    return Point{group.x, group.y};
  });
  if (nearest < 0) return {};
  const VowelGroup& group = plot.groups[static_cast<std::size_t>(nearest)];
  return Format("%s  F1 %.1f Hz  F2 %.1f Hz  V1 %d %%  V2 %d %%", IpaFromGbk(group.name).c_str(),
                static_cast<double>(group.mean1), static_cast<double>(group.mean2), group.V1(), group.V2());
}

}  // namespace parlowen
