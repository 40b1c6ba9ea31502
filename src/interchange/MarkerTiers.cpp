#include "interchange/MarkerTiers.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/IpaCodes.h"
#include "interchange/FrameGrid.h"
#include "interchange/MarkerSetBuilder.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kAnnotationTier = "音标", kPointSuffix = " 点";

std::string BandName(int band) { return std::to_string(band + 1); }
std::string PointTierName(int band) { return BandName(band) + std::string(kPointSuffix); }

/// Adds a text behind what may already stand there.
void Join(std::string& present, const std::string& text, ExportLosses& losses) {
  if (present.empty()) {
    present = text;
  } else {
    present += " " + text;
    ++losses.joined;
  }
}

// --- Out

struct Moment {
  int sample = 0;
  std::string text;
};

GridTier PointTier(std::string name, std::vector<Moment> moments, int sampleCount, int sampleRate,
                   ExportLosses& losses) {
  GridTier tier{std::move(name), true, 0, SecondsOf(sampleCount, sampleRate)};
  std::stable_sort(moments.begin(), moments.end(),
                   [](const Moment& a, const Moment& b) { return a.sample < b.sample; });
  for (std::size_t i = 0; i < moments.size(); ++i) {
    if (i == 0 || moments[i].sample != moments[i - 1].sample)
      tier.points.push_back({SecondsOf(moments[i].sample, sampleRate), ""});
    Join(tier.points.back().text, moments[i].text, losses);
  }
  return tier;
}

GridTier BandTier(const MarkerSet& markers, int band, int sampleCount, int sampleRate, ExportLosses& losses) {
  std::vector<int> edges = {0};
  for (const std::int32_t marker : markers.Markers(band))
    if (marker > 0 && marker < sampleCount) edges.push_back(marker);
  edges.push_back(sampleCount);
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

  GridTier tier{BandName(band), false, 0, SecondsOf(sampleCount, sampleRate)};
  for (std::size_t i = 0; i + 1 < edges.size(); ++i)
    tier.intervals.push_back({SecondsOf(edges[i], sampleRate), SecondsOf(edges[i + 1], sampleRate), ""});
  for (const MarkerLabel& label : markers.Labels(band)) {
    if (label.IsPoint()) continue;
    const auto edge = std::lower_bound(edges.begin(), edges.end(), label.start);
    const bool isStretch =
        edge != edges.end() && *edge == label.start && edge + 1 != edges.end() && edge[1] == label.end;
    if (isStretch) {
      Join(tier.intervals[static_cast<std::size_t>(edge - edges.begin())].text, IpaAsDrawn(label.text),
           losses);
    } else {
      ++losses.leftOut;
    }
  }
  return tier;
}

std::vector<Moment> PointLabels(const MarkerSet& markers, int band, int sampleCount, ExportLosses& losses) {
  std::vector<Moment> moments;
  const auto inSound = [sampleCount](int sample) { return sample >= 0 && sample <= sampleCount; };
  for (const MarkerLabel& label : markers.Labels(band)) {
    if (!label.IsPoint()) continue;
    if (inSound(label.start)) {
      moments.push_back({label.start, IpaAsDrawn(label.text)});
    } else {
      ++losses.leftOut;
    }
  }
  for (const std::int32_t marker : markers.Markers(band)) {
    const bool inner = marker > 0 && marker < sampleCount;
    const bool labelled =
        std::any_of(moments.begin(), moments.end(), [marker](const Moment& m) { return m.sample == marker; });
    if (!inner && !labelled) ++losses.leftOut;
  }
  return moments;
}

// --- In

class GridImport {
 public:
  GridImport(int sampleCount, int sampleRate)
      : sampleCount_(sampleCount), sampleRate_(sampleRate), builder_(sampleCount) {}

  ImportedMarkers Run(const TextGrid& grid);

