#include "annotation/MarkerBands.h"

#include <algorithm>
#include <cstdlib>

#include "annotation/TextPicture.h"
#include "base/Format.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kInstructionHeading = "操作说明:";

static_assert(std::size(colours::kMarkerBand) == kMarkerBands);
constexpr int kLineHeight = 22, kAxisHeight = 20, kHeadingHeight = 20, kLeastWave = 60, kHeadingWidth = 68;
constexpr double kFinestTick = 1e-3;
constexpr int kBandHeight = 40, kTextHeight = 12, kTextRows = 3;

/// Rows of a band: the first has one more than the others.
int BandTop(int band) { return band == 0 ? 0 : band * kBandHeight + 1; }
int BandBottom(int band) { return (band + 1) * kBandHeight; }

class Columns {
 public:
  Columns(const MarkerView& view, const MarkerScale& scale)
      : scale_(scale),
        length_(MarkerViewLength(view, scale.sampleCount)),
        last_(kPaneMargin + view.columns) {}
  int Last() const { return last_; }
  int Of(std::int32_t position) const { return scale_.Column(position); }
  bool Shows(std::int32_t position) const {
    return position >= scale_.start && position <= scale_.start + length_;
  }
  /// The part of a stretch that is seen, as columns; empty when none is.
  std::pair<int, int> Part(std::int32_t from, std::int32_t to) const {
    if (to < scale_.start || from > scale_.start + length_) return {0, -1};
    return {std::clamp(Of(from), kPaneMargin, last_), std::clamp(Of(to), kPaneMargin, last_)};
  }

 private:
  const MarkerScale& scale_;
  int length_, last_;
};

void AddWaveform(Picture& picture, const SoundDocument& document, const WavePyramid& pyramid,
                 const MarkerScale& scale, const MarkerView& view, const MarkerLayout& layout) {
  const int middle = layout.waveTop + layout.waveHeight / 2, reach = layout.waveHeight / 2 - 1;
  const int peak = PeakOf(pyramid.Extremes(document.Samples(), 0, document.sampleCount));
  const PlotScale rows{0, static_cast<double>(WaveRange(peak)), middle, middle - reach};
  const auto points = WavePoints(
      kPaneMargin, kPaneMargin + view.columns, document.sampleCount, [&](int x) { return scale.SampleAt(x); },
      ExtremesFrom(pyramid, document.Samples()));
  picture.Add(LineMark{{kPaneMargin, middle}, {kPaneMargin + view.columns - 1, middle}, colours::kGrid});
  AddCurve(picture, points, rows, colours::kWave);
}

void AddAxis(Picture& picture, const SoundDocument& document, const MarkerScale& scale,
             const MarkerView& view, int top) {
  PlotScale seconds{0, 0, kPaneMargin, kPaneMargin + view.columns};
  if (document.sampleRate > 0 && document.sampleCount > 0) {
    seconds.first = double(scale.start) / document.sampleRate;
    seconds.last = seconds.first + view.columns * scale.samplesPerPixel / document.sampleRate;
  }
  AddColumnAxis(picture, seconds, RoundTicks(seconds, kTimeLabelRoom, kFinestTick), top, {}, kTimeUnit);
}

/// The texts of a band, in rows of which none covers another.
class LabelRows {
 public:
  /// The baseline, counted from the top of the band, of the first of these rows that is free there; the first
  /// of all where the band is crowded.
  int Take(int left, int width, const int (&baselines)[kTextRows]) {
    const auto free = [&](int baseline) {
      return std::none_of(taken_.begin(), taken_.end(), [&](const Place& place) {
        return place.left < left + width && left < place.right &&
               std::abs(place.baseline - baseline) < kTextHeight;
      });
    };
    const int* row = std::find_if(std::begin(baselines), std::end(baselines), free);
    const int baseline = row == std::end(baselines) ? baselines[0] : *row;
    taken_.push_back({left, left + width, baseline});
    return baseline;
  }

 private:
  struct Place {
    int left, right, baseline;
  };
  std::vector<Place> taken_;
};

