#include "pitch/PitchBands.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>
#include <span>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "pitch/MainsHum.h"

namespace parlowen {
namespace {

constexpr double kHighPass = 50, kLowPass = 900, kWideLowPass = 2000, kFullLowPass = 3400;  // Hz
constexpr double kHighestCutoff = 0.45;                                                     // of the rate
constexpr double kLowPassSeconds = 0.002;  // half a filter's length
constexpr int kShortestHalf = 4;
constexpr double kMargin = 0.1;       // seconds on either side, more than a window and a lag
constexpr int kWorkingRate = 8000;    // Hz
constexpr double kCoarseRate = 3600;  // Hz, four times the low band's frequency
constexpr int kPiece = 1024;          // outputs of the decimating low-pass that are made at a time
constexpr int kBlock = 8;             // sums that are kept apart, so that they add in vectors
constexpr float kArithmeticShare = 0.5f;

using Sums = std::array<float, kBlock>;

/// Always in this order.
PARLOWEN_INLINE float Total(const Sums& s) {
  return ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
}

/// Σ a[i]·b[i].
PARLOWEN_INLINE float Product(const float* a, const float* b, int count) {
  Sums sums{};
  int i = 0;
  for (; i + kBlock <= count; i += kBlock)
    for (std::size_t j = 0; j < kBlock; ++j)
      sums[j] += a[i + static_cast<int>(j)] * b[i + static_cast<int>(j)];
  float total = Total(sums);
  for (; i < count; ++i) total += a[i] * b[i];
  return total;
}

PARLOWEN_INLINE float Normalised(float product, float e1, float e2) {
  const float geometric = std::sqrt(e1 * e2), arithmetic = (e1 + e2) / 2;
  return product / (geometric + kArithmeticShare * (arithmetic - geometric));
}

PARLOWEN_INLINE int WidthOf(int window, int lag) { return std::max(1, (window + lag / 2) / kBlock) * kBlock; }

/// `x` and `energy` at the centre.
PARLOWEN_CLONES void CorrelateAbout(const float* x, const double* energy, double floor, int window,
                                    int lowest, int count, float* r) {
  std::array<float, kMostCoarseLags> e1, e2;
  for (int i = 0; i < count; ++i) {
    const int lag = lowest + i, width = WidthOf(window, lag), first = -(width + lag) / 2,
              second = first + lag;
    r[i] = Product(x + first, x + second, width);
    e1[static_cast<std::size_t>(i)] =
        static_cast<float>(energy[first + width] - energy[first] + floor * width);
    e2[static_cast<std::size_t>(i)] =
        static_cast<float>(energy[second + width] - energy[second] + floor * width);
  }
  for (int i = 0; i < count; ++i)
    r[i] = Normalised(r[i], e1[static_cast<std::size_t>(i)], e2[static_cast<std::size_t>(i)]);
}

PARLOWEN_CLONES float CorrelationOf(const float* a, const float* b, int count, float floor) {
  return Normalised(Product(a, b, count), Product(a, a, count) + floor, Product(b, b, count) + floor);
}

PARLOWEN_CLONES float Energy(const float* x, int count) { return Product(x, x, count); }

/// Σ i·a[i]·b[i] over Σ a[i]·b[i]; the middle where that is not positive.
PARLOWEN_CLONES float MomentOf(const float* a, const float* b, int count) {
  Sums moments{}, totals{}, place{0, 1, 2, 3, 4, 5, 6, 7};
  for (int i = 0; i < count; i += kBlock)
    for (std::size_t j = 0; j < kBlock; ++j) {
      const float product = a[i + static_cast<int>(j)] * b[i + static_cast<int>(j)];
      moments[j] += place[j] * product;
      totals[j] += product;
      place[j] += kBlock;
    }
  const float total = Total(totals);
  return total > 0 ? Total(moments) / total : static_cast<float>(count) / 2;
}

/// Half of a symmetric low-pass (windowed sinc, Hamming), unit gain at 0 Hz; `cutoff` in shares of the rate.
std::vector<float> LowPassTaps(int half, double cutoff) {
  std::vector<double> taps(static_cast<std::size_t>(half) + 1);
  double sum = 0;
  for (int k = 0; k <= half; ++k) {
    const double angle = 2 * std::numbers::pi * cutoff * k;
    const double sinc = k == 0 ? 2 * cutoff : std::sin(angle) / (std::numbers::pi * k);
    taps[static_cast<std::size_t>(k)] = sinc * (0.54 + 0.46 * std::cos(std::numbers::pi * k / (half + 1)));
    sum += (k == 0 ? 1 : 2) * taps[static_cast<std::size_t>(k)];
  }
  std::vector<float> result;
  result.reserve(taps.size());
  for (const double tap : taps) result.push_back(static_cast<float>(tap / sum));
  return result;
}

/// Butterworth high-pass of second order.
class HighPass {
 public:
  HighPass(double cutoff, double rate) {
    const double w = std::tan(std::numbers::pi * std::min(cutoff / rate, 0.4)), q = std::numbers::sqrt2 * w;
    gain_ = 1 / (1 + q + w * w);
    a1_ = 2 * (w * w - 1) * gain_;
    a2_ = (1 - q + w * w) * gain_;
  }
  double Next(double x) {
    const double y = (gain_ * (x - 2 * x1_ + x2_) - a2_ * y2_) - a1_ * y1_;  // y1_ last: it is known last
    x2_ = x1_;
    x1_ = x;
    y2_ = y1_;
    y1_ = y;
    return y;
  }