 private:
  struct Stretch {
    int start = 0, end = 0;
    bool startCounts = false, endCounts = false;  ///< as markers
    std::string text;
  };
  std::vector<std::optional<int>> AssignBands(const TextGrid& grid);
  void TakeIntervals(const GridTier& tier, int band);
  std::vector<Stretch> StretchesOf(const GridTier& tier);
  void TakePoints(const GridTier& tier, int band);
  void TakeAnnotations(const GridTier& tier);

  std::int64_t Sample(double seconds) const { return SampleAt(seconds, sampleRate_); }
  bool InSound(std::int64_t sample) const { return sample >= 0 && sample <= sampleCount_; }
  bool IsInner(int sample) const { return sample > 0 && sample < sampleCount_; }

  int sampleCount_, sampleRate_;
  MarkerSetBuilder builder_;
  ImportedMarkers result_;
};

bool IsAnnotationTier(const GridTier& tier) { return tier.isPoints && tier.name == kAnnotationTier; }

std::vector<std::optional<int>> GridImport::AssignBands(const TextGrid& grid) {
  std::vector<std::optional<int>> bands(grid.tiers.size());
  // A band may have one tier of each kind under its own name.
  std::array<std::array<bool, 2>, kMarkerBands> taken{};
  for (std::size_t t = 0; t < grid.tiers.size(); ++t)
    for (int band = 0; band < kMarkerBands; ++band) {
      const GridTier& tier = grid.tiers[t];
      bool& mine = taken[static_cast<std::size_t>(band)][tier.isPoints];
      if (mine || tier.name != (tier.isPoints ? PointTierName(band) : BandName(band))) continue;
      mine = true;
      bands[t] = band;
    }
  for (std::size_t t = 0; t < grid.tiers.size(); ++t) {
    if (bands[t] || IsAnnotationTier(grid.tiers[t])) continue;
    const auto free = std::find(taken.begin(), taken.end(), std::array<bool, 2>{});
    if (free == taken.end()) {
      ++result_.losses.tiers;
      continue;
    }
    *free = {true, true};
    bands[t] = static_cast<int>(free - taken.begin());
  }
  return bands;
}

std::vector<GridImport::Stretch> GridImport::StretchesOf(const GridTier& tier) {
  std::vector<Stretch> stretches;
  const int near = std::max(1, sampleRate_ / 100);
  for (std::size_t i = 0; i < tier.intervals.size(); ++i) {
    const GridInterval& interval = tier.intervals[i];
    const bool first = i == 0, last = i + 1 == tier.intervals.size();
    std::int64_t start = Sample(interval.start), end = Sample(interval.end);
    if (first && std::abs(start) <= near) start = 0;
    if (last && std::abs(end - sampleCount_) <= near) end = sampleCount_;
    if (start >= sampleCount_ || end <= 0) {
      result_.losses.outside += start != end || !interval.text.empty();
      continue;
    }
    Stretch stretch;
    stretch.text = FittingText(interval.text, kMarkerLabelBytes, result_.losses);
    stretch.start = static_cast<int>(std::max<std::int64_t>(start, 0));
    stretch.end = static_cast<int>(std::min<std::int64_t>(end, sampleCount_));
    stretch.startCounts = !first || !stretch.text.empty();
    stretch.endCounts = !last || !stretch.text.empty();
    stretches.push_back(std::move(stretch));
  }
  return stretches;
}

