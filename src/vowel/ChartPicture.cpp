#include "vowel/ChartPicture.h"

#include <algorithm>

#include "base/Format.h"
#include "ui/Text.h"
#include "vowel/AverageVowels.h"

namespace parlowen {
namespace {

constexpr UiText kBarkTitle = "用Bark相对坐标";
constexpr UiText kBarkFormula = "Bark 定义： Bark(f)=7*log((f/650)+sqrt(f*f/422500+1))";
constexpr UiText kBarkNames = "B0=Bark(参考频率),  B1=Bark(f1),   B2=Bark(f2)";
constexpr UiText kBarkAxes = "参考频率=%d Hz;   纵坐标: B1-B0;  横坐标: B2-B1";
constexpr UiText kTitle = "声学元音图";
constexpr UiText kPointLine = "第%d点  F1 %.0f Hz  F2 %.0f Hz";

constexpr int kFrameLeft = 19, kFrameRight = 640, kFrameTop = 179;  // of the point chart
constexpr int kAxisColumn = 320, kAxisRight = 600, kAxisLeft = 40;
constexpr int kTextColumn = 650;
constexpr int kLowestF1Row = 600;            // 1600 Hz and a little
constexpr int kNameText = 12, kAscent = 11;  // of that type

void AddTick(Picture& picture, Point from, Point to) { picture.Add(LineMark{from, to, colours::kText}); }

void AddLabel(Picture& picture, int x, int y, std::string text, Anchor anchor = Anchor::Middle) {
  picture.Add(TextMark{x, y, std::move(text), colours::kText, 10, anchor, Face::Figures});
}

void AddBarkAxes(Picture& picture, const VowelChart& chart, int bottom) {
  const int top = kPointAxes.base;
  picture.Add(LineMark{{kAxisRight, top}, {kAxisLeft, top}});
  picture.Add(LineMark{{kAxisColumn, top}, {kAxisColumn, bottom}});
  for (int value = -1; top + (value + 1) * 40 < bottom; ++value) {
    const int y = top + (value + 1) * 40;
    AddTick(picture, {kAxisColumn, y}, {kAxisColumn + 4, y});
    AddLabel(picture, kAxisColumn + 8, y + 4, Format("%d", value), Anchor::Left);
  }
  for (int x = 305; x >= 30; x -= 25) {
    AddTick(picture, {x, top}, {x, top - 4});
    AddLabel(picture, x, top - 7, Format("%d", (330 - x) / 25));
  }
  AddLabel(picture, kAxisColumn + 30, bottom - 4, "B1-B0", Anchor::Left);
  AddLabel(picture, kAxisLeft - 18, top + 16, "B2-B1", Anchor::Left);
  picture.Add(TextMark{kAxisColumn + 60, kFrameTop + 16, kBarkTitle});
  const std::string lines[] = {kBarkFormula, kBarkNames, Format(kBarkAxes.Get(), chart.referenceF0)};
  int y = kFrameTop + 20;
  for (const std::string& line : lines) {
    picture.Add(TextMark{kTextColumn, y, line});
    y += 20;
  }
}

void AddPoint(Picture& picture, const VowelPoint& point, bool barkMode) {
  AddShape(picture, point.shape, point.x, point.y, colours::kChartPoint);
  if (!barkMode && point.f3 > point.f2)
    AddShape(picture, point.shape, point.x3, point.y, colours::kChartPoint);
}

}  // namespace

void AddShape(Picture& picture, PointShape shape, int x, int y, Colour colour) {
  switch (shape) {
    case PointShape::Square:
      picture.Add(PolylineMark{
          {{x - 2, y - 2}, {x + 2, y - 2}, {x + 2, y + 2}, {x - 2, y + 2}, {x - 2, y - 2}}, colour});
      break;
    case PointShape::Diamond:
      picture.Add(PolylineMark{{{x, y - 3}, {x + 3, y}, {x, y + 3}, {x - 3, y}, {x, y - 3}}, colour});
      break;
    case PointShape::Triangle:
      picture.Add(PolylineMark{{{x, y - 3}, {x + 2, y + 2}, {x - 2, y + 2}, {x, y - 3}}, colour});
      break;
    case PointShape::InvertedTriangle:
      picture.Add(PolylineMark{{{x, y + 3}, {x + 2, y - 2}, {x - 2, y - 2}, {x, y + 3}}, colour});
      break;
    case PointShape::Cross:
      picture.Add(LineMark{{x, y + 4}, {x, y - 4}, colour});
      picture.Add(LineMark{{x - 4, y}, {x + 4, y}, colour});
      break;
    default: {
      OvalMark oval{x - 2, y - 2, 4, 4};
      oval.outline = colour;
      picture.Add(oval);
    }
  }
}

void AddAverages(Picture& picture, const std::vector<int>& speakerClasses, const FrequencyAxes& axes) {
  for (const int speakerClass : speakerClasses)
    for (const AverageVowel& vowel : AverageVowels(speakerClass)) {
      if (vowel.f1 < 100 || vowel.f1 > 3500 || vowel.f2 < 100 || vowel.f2 > 3500) continue;
      const ChartPlace place = FrequencyPlace(vowel.f1, vowel.f2, 0, axes);
      AddShape(picture, PointShape::Cross, place.x, place.y, colours::kStart);
      AddName(picture, place.x - 3, place.y + 3, vowel.label, colours::kStart);
    }
}

void AddName(Picture& picture, int x, int y, const std::string& name, Colour colour) {
  picture.Add(TextMark{x, y + kAscent, name, colour, kNameText, Anchor::Left, Face::Ipa});
}

void AddChartFrame(Picture& picture, int top) {
  const int bottom = picture.height - 1;
  picture.Add(PolylineMark{{{kFrameLeft, top},
                            {kFrameRight, top},
                            {kFrameRight, bottom},
                            {kFrameLeft, bottom},
                            {kFrameLeft, top}}});
}

void AddFrequencyAxes(Picture& picture, const FrequencyAxes& axes, int column1, int top, int bottom,
                      int highestF2) {
  picture.Add(LineMark{{kAxisRight, top}, {highestF2 > 2000 ? kAxisLeft - 20 : kAxisLeft, top}});
  picture.Add(LineMark{{column1, top}, {column1, bottom}});
  for (int row = axes.base + 20, hertz = 200; row < bottom; row += 50, hertz += 200) {
    AddTick(picture, {column1, row}, {column1 + 4, row});
    if (row + 16 > bottom) continue;  // there stands the axis' name
    AddLabel(picture, column1 + 8, row + 4, Format("%d", hertz), Anchor::Left);
  }
  for (int hertz = 500, x = axes.column2; hertz <= highestF2; hertz *= 2, x -= 100) {
    AddTick(picture, {x, top}, {x, top - 4});
    AddLabel(picture, x, top - 7, Format("%d", hertz));
  }
  for (int hertz = 1500, x = FrequencyAxes::kColumn3; hertz <= 6000; hertz *= 2, x += 100) {
    AddTick(picture, {x, top}, {x, top - 4});
    AddLabel(picture, x, top - 7, Format("%d", hertz));
  }
  AddLabel(picture, column1 + 8, bottom - 4, "F1 (Hz)", Anchor::Left);
  AddLabel(picture, kAxisLeft - 16, top + 14, "F2 (Hz)", Anchor::Left);
  AddLabel(picture, kFrameRight - 4, top + 14, "F3 (Hz)", Anchor::Right);
}

Picture PointChartPicture(const VowelChart& chart, const std::vector<int>& averages, bool showNumbers,
                          int width, int height) {
  Picture picture{width, height, {}};
  const int axisBottom = height - 8;
  picture.Add(BoxMark{0, kChartTop, width, std::max(0, height - kChartTop), colours::kWhite});
  AddChartFrame(picture, kFrameTop);
  if (chart.barkMode) {
    AddBarkAxes(picture, chart, axisBottom);
  } else {
    AddFrequencyAxes(picture, kPointAxes, kAxisColumn, kPointAxes.base, std::min(axisBottom, kLowestF1Row),
                     2000);
    picture.Add(TextMark{kTextColumn, kFrameTop + 20, kTitle});
  }
  for (int i = 0; i < chart.count; ++i) {
    const VowelPoint& point = chart.points[static_cast<std::size_t>(i)];
    AddPoint(picture, point, chart.barkMode);
    if (showNumbers) AddLabel(picture, point.x + 6, point.y - 3, Format("%d", i + 1), Anchor::Left);
  }
  AddAverages(picture, averages, kPointAxes);
  return picture;
}

std::string PointChartHover(const VowelChart& chart, Point at) {
  const int nearest = NearestPlace(at, chart.count, [&](int i) {
    const VowelPoint& point = chart.points[static_cast<std::size_t>(i)];
    return Point{point.x, point.y};
  });
  if (nearest < 0) return {};
  const VowelPoint& point = chart.points[static_cast<std::size_t>(nearest)];
  std::string text =
      Format(kPointLine.Get(), nearest + 1, static_cast<double>(point.f1), static_cast<double>(point.f2));
  if (point.f3 > 0) text += Format("  F3 %.0f Hz", static_cast<double>(point.f3));
  return text + Format("  B1 %.2f  B2 %.2f", Bark(point.f1), Bark(point.f2));
}

}  // namespace parlowen