void AddLabels(Picture& picture, std::span<const MarkerLabel> labels, const Columns& columns, int top,
               Colour colour) {
  // Point labels fill the band from above, segment labels from below.
  constexpr int kPointRows[] = {12, 24, 36}, kSegmentRows[] = {33, 21, 9};
  constexpr int kLine = kBandHeight - 4;
  LabelRows rows;
  for (const MarkerLabel& label : labels) {
    const int width = TextWidth(label.text, kTextHeight);
    if (label.IsPoint()) {
      if (!columns.Shows(label.start)) continue;
      const int x = columns.Of(label.start);
      const bool atEdge = x + 3 + width > columns.Last();
      const int left = atEdge ? x - 3 - width : x + 3;
      picture.Add(TextMark{atEdge ? x - 3 : x + 3, top + rows.Take(left, width, kPointRows), label.text,
                           colour, kTextHeight, atEdge ? Anchor::Right : Anchor::Left, Face::Ipa});
      continue;
    }
    const auto [from, to] = columns.Part(label.start, label.end);
    if (from > to) continue;
    // A text wider than its stretch stays inside the band.
    const int least = kPaneMargin + width / 2, most = columns.Last() - width / 2;
    const int middle = least > most ? (from + to) / 2 : std::clamp((from + to) / 2, least, most);
    picture.Add(
        LineMark{{from, top + kLine}, {to, top + kLine}, colours::kStretchLine, 1, LineStyle::Dashed});
    picture.Add(TextMark{middle, top + rows.Take(middle - width / 2, width, kSegmentRows), label.text,
                         colours::kBlack, kTextHeight, Anchor::Middle, Face::Ipa});
  }
}

void AddBand(Picture& picture, const MarkerSet& set, int band, bool current, const Columns& columns,
             const MarkerLayout& layout) {
  const int top = layout.bandsTop + BandTop(band), bottom = layout.bandsTop + BandBottom(band);
  const Colour colour = colours::kMarkerBand[band];
  picture.Add(LineMark{{0, bottom}, {columns.Last(), bottom}, colours::kGrid});
  picture.Add(TextMark{9, top + kBandHeight / 2 + 5, Format("%d", band + 1), colour, current ? 16 : 13,
                       Anchor::Middle, Face::Figures});
  for (const std::int32_t position : set.Markers(band)) {
    if (!columns.Shows(position)) continue;
    const int x = columns.Of(position);
    picture.Add(LineMark{{x, layout.waveTop}, {x, layout.waveTop + layout.waveHeight - 1}, colour});
    // The band's number tells strokes apart without their colour.
    const int y = layout.waveTop + 9 + 10 * band;
    const bool atEdge = x > columns.Last() - 9;
    picture.Add(TextMark{atEdge ? x - 2 : x + 2, y, Format("%d", band + 1), colour, 9,
                         atEdge ? Anchor::Right : Anchor::Left, Face::Figures});
    picture.Add(LineMark{{x, top}, {x, bottom - 1}, colour, 2});
  }
  AddLabels(picture, set.Labels(band), columns, top, colour);
}

}  // namespace

MarkerLayout::MarkerLayout(int height) {
  waveTop = kLineHeight;
  bandsTop = std::max(height - kMarkerAreaHeight - 1, waveTop + kLeastWave + kAxisHeight + kHeadingHeight);
  headingTop = bandsTop - kHeadingHeight;
  axisTop = headingTop - kAxisHeight;
  waveHeight = axisTop - waveTop;
}

Picture MarkersPicture(const SoundDocument& document, const WavePyramid& pyramid, const MarkerSet& set,
                       const MarkerView& view, int height) {
  Picture picture{kPaneMargin + view.columns + kMarkerRightMargin, height, {}};
  const MarkerLayout layout(height);
  const MarkerScale scale(view, document.sampleCount);
  const Columns columns(view, scale);
  picture.Add(TextMark{kPaneMargin, 15, kInstructionHeading, colours::kText, 13});
  if (!view.instruction.empty())
    picture.Add(TextMark{kPaneMargin + kHeadingWidth, 15, view.instruction, colours::kText, 13});
  AddWaveform(picture, document, pyramid, scale, view, layout);
  AddAxis(picture, document, scale, view, layout.axisTop);
  picture.Add(TextMark{kPaneMargin, layout.headingTop + 14, kBandsHeading, colours::kText, 12});
  picture.Add(BoxMark{kPaneMargin, layout.bandsTop, view.columns, kMarkerAreaHeight, colours::kBandFill});
  picture.Add(LineMark{{0, layout.bandsTop}, {columns.Last(), layout.bandsTop}, colours::kGrid});
  for (int band = 0; band < kMarkerBands; ++band)
    AddBand(picture, set, band, band == view.band, columns, layout);
  return picture;
}

}  // namespace parlowen
