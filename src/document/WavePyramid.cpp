#include "document/WavePyramid.h"

#include <algorithm>

namespace parlowen {
namespace {

constexpr int kBlock = 256;

void Widen(MinMax& range, MinMax other) {
  range.min = std::min(range.min, other.min);
  range.max = std::max(range.max, other.max);
}

MinMax Scan(SampleSpan samples, int start, int end) {
  MinMax range{samples.data[start], samples.data[start]};
  for (int i = start + 1; i < end; ++i) {
    range.min = std::min(range.min, samples.data[i]);
    range.max = std::max(range.max, samples.data[i]);
  }
  return range;
}

}  // namespace

void WavePyramid::Update(SampleSpan samples, std::uint64_t version) {
  if (version == version_) return;
  version_ = version;
  levels_.clear();
  std::vector<MinMax> level;
  for (int at = 0; at < samples.count; at += kBlock)
    level.push_back(Scan(samples, at, std::min(at + kBlock, samples.count)));
  while (level.size() > 1) {
    std::vector<MinMax> above((level.size() + 1) / 2);
    for (std::size_t i = 0; i < above.size(); ++i) {
      above[i] = level[2 * i];
      if (2 * i + 1 < level.size()) Widen(above[i], level[2 * i + 1]);
    }
    levels_.push_back(std::move(level));
    level = std::move(above);
  }
  levels_.push_back(std::move(level));
}

MinMax WavePyramid::Extremes(SampleSpan samples, int start, int end) const {
  start = std::max(start, 0);
  end = std::min(end, samples.count);
  if (start >= end) return {};
  MinMax range{samples.data[start], samples.data[start]};
  // Whole blocks from the pyramid, the largest that fit; the ragged ends from the samples.
  int at = start;
  while (at < end) {
    if (at % kBlock != 0 || end - at < kBlock) {
      const int stop = std::min(end, (at / kBlock + 1) * kBlock);
      Widen(range, Scan(samples, at, stop));
      at = stop;
      continue;
    }
    std::size_t level = 0;
    int size = kBlock;
    while (level + 1 < levels_.size() && at % (2 * size) == 0 && end - at >= 2 * size) {
      ++level;
      size *= 2;
    }
    Widen(range, levels_[level][static_cast<std::size_t>(at / size)]);
    at += size;
  }
  return range;
}

ExtremesOf ExtremesFrom(const WavePyramid& pyramid, SampleSpan samples) {
  return [&pyramid, samples](std::int64_t from, std::int64_t end) {
    const MinMax seen = pyramid.Extremes(samples, static_cast<int>(from), static_cast<int>(end));
    return std::pair<double, double>{seen.min, seen.max};
  };
}

ExtremesOf ExtremesFrom(SampleSpan samples) {
  return [samples](std::int64_t from, std::int64_t end) {
    const auto [low, high] = std::minmax_element(samples.data + from, samples.data + end);
    return std::pair<double, double>{*low, *high};
  };
}

MinMax ExtremesOfAll(SampleSpan samples) {
  if (samples.count <= 0) return {};
  const auto [low, high] = std::minmax_element(samples.data, samples.data + samples.count);
  return {*low, *high};
}

int PeakOf(MinMax extremes) { return std::max<int>(extremes.max, -static_cast<int>(extremes.min)); }

}  // namespace parlowen