void GridImport::TakeIntervals(const GridTier& tier, int band) {
  const std::vector<Stretch> stretches = StretchesOf(tier);
  std::vector<int> edges;
  for (const Stretch& stretch : stretches) {
    if (stretch.startCounts && IsInner(stretch.start)) edges.push_back(stretch.start);
    if (stretch.endCounts && IsInner(stretch.end)) edges.push_back(stretch.end);
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  for (const int edge : edges)
    if (!builder_.AddMarker(band, edge)) ++result_.losses.markers;
  for (const Stretch& stretch : stretches) {
    if (stretch.text.empty()) continue;
    const bool fits = stretch.start < stretch.end && builder_.IsStretch(band, stretch.start, stretch.end) &&
                      builder_.AddLabel(band, stretch.start, stretch.end, stretch.text);
    if (!fits) ++result_.losses.labels;
  }
}

void GridImport::TakePoints(const GridTier& tier, int band) {
  std::vector<GridPoint> points = tier.points;
  std::stable_sort(points.begin(), points.end(),
                   [](const GridPoint& a, const GridPoint& b) { return a.time < b.time; });
  for (const GridPoint& point : points) {
    if (!InSound(Sample(point.time))) {
      ++result_.losses.outside;
      continue;
    }
    const int sample = static_cast<int>(Sample(point.time));
    const std::string text = FittingText(point.text, kMarkerLabelBytes, result_.losses);
    if (!builder_.HasMarker(band, sample) && builder_.IsInsideLabel(band, sample)) {
      ++result_.losses.labels;  // it would split the labelled stretch
    } else if (!builder_.AddMarker(band, sample)) {
      ++result_.losses.markers;
    } else if (!text.empty() && !builder_.AddLabel(band, sample, sample, text)) {
      ++result_.losses.labels;
    }
  }
}

void GridImport::TakeAnnotations(const GridTier& tier) {
  for (const GridPoint& point : tier.points) {
    const std::int64_t sample = Sample(point.time);
    if (!InSound(sample)) {
      ++result_.losses.outside;
    } else if (result_.annotations.size() == kMostAnnotations) {
      ++result_.losses.annotations;
    } else if (std::string text = FittingText(point.text, kAnnotationBytes, result_.losses); !text.empty()) {
      result_.annotations.push_back({std::move(text), static_cast<std::int32_t>(sample)});
    }
  }
}

ImportedMarkers GridImport::Run(const TextGrid& grid) {
  const auto bands = AssignBands(grid);
  // Boundaries come first: a band's points must not split its labelled stretches.
  for (const bool points : {false, true})
    for (std::size_t t = 0; t < grid.tiers.size(); ++t) {
      const GridTier& tier = grid.tiers[t];
      if (!bands[t] || tier.isPoints != points) continue;
      result_.hasBands = true;
      points ? TakePoints(tier, *bands[t]) : TakeIntervals(tier, *bands[t]);
    }
  for (const GridTier& tier : grid.tiers) {
    if (!IsAnnotationTier(tier)) continue;
    result_.hasAnnotations = true;
    TakeAnnotations(tier);
  }
  result_.set = builder_.set();
  return result_;
}

}  // namespace

TextGrid GridOfMarkers(const MarkerSet& markers, const std::vector<Annotation>& annotations, int sampleCount,
                       int sampleRate, ExportLosses& losses) {
  TextGrid grid{0, SecondsOf(sampleCount, sampleRate)};
  for (int band = 0; band < kMarkerBands; ++band) {
    grid.tiers.push_back(BandTier(markers, band, sampleCount, sampleRate, losses));
    std::vector<Moment> moments = PointLabels(markers, band, sampleCount, losses);
    if (!moments.empty())
      grid.tiers.push_back(
          PointTier(PointTierName(band), std::move(moments), sampleCount, sampleRate, losses));
  }
  std::vector<Moment> moments;
  for (const Annotation& annotation : annotations) {
    if (annotation.position >= 0 && annotation.position <= sampleCount) {
      moments.push_back({annotation.position, IpaAsDrawn(annotation.text)});
    } else {
      ++losses.leftOut;
    }
  }
  if (!moments.empty())
    grid.tiers.push_back(
        PointTier(std::string(kAnnotationTier), std::move(moments), sampleCount, sampleRate, losses));
  return grid;
}

ImportedMarkers MarkersOfGrid(const TextGrid& grid, int sampleCount, int sampleRate) {
  return GridImport(sampleCount, sampleRate).Run(grid);
}

}  // namespace parlowen