 private:
  double gain_ = 1, a1_ = 0, a2_ = 0, x1_ = 0, x2_ = 0, y1_ = 0, y2_ = 0;
};

/// The samples from half before the first output to half behind the last one, sorted by their place among
/// `decimation` ones, so that what neighbouring outputs need lies side by side.
struct Phases {
  int decimation = 1, half = 0, stride = 0;
  std::vector<float> samples{};

  /// `count` samples of the document from `from` on.
  void Fill(SampleSpan document, std::int64_t from, int count) {
    const bool inside = from >= 0 && from + count <= document.count;
    for (int phase = 0; phase < decimation; ++phase) {
      float* place = samples.data() + phase * stride;
      if (inside) {
        const std::int16_t* x = document.data + from;
        for (int i = phase; i < count; i += decimation) *place++ = x[i];
      } else {
        for (int i = phase; i < count; i += decimation) *place++ = document.At(from + i);
      }
    }
  }
  const float* At(int i) const { return samples.data() + i % decimation * stride + i / decimation; }
};

/// Four taps at a time, to load and store the output less often: output[n] += Σ tap·(before + after).
PARLOWEN_CLONES void AddTaps(const float* taps, const float* const* before, const float* const* after,
                             int count, float* output) {
  const float *a0 = before[0], *a1 = before[1], *a2 = before[2], *a3 = before[3];
  const float *b0 = after[0], *b1 = after[1], *b2 = after[2], *b3 = after[3];
  const float t0 = taps[0], t1 = taps[1], t2 = taps[2], t3 = taps[3];
  for (int n = 0; n < count; ++n)
    output[n] +=
        (t0 * (a0[n] + b0[n]) + t1 * (a1[n] + b1[n])) + (t2 * (a2[n] + b2[n]) + t3 * (a3[n] + b3[n]));
}

/// The symmetric low-pass, `count` outputs; at(k) is what stands k inputs behind that of the middle tap.
template <typename At>
void Convolve(std::span<const float> taps, const At& at, int count, float* output) {
  constexpr int kTogether = 4;
  const float* middle = at(0);
  const int half = static_cast<int>(taps.size()) - 1;
  for (int n = 0; n < count; ++n) output[n] = taps[0] * middle[n];
  for (int first = 1; first <= half; first += kTogether) {
    std::array<float, kTogether> weights{};
    std::array<const float*, kTogether> before{}, after{};
    for (int i = 0; i < kTogether; ++i) {
      const int k = std::min(first + i, half);  // beyond the last tap: nothing of the last
      const auto place = static_cast<std::size_t>(i);
      weights[place] = first + i <= half ? taps[static_cast<std::size_t>(k)] : 0;
      before[place] = at(-k);
      after[place] = at(k);
    }
    AddTaps(weights.data(), before.data(), after.data(), count, output);
  }
}

int HalfOf(double rate) { return std::max(kShortestHalf, TruncateToInt32(rate * kLowPassSeconds)); }

/// The low-pass of a band at its own rate; the ends stay silent.
void LowPass(const std::vector<float>& input, double cutoff, double rate, std::vector<float>& output) {
  const int half = HalfOf(rate);
  const std::vector<float> taps = LowPassTaps(half, std::min(kHighestCutoff, cutoff / rate));
  output.assign(input.size(), 0.0f);
  const int end = static_cast<int>(input.size()) - half;
  for (int from = half; from < end; from += kPiece)
    Convolve(
        taps, [&](int k) { return input.data() + from + k; }, std::min(kPiece, end - from),
        output.data() + from);
}

}  // namespace

int PitchBands::DecimationOf(int sampleRate) { return std::max(1, sampleRate / kWorkingRate); }

PitchBands::PitchBands(SampleSpan document, int sampleRate, int firstFrame, std::size_t frameCount)
    : sampleRate_(sampleRate),
      firstFrame_(firstFrame),
      decimation_(DecimationOf(sampleRate)),
      rate_(static_cast<double>(sampleRate) / decimation_),
      coarseStep_(static_cast<std::size_t>(std::max(1, TruncateToInt32(rate_ / kCoarseRate)))),
      coarseRate_(rate_ / static_cast<double>(coarseStep_)) {
  const int margin = TruncateToInt32(rate_ * kMargin);
  origin_ = DocumentCentre(0) - std::int64_t{margin} * decimation_;
  MakeFull(document, Centre(frameCount - 1) + static_cast<std::size_t>(margin));
  RemoveHum(document.count);
  LowPass(full.samples, kWideLowPass, rate_, wide.samples);
  LowPass(full.samples, kLowPass, rate_, low.samples);
  MakeCoarse();
}

void PitchBands::MakeCoarse() {
  coarse.samples.resize((low.samples.size() + coarseStep_ - 1) / coarseStep_);
  coarseEnergy.resize(coarse.samples.size() + 1);
  double sum = 0;
  for (std::size_t n = 0; n < coarse.samples.size(); ++n) {
    const float x = low.samples[n * coarseStep_];
    coarse.samples[n] = x;
    coarseEnergy[n] = sum;
    sum += static_cast<double>(x) * static_cast<double>(x);
  }
  coarseEnergy.back() = sum;
}

/// Within the document alone: what lies outside stays silent.
void PitchBands::RemoveHum(std::int64_t documentCount) {
  const auto size = static_cast<std::int64_t>(full.samples.size());
  const std::int64_t first = std::clamp<std::int64_t>((decimation_ - 1 - origin_) / decimation_, 0, size);
  const std::int64_t end = std::clamp<std::int64_t>((documentCount - origin_) / decimation_, first, size);
  RemoveMainsHum({full.samples.data() + first, static_cast<std::size_t>(end - first)}, rate_);
}

void PitchBands::MakeFull(SampleSpan document, std::size_t count) {
  const int half = HalfOf(static_cast<double>(sampleRate_));
  const std::vector<float> taps =
      LowPassTaps(half, std::min(kHighestCutoff, kFullLowPass / static_cast<double>(sampleRate_)));
  full.samples.resize(count);
  // In pieces, each copied with its neighbours, so that what lies outside the document is silence.
  Phases phases{decimation_, half, kPiece + 2 * half / decimation_ + 1};
  phases.samples.resize(static_cast<std::size_t>(decimation_ * phases.stride));
  HighPass highPass(kHighPass, rate_);
  for (std::size_t first = 0; first < count; first += kPiece) {
    const int length = static_cast<int>(std::min<std::size_t>(kPiece, count - first));
    const std::int64_t from = origin_ + static_cast<std::int64_t>(first) * decimation_ - half;
    phases.Fill(document, from, length * decimation_ + 2 * half);
    float* piece = full.samples.data() + first;
    Convolve(
        taps, [&](int k) { return phases.At(half + k); }, length, piece);
    for (int n = 0; n < length; ++n)
      piece[n] = static_cast<float>(highPass.Next(static_cast<double>(piece[n])));
  }
}

double Band::Power(std::size_t centre, int half) const {
  const float energy = Energy(At(centre - static_cast<std::size_t>(half)), 2 * half);
  return static_cast<double>(energy) / (2 * half);
}

float Correlation(const Band& band, std::size_t first, int lag, int width, double floor) {
  const float* x = band.At(first);
  return CorrelationOf(x, x + lag, width, static_cast<float>(floor * width));
}

void CorrelateCoarse(const PitchBands& bands, std::size_t centre, double floor, int window, int lowest,
                     int highest, float* r) {
  CorrelateAbout(bands.coarse.At(centre), bands.coarseEnergy.data() + centre, floor, window, lowest,
                 std::min(kMostCoarseLags, highest - lowest + 1), r);
}

int CorrelationWidth(int window, int lag) { return WidthOf(window, lag); }

double CentreOfProducts(const Band& band, std::size_t centre, int lag, int width) {
  const int first = -(width + lag) / 2;
  const float* x = band.At(centre) + first;
  return first + static_cast<double>(MomentOf(x, x + lag, width)) + lag / 2.0;
}

double Log2(double x) {
  const auto bits = std::bit_cast<std::uint64_t>(x);
  int exponent = static_cast<int>(bits >> 52) - 1023;
  double mantissa = std::bit_cast<double>((bits & 0x000fffffffffffffULL) | 0x3ff0000000000000ULL);
  if (mantissa > std::numbers::sqrt2) {
    mantissa /= 2;
    ++exponent;
  }
  // 2·artanh s = ln m; |s| is at most 0.1716.
  const double s = (mantissa - 1) / (mantissa + 1), s2 = s * s;
  const double series = 1 + s2 * (1.0 / 3 + s2 * (1.0 / 5 + s2 * (1.0 / 7 + s2 * (1.0 / 9))));
  return exponent + 2 * std::numbers::log2e * s * series;
}

}  // namespace parlowen
