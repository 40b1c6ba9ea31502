#include "spectral/FilterBank.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/Decibel.h"
#include "dsp/Fir.h"

namespace parlowen {
namespace {

constexpr int kMargin = kFirstFilterBankSample;  // samples of the block before and behind the stretch
constexpr int kHalfLength = 20;                  // of the two filters of a channel
constexpr int kTaps = 2 * kHalfLength + 1;
constexpr int kReach = 2 * kHalfLength;  // of both together
constexpr double kShape = 0.92;
constexpr int kRangeCutoff = 2000;    // Hz
constexpr double kOpenEnd = 0.8;      // instead of a filter whose edge lies at an end of the spectrum
constexpr double kLeastRange = 40.0;  // dB

// Channels and samples that are filtered at a time: their sums stay in registers.
constexpr int kChannelsAtOnce = 4, kSamplesAtOnce = 8;

/// Samples 0 .. kReach behind the centre of a symmetric filter.
using HalfFilter = std::array<double, kReach + 1>;
using Filter = std::array<double, kTaps>;

struct Columns {
  int count, length, frameLength;
  int Start(int column) const { return kMargin + static_cast<int>(std::int64_t{column} * length / count); }
};

std::vector<double> MakeBlock(SampleSpan samples, int sampleRate, int start, int length, int peakLevel) {
  const double scale = 1500.0 / (std::max(1, peakLevel) * static_cast<double>(sampleRate) * 0.0001);
  std::vector<double> block(static_cast<std::size_t>(length) + 2 * kMargin);
  for (std::size_t n = 0; n < block.size(); ++n) {
    const std::int64_t at = std::int64_t{start} - kMargin + static_cast<std::int64_t>(n);
    block[n] = (samples.At(at + 1) - 0.95 * samples.At(at)) * scale;
  }
  return block;
}

double ContrastOf(const std::vector<double>& block, int sampleRate, const Columns& columns) {
  std::vector<std::int16_t> copy(block.size());
  std::transform(block.begin(), block.end(), copy.begin(),
                 [](double value) { return SaturateInt16(TruncateToInt64(value)); });
  Filter taps;
  DesignFirFilter(kRangeCutoff, kShape, kHalfLength, 0, taps.data(), sampleRate);
  const int count = static_cast<int>(copy.size());
  ApplyFirFilter(kTaps, count - 2 * kHalfLength + 1, kHalfLength, taps.data(), copy.data(), count);
  double largest = 0.0, smallest = 0.0;
  for (int column = 0; column < columns.count; ++column) {
    const int start = columns.Start(column);
    double energy = 0.0;
    for (int n = start; n < std::min(start + columns.frameLength, count); ++n) {
      const double value = copy[static_cast<std::size_t>(n)];
      energy += value * value;
    }
    const double level = PowerToDb(energy, 0);
    largest = column == 0 ? level : std::max(largest, level);
    smallest = column == 0 ? level : std::min(smallest, level);
  }
  return 255.0 / std::max(kLeastRange, 0.75 * (largest - smallest));
}

/// The two filters of a channel, one behind the other.
struct ChannelFilters {
  Filter low{}, high{};
};

ChannelFilters FiltersOf(int channel, int sampleRate) {
  const int lower = static_cast<int>(std::int64_t{channel - 1} * sampleRate / 512);
  const int upper = static_cast<int>(std::int64_t{channel + 1} * sampleRate / 512);
  ChannelFilters filters;
  filters.low[kHalfLength] = filters.high[kHalfLength] = kOpenEnd;
  if (upper < sampleRate / 2 - 10)
    DesignFirFilter(upper, kShape, kHalfLength, 0, filters.low.data(), sampleRate);
  if (lower >= 11) DesignFirFilter(lower, kShape, kHalfLength, 1, filters.high.data(), sampleRate);
  return filters;
}

HalfFilter Joined(const ChannelFilters& filters) {
  HalfFilter both{};
  for (std::size_t k = 0; k < both.size(); ++k)
    for (std::size_t i = k; i < kTaps; ++i) both[k] += filters.low[i] * filters.high[kReach + k - i];
  return both;
}

// y² of the block's last kHalfLength samples, filter by filter: the second one finds silence where the joined
// one would find what the first one leaves behind the block.
void FilterTail(const std::vector<double>& block, const ChannelFilters& filters, double* squares) {
  const std::size_t length = block.size(), first = length - kReach;
  double passed[kReach] = {};
  for (std::size_t n = first; n < length; ++n)
    for (std::size_t m = 0; m < kTaps && n + m - kHalfLength < length; ++m)
      passed[n - first] += filters.low[m] * block[n + m - kHalfLength];
  for (std::size_t n = first + kHalfLength; n < length; ++n) {
    double sum = 0.0;
    for (std::size_t m = 0; m < kTaps && n + m - kHalfLength < length; ++m)
      sum += filters.high[m] * passed[n + m - kHalfLength - first];
    squares[n] = sum * sum;
  }
}

// squares[channel][n] = y² of samples 0 .. count − 1, a multiple of kSamplesAtOnce, behind x. The two samples
// that stand k away from the centre share a tap in every channel.
PARLOWEN_CLONES void FilterChannels(const double* __restrict x, int count, const double* __restrict taps,
                                    double* __restrict squares, int stride) {
  for (int n = 0; n < count; n += kSamplesAtOnce) {
    double sums[kChannelsAtOnce][kSamplesAtOnce];
    for (int c = 0; c < kChannelsAtOnce; ++c)
      for (int i = 0; i < kSamplesAtOnce; ++i) sums[c][i] = taps[c] * x[n + i];
    for (int k = 1; k <= kReach; ++k) {
      const double* __restrict before = x + n - k;
      const double* __restrict behind = x + n + k;
      const double* __restrict tap = taps + k * kChannelsAtOnce;
      double pair[kSamplesAtOnce];
      for (int i = 0; i < kSamplesAtOnce; ++i) pair[i] = before[i] + behind[i];
      for (int c = 0; c < kChannelsAtOnce; ++c)
        for (int i = 0; i < kSamplesAtOnce; ++i) sums[c][i] += tap[c] * pair[i];
    }
    for (int c = 0; c < kChannelsAtOnce; ++c)
      for (int i = 0; i < kSamplesAtOnce; ++i) squares[c * stride + n + i] = sums[c][i] * sums[c][i];
  }
}

PARLOWEN_CLONES double Sum(const double* values, int count) {
  constexpr int kLanes = 8;
  double lanes[kLanes] = {};
  int n = 0;
  for (; n + kLanes <= count; n += kLanes)
    for (int lane = 0; lane < kLanes; ++lane) lanes[lane] += values[n + lane];
  double sum = 0.0;
  for (; n < count; ++n) sum += values[n];
  for (const double lane : lanes) sum += lane;
  return sum;
}

}  // namespace

int FilterBankFrameLength(int sampleRate) {
  return std::max(1, sampleRate > 12000 ? sampleRate / 250 : sampleRate / 300);
}

SpectrogramMatrix ComputeFilterBank(SampleSpan samples, int sampleRate, int start, int end, int columnCount,
                                    int peakLevel) {
  SpectrogramMatrix matrix;
  start = std::max(start, kMargin);
  if (sampleRate <= 0 || columnCount <= 0 || end <= start || end - start > kLongestFilterBankStretch)
    return matrix;
  const Columns columns{columnCount, end - start, FilterBankFrameLength(sampleRate)};
  const std::vector<double> block = MakeBlock(samples, sampleRate, start, columns.length, peakLevel);
  const double contrast = ContrastOf(block, sampleRate, columns);
  matrix.columns = columnCount;
  matrix.greys.resize(static_cast<std::size_t>(columnCount) * kSpectrogramRows);

  const int length = static_cast<int>(block.size());
  const int stride = (length + kSamplesAtOnce - 1) / kSamplesAtOnce * kSamplesAtOnce;
  std::vector<double> padded(static_cast<std::size_t>(stride + 2 * kReach));
  std::copy(block.begin(), block.end(), padded.begin() + kReach);
  std::vector<double> squares(static_cast<std::size_t>(kChannelsAtOnce) * static_cast<std::size_t>(stride));
  for (int first = 1; first < kSpectrogramRows; first += kChannelsAtOnce) {
    double taps[(kReach + 1) * kChannelsAtOnce] = {};
    const int here = std::min(kChannelsAtOnce, kSpectrogramRows - first);
    std::array<ChannelFilters, kChannelsAtOnce> filters;
    for (int c = 0; c < here; ++c) {
      filters[static_cast<std::size_t>(c)] = FiltersOf(first + c, sampleRate);
      const HalfFilter filter = Joined(filters[static_cast<std::size_t>(c)]);
      for (std::size_t k = 0; k < filter.size(); ++k)
        taps[k * kChannelsAtOnce + static_cast<std::size_t>(c)] = filter[k];
    }
    FilterChannels(padded.data() + kReach, stride, taps, squares.data(), stride);
    for (int c = 0; c < here; ++c) {
      double* energies = squares.data() + std::ptrdiff_t{c} * stride;
      FilterTail(block, filters[static_cast<std::size_t>(c)], energies);
      for (int column = 0; column < columnCount; ++column) {
        const int from = columns.Start(column);
        const int to = std::min(from + columns.frameLength, length);
        const double level = PowerToDb(Sum(energies + from, to - from), 0);
        const int grey = 255 - TruncateToInt32(contrast * level);
        // A channel fills two rows, and the next one writes over the upper of them.
        std::uint16_t* greys = matrix.Column(column) + first + c - 1;
        greys[0] = greys[1] = static_cast<std::uint16_t>(std::max(0, grey));
      }
    }
  }
  return matrix;
}

}  // namespace parlowen
