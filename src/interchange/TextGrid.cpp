#include "interchange/TextGrid.h"

#include <cmath>

#include "interchange/TextObject.h"

namespace parlowen {
namespace {

constexpr std::string_view kClass = "TextGrid";
constexpr std::string_view kIntervalTier = "IntervalTier", kPointTier = "TextTier";
constexpr double kRounding = 1e-6;  // seconds: times that were rounded on their way

void PutTier(TextObjectWriter& out, const GridTier& tier) {
  out.PutString(2, "class", tier.isPoints ? kPointTier : kIntervalTier);
  out.PutString(2, "name", tier.name);
  out.PutNumber(2, "xmin", tier.start);
  out.PutNumber(2, "xmax", tier.end);
  if (tier.isPoints) {
    out.PutCount(2, "points: size", tier.points.size());
    for (std::size_t i = 0; i < tier.points.size(); ++i) {
      out.PutItem(2, "points", i + 1);
      out.PutNumber(3, "number", tier.points[i].time);
      out.PutString(3, "mark", tier.points[i].text);
    }
    return;
  }
  out.PutCount(2, "intervals: size", tier.intervals.size());
  for (std::size_t i = 0; i < tier.intervals.size(); ++i) {
    out.PutItem(2, "intervals", i + 1);
    out.PutNumber(3, "xmin", tier.intervals[i].start);
    out.PutNumber(3, "xmax", tier.intervals[i].end);
    out.PutString(3, "text", tier.intervals[i].text);
  }
}

/// False when the tier is damaged. `items` counts those of the whole file.
bool TakeTier(TokenReader& reader, GridTier& tier, std::size_t& items) {
  const std::string kind = reader.TakeString();
  tier.isPoints = kind == kPointTier;
  if (!tier.isPoints && kind != kIntervalTier) return false;
  tier.name = reader.TakeString();
  tier.start = reader.TakeNumber();
  tier.end = reader.TakeNumber();
  double last = tier.start;
  for (std::int64_t count = reader.TakeCount(); count > 0 && !reader.failed(); --count) {
    if (++items > kMostTierItems) return false;
    if (tier.isPoints) {
      GridPoint& point = tier.points.emplace_back();
      point.time = reader.TakeNumber();
      point.text = reader.TakeString();
      continue;
    }
    GridInterval& interval = tier.intervals.emplace_back();
    interval.start = reader.TakeNumber();
    interval.end = reader.TakeNumber();
    interval.text = reader.TakeString();
    if (std::fabs(interval.start - last) <= kRounding) interval.start = last;
    if (interval.end < interval.start || interval.start < last) return false;
    last = interval.end;
  }
  return !reader.failed();
}

}  // namespace

std::string TextGridText(const TextGrid& grid) {
  TextObjectWriter out(kClass);
  out.PutNumber(0, "xmin", grid.start);
  out.PutNumber(0, "xmax", grid.end);
  out.PutLine(0, "tiers? <exists> ");
  out.PutCount(0, "size", grid.tiers.size());
  out.PutLine(0, "item []: ");
  for (std::size_t i = 0; i < grid.tiers.size(); ++i) {
    out.PutItem(1, "item", i + 1);
    PutTier(out, grid.tiers[i]);
  }
  return out.text();
}

std::optional<TextGrid> ReadTextGrid(std::string_view utf8, GridFault& fault) {
  TokenReader reader(utf8);
  fault = GridFault::NoTextGrid;
  if (!TakeObjectHead(reader, kClass)) return {};
  fault = GridFault::Damaged;
  TextGrid grid;
  grid.start = reader.TakeNumber();
  grid.end = reader.TakeNumber();
  const bool hasTiers = reader.TakeFlag("exists");
  const std::int64_t count = hasTiers ? reader.TakeCount() : 0;
  if (reader.failed() || !(grid.start < grid.end) || count > static_cast<std::int64_t>(kMostTiers)) return {};
  std::size_t items = 0;
  for (std::int64_t i = 0; i < count; ++i)
    if (!TakeTier(reader, grid.tiers.emplace_back(), items)) return {};
  fault = GridFault::None;
  return grid;
}

}  // namespace parlowen
