#include "vowel/SegmentChart.h"

#include "base/Format.h"
#include "ui/Text.h"
#include "ui/Window.h"
#include "vowel/ChartPicture.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "一段元音的元音图";
constexpr UiText kCaption = "声学元音图（一段语音）  红色->蓝色：先->后";
constexpr UiText kSecondCaption = "及F1-F3 图";

constexpr int kAxisColumn = 380, kAxisTop = 25, kAxisBottom = 390, kFrameTop = 130;

}  // namespace

std::vector<SegmentPoint> SegmentPoints(const VowelTrack& track, int sampleRate) {
  std::vector<SegmentPoint> points;
  const int count = static_cast<int>(track.frames.size());
  for (int k = 0; k < count; ++k) {
    const VowelFormants formants = ChooseFormants(track.frames[static_cast<std::size_t>(k)], sampleRate);
    if (!IsVowel(formants)) continue;
    const auto [f1, f2, f3, f4] = formants.f;
    const auto blue = static_cast<Colour>(static_cast<double>(k) / count * 255);
    points.push_back({k, f1, f2, f3, FrequencyPlace(f1, f2, f3, kSegmentAxes), (255 - blue) << 16 | blue});
  }
  return points;
}

Picture SegmentPicture(const std::vector<SegmentPoint>& points, bool connected,
                       const std::vector<int>& averages, int width, int height) {
  Picture picture{width, height, {}};
  AddChartFrame(picture, kFrameTop);
  AddFrequencyAxes(picture, kSegmentAxes, kAxisColumn, kAxisTop, kAxisBottom, 4000);
  picture.Add(TextMark{40, kAxisBottom + 30, kCaption});
  picture.Add(TextMark{40, kAxisBottom + 50, kSecondCaption});
  const SegmentPoint* previous = nullptr;
  for (const SegmentPoint& point : points) {
    const auto [x, y, x3] = point.place;
    AddShape(picture, PointShape::Circle, x, y, point.colour);
    if (point.f3 > point.f2) AddShape(picture, PointShape::Circle, x3, y, point.colour);
    if (connected && previous != nullptr)
      picture.Add(LineMark{{previous->place.x, previous->place.y}, {x, y}, point.colour});
    previous = &point;
  }
  AddAverages(picture, averages, kSegmentAxes);
  return picture;
}

SegmentChart::SegmentChart(SoundDocument& document, const VowelState& vowels, const VowelTrack& track)
    : document_(document),
      vowels_(vowels),
      connected_(vowels.chart.connectPoints),
      start_(track.start / static_cast<double>(document.sampleRate)),
      step_(track.step / static_cast<double>(document.sampleRate)),
      points_(SegmentPoints(track, document.sampleRate)) {}

std::string SegmentChart::Title() const { return kTitle; }

Picture SegmentChart::Draw(int width, int height) const {
  return SegmentPicture(points_, connected_, vowels_.segmentAverages, width, height);
}

std::string SegmentChart::Hover(Point at) const {
  const int nearest = NearestPlace(at, static_cast<int>(points_.size()), [&](int i) {
    const ChartPlace& place = points_[static_cast<std::size_t>(i)].place;
    return Point{place.x, place.y};
  });
  if (nearest < 0) return {};
  const SegmentPoint& point = points_[static_cast<std::size_t>(nearest)];
  return Format("%.3f s  F1 %.0f Hz  F2 %.0f Hz  F3 %.0f Hz", start_ + point.frame * step_, point.f1,
                point.f2, point.f3);
}

void SegmentChart::Closed(Window& window) {
  document_.EndTool(Activity::SegmentChart);
  window.Repaint();
}

}  // namespace parlowen
