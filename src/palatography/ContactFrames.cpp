#include "palatography/ContactFrames.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kUsualRates[] = {50, 100, 200};
constexpr double kNearRate = 0.03;
constexpr std::uint8_t kFirstRow = 0x7E;  // bits 1..6

/// Mean and deviation of the numbers added; NaN without any.
class Moments {
 public:
  void Add(double value) {
    if (!std::isnan(value)) values_.push_back(value);
  }
  void Reserve(std::size_t count) { values_.reserve(count); }
  double Mean() const {
    double sum = 0;
    for (const double value : values_) sum += value;
    return values_.empty() ? kNone : sum / static_cast<double>(values_.size());
  }
  double Deviation(double mean) const {
    double sum = 0;
    for (const double value : values_) sum += (value - mean) * (value - mean);
    return values_.empty() ? kNone : std::sqrt(sum / static_cast<double>(values_.size()));
  }

 private:
  std::vector<double> values_;
};

/// Means and deviations of the indices that `indicesOf` gives of 0 .. count − 1.
template <typename IndicesOf>
void Summarise(std::size_t count, IndicesOf indicesOf, ContactStatistics& statistics) {
  std::array<Moments, kContactIndices> moments;
  for (Moments& m : moments) m.Reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const ContactIndices& indices = indicesOf(i);
    for (std::size_t k = 0; k < kContactIndices; ++k) moments[k].Add(indices[k]);
  }
  for (std::size_t k = 0; k < kContactIndices; ++k) {
    statistics.mean[k] = moments[k].Mean();
    statistics.deviation[k] = moments[k].Deviation(statistics.mean[k]);
  }
}

/// Each bit of a row in a byte of its own, 0 or 1: rows can be added.
std::uint64_t ByteOfEachBit(std::uint8_t row) {
  const std::uint64_t alone = row * 0x0101010101010101u & 0x8040201008040201u;
  return (alone + 0x7F7F7F7F7F7F7F7Fu) >> 7 & 0x0101010101010101u;
}

}  // namespace

ContactIndices MeasureContact(const ContactFrame& frame) {
  double n[kPalateRows], c[kPalateColumns], total = 0, moment = 0;
  std::uint64_t columns = 0;
  for (std::size_t row = 0; row < kPalateRows; ++row) {
    const std::uint8_t contacts = row == 0 ? frame[0] & kFirstRow : frame[row];
    columns += ByteOfEachBit(contacts);
    n[row] = std::popcount(contacts);
    total += n[row];
    moment += (7.5 - static_cast<double>(row)) * n[row];
  }
  for (std::size_t column = 0; column < kPalateColumns; ++column)
    c[column] = static_cast<double>(columns >> 8 * column & 0xFF);
  static const double kLargestAnteriority = std::log(5742.0), kLargestCentrality = std::log(5221.0);
  ContactIndices indices;
  indices[kTotalContact] = 100 * total / kElectrodes;
  indices[kFrontContact] = 100 * (n[0] + n[1] + n[2]) / 22;
  indices[kMiddleContact] = 100 * (n[3] + n[4]) / 16;
  indices[kBackContact] = 100 * (n[5] + n[6] + n[7]) / 24;
  indices[kAnteriority] =
      std::log(1 + n[4] / 8 + 9 * n[3] / 8 + 81 * n[2] / 8 + 729 * n[1] / 8 + 4921 * n[0] / 6) /
      kLargestAnteriority;
  indices[kCentrality] = std::log(1 + (c[0] + c[7]) / 14 + 17 * (c[1] + c[6]) / 16 +
                                  289 * (c[2] + c[5]) / 16 + 4913 * (c[3] + c[4]) / 16) /
                         kLargestCentrality;
  indices[kGravityCentre] = total > 0 ? moment / total : kNone;
  indices[kAsymmetry] = total > 0 ? (c[0] + c[1] + c[2] + c[3] - c[4] - c[5] - c[6] - c[7]) / total : kNone;
  return indices;
}

int ContactTiming::FrameAt(std::int64_t sample) const {
  const auto at = static_cast<double>(sample);
  int frame = std::clamp(TruncateToInt32(at * rate / sampleRate), 0, std::max(0, frames - 1));
  // The quotient may be off by a rounding; where a frame begins is what counts.
  while (frame > 0 && Start(frame) > at) --frame;
  while (frame + 1 < frames && Start(frame + 1) <= at) ++frame;
  return frame;
}

ContactSpan ContactTiming::FramesOf(int start, int end) const {
  const int holding = FrameAt(start);
  ContactSpan span{Start(holding) < start ? holding + 1 : holding, FrameAt(std::int64_t{end} - 1)};
  // A frame may begin between the last sample and the end.
  while (span.last + 1 < frames && Start(span.last + 1) < end) ++span.last;
  if (span.first >= frames || span.Count() < 1) return {holding, holding};
  return span;
}

double ContactRate(int frames, int sampleRate, int sampleCount) {
  const double rate = static_cast<double>(frames) * sampleRate / sampleCount;
  for (const double usual : kUsualRates)
    if (std::abs(rate - usual) <= kNearRate * usual) return usual;
  return rate;
}

bool ContactStatistics::HasContact() const {
  return std::any_of(percent.begin(), percent.end(), [](double share) { return share > 0; });
}

ContactStatistics MeasureStatistics(std::span<const ContactFrame> frames) {
  ContactStatistics statistics;
  std::array<int, kElectrodes> counts{};
  for (const ContactFrame& frame : frames)
    for (int row = 0; row < kPalateRows; ++row)
      for (unsigned bits = row == 0 ? frame[0] & kFirstRow : frame[static_cast<std::size_t>(row)]; bits != 0;
           bits &= bits - 1)
        ++counts[static_cast<std::size_t>(ElectrodeAt(row, std::countr_zero(bits)))];
  double variability = 0;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    statistics.percent[i] = 100.0 * counts[i] / static_cast<double>(frames.size());
    variability += 2 * (50 - std::abs(50 - statistics.percent[i]));
  }
  statistics.variability = variability / kElectrodes;
  std::vector<ContactIndices> indices;
  indices.reserve(frames.size());
  for (const ContactFrame& frame : frames) indices.push_back(MeasureContact(frame));
  Summarise(
      frames.size(), [&](std::size_t i) -> const ContactIndices& { return indices[i]; }, statistics);
  return statistics;
}

ContactStatistics MeanOf(std::span<const ContactStatistics> all) {
  ContactStatistics mean;
  for (const ContactStatistics& one : all) {
    for (std::size_t i = 0; i < kElectrodes; ++i) mean.percent[i] += one.percent[i];
    mean.variability += one.variability;
  }
  const auto count = static_cast<double>(all.size());
  for (double& share : mean.percent) share /= count;
  mean.variability /= count;
  Summarise(
      all.size(), [&](std::size_t i) -> const ContactIndices& { return all[i].mean; }, mean);
  return mean;
}

}  // namespace parlowen
