#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace parlowen {

/// A stretch of an interval tier; seconds.
struct GridInterval {
  double start = 0, end = 0;
  std::string text;  ///< UTF-8
  bool operator==(const GridInterval&) const = default;
};

struct GridPoint {
  double time = 0;   ///< seconds
  std::string text;  ///< UTF-8
  bool operator==(const GridPoint&) const = default;
};

/// A tier has intervals or points.
struct GridTier {
  std::string name;
  bool isPoints = false;
  double start = 0, end = 0;
  std::vector<GridInterval> intervals{};
  std::vector<GridPoint> points{};
  bool operator==(const GridTier&) const = default;
};

/// Labels over time in tiers, as other programs keep them. For a reader to take all of it the intervals of a
/// tier cover start .. end without gap, overlap or zero length, and the points ascend, no two at one time.
struct TextGrid {
  double start = 0, end = 0;
  std::vector<GridTier> tiers{};
  bool operator==(const TextGrid&) const = default;
};

/// The file in its long form.
std::string TextGridText(const TextGrid& grid);

enum class GridFault { None, NoTextGrid, Damaged };

/// A file with more of them is damaged.
inline constexpr std::size_t kMostTiers = 1000, kMostTierItems = 1000000;

/// The grid of a long or short file; else `fault` says why not. Damaged is a file that is cut off or has
/// another value where a number or text should be, and one with an interval that ends before it starts or
/// starts before the last one has ended; a millionth of a second between two is rounding, the later one then
/// starts where the last has ended. Gaps, intervals of no length and points in any order are taken as they
/// are.
std::optional<TextGrid> ReadTextGrid(std::string_view utf8, GridFault& fault);

}  // namespace parlowen
