#include "pitch/MainsHum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"

// In order: the quiet blocks and whether they repeat themselves, the harmonics in each of them for either mains,
// the frequency from the phases of blocks further and further apart, and the hum between the blocks.

namespace parlowen {
namespace {

constexpr std::size_t kHarmonics = 18;
constexpr double kHighestHum = 900, kHighestShare = 0.45;  // Hz; of the rate
// A block holds whole periods of all harmonics of both mains, so that none of them shows in another.
constexpr double kBlock = 0.1;    // seconds
constexpr std::size_t kHops = 2;  // blocks begin twice in the time of one
constexpr std::size_t kLeastBlocks = 8, kLeastPairs = 5;
constexpr double kLoudShare = 0.95, kQuietShare = 0.05;  // quantiles of the blocks' powers
constexpr double kQuietSpread = 4;     // times the power of the quiet quantile is quiet too,
constexpr double kQuietToLoud = 0.06;  // up to that share of the loud power
constexpr double kLeastRepeat = 0.2;   // correlation with the next block
constexpr double kLeastStep = 0.7;    // share of a harmonic's power that keeps step from a block to the next,
constexpr double kStillInStep = 0.5;  // and of all of them over the times that the frequency is told from
constexpr double kLeastShare = 0.2;   // of the quiet power is hum
constexpr double kNeverBelow = 0.5;   // times the power of the hum is every block's at least
constexpr std::size_t kNeighbours = 20;  // quiet blocks on either side that tell the hum at a moment,
constexpr double kNear = 0.2;  // seconds: the nearer ones count about alike, others by distance⁻⁴

using Complex = std::complex<double>;
using Amplitudes = std::array<Complex, kHarmonics>;

/// A complex number a harmonic, in two rows for the compiler's vectors.
struct Phasors {
  std::array<double, kHarmonics> re{}, im{};

  Phasors() = default;
  explicit Phasors(const Amplitudes& values) {
    for (std::size_t k = 0; k < kHarmonics; ++k) {
      re[k] = values[k].real();
      im[k] = values[k].imag();
    }
  }
};

/// exp(2πi·turns·k) for k from 1 on.
Amplitudes Turned(double turns) {
  const Complex first = std::polar(1.0, 2 * std::numbers::pi * std::fmod(turns, 1.0));
  Amplitudes powers;
  powers[0] = first;
  for (std::size_t k = 1; k < kHarmonics; ++k) powers[k] = powers[k - 1] * first;
  return powers;
}

PARLOWEN_INLINE void Turn(Phasors& p, const Phasors& by) {
  for (std::size_t k = 0; k < kHarmonics; ++k) {
    const double re = p.re[k] * by.re[k] - p.im[k] * by.im[k];
    p.im[k] = p.re[k] * by.im[k] + p.im[k] * by.re[k];
    p.re[k] = re;
  }
}

/// Σ x[n]·exp(−iωn) of every harmonic, `step` being exp(iω).
PARLOWEN_CLONES void Demodulate(const float* x, std::size_t count, const Phasors& step, Phasors& sums) {
  Phasors p;
  p.re.fill(1);
  for (std::size_t n = 0; n < count; ++n) {
    const auto value = static_cast<double>(x[n]);
    for (std::size_t k = 0; k < kHarmonics; ++k) {
      sums.re[k] += value * p.re[k];
      sums.im[k] -= value * p.im[k];
    }
    Turn(p, step);
  }
}

/// x[n] −= Σ Re(a·p·exp(iωn)), where a grows by `slope` from sample to sample.
PARLOWEN_CLONES void SubtractTurning(float* x, std::size_t count, Phasors a, const Phasors& slope, Phasors p,
                                     const Phasors& step) {
  for (std::size_t n = 0; n < count; ++n) {
    double sum = 0;
    for (std::size_t k = 0; k < kHarmonics; ++k) {
      sum += a.re[k] * p.re[k] - a.im[k] * p.im[k];
      a.re[k] += slope.re[k];
      a.im[k] += slope.im[k];
    }
    x[n] -= static_cast<float>(sum);
    Turn(p, step);
  }
}

PARLOWEN_CLONES double ProductOf(const float* a, const float* b, std::size_t count) {
  std::array<float, 8> sums{};
  for (std::size_t i = 0; i + sums.size() <= count; i += sums.size())
    for (std::size_t j = 0; j < sums.size(); ++j) sums[j] += a[i + j] * b[i + j];
  double total = 0;
  for (const float sum : sums) total += static_cast<double>(sum);
  return total;
}

/// The blocks of a recording, and which of them are quiet.
struct Blocks {
  std::span<float> samples;
  double rate;  // Hz
  std::size_t hop, length, count;
  std::vector<std::size_t> quiet{};
  double quietPower = 0, leastPower = 0;

  Blocks(std::span<float> recording, double sampleRate)
      : samples(recording),
        rate(sampleRate),
        hop(static_cast<std::size_t>(std::max(1, TruncateToInt32(rate * kBlock / kHops + 0.5)))),
        length(hop * kHops),
        count(samples.size() < length ? 0 : (samples.size() - length) / hop + 1) {}
  const float* At(std::size_t block) const { return samples.data() + block * hop; }
  double Seconds(std::size_t hops) const { return static_cast<double>(hops * hop) / rate; }
  bool FindQuiet();
  bool Repeat() const;
  /// Calls for the places in `quiet` of every two that are so many hops apart, and returns how many there are.
  template <typename Take>
  std::size_t Pairs(std::size_t hops, const Take& take) const {
    std::size_t pairs = 0;
    for (std::size_t i = 0, j = 0; i < quiet.size(); ++i) {
      while (j < quiet.size() && quiet[j] < quiet[i] + hops) ++j;
      if (j == quiet.size()) break;
      if (quiet[j] != quiet[i] + hops) continue;
      take(i, j);
      ++pairs;
    }
    return pairs;
  }
};

bool Blocks::FindQuiet() {
  if (count < kLeastBlocks) return false;
  std::vector<double> powers(count);
  for (std::size_t b = 0; b < count; ++b)
    powers[b] = ProductOf(At(b), At(b), length) / static_cast<double>(length);
  std::vector<double> sorted = powers;
  std::sort(sorted.begin(), sorted.end());
  const auto quantile = [&sorted](double share) {
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
  };
  leastPower = sorted.front();
  const double most = std::min(kQuietSpread * quantile(kQuietShare), kQuietToLoud * quantile(kLoudShare));
  for (std::size_t b = 0; b < count; ++b) {
    if (powers[b] > most) continue;
    quiet.push_back(b);
    quietPower += powers[b];
  }
  quietPower /= static_cast<double>(std::max<std::size_t>(1, quiet.size()));
  return quiet.size() >= kLeastBlocks && leastPower > 0;
}

bool Blocks::Repeat() const {
  double products = 0, energies = 0;
  const std::size_t pairs = Pairs(kHops, [&](std::size_t i, std::size_t j) {
    const float *one = At(quiet[i]), *next = At(quiet[j]);
    products += ProductOf(one, next, length);
    energies += (ProductOf(one, one, length) + ProductOf(next, next, length)) / 2;
  });
  return pairs >= kLeastPairs && products > kLeastRepeat * energies;
}

/// The harmonics of one mains in the quiet blocks.
class Hum {
 public:
  Hum(const Blocks& blocks, double mains);

  double power() const { return power_; }
  bool IsSteady() const {
    return power_ > kLeastShare * blocks_.quietPower && blocks_.leastPower > kNeverBelow * power_;
  }
  void Subtract() const;

 private:
  bool Follow(std::size_t hops);
  Amplitudes Near(std::size_t block) const;

  const Blocks& blocks_;
  double frequency_, power_ = 0;
  std::array<bool, kHarmonics> heard_{};
  std::vector<Amplitudes> amplitudes_;  // of the quiet blocks, the phases turned back to the first sample
};

Hum::Hum(const Blocks& blocks, double mains) : blocks_(blocks), frequency_(mains) {
  const Phasors step(Turned(mains / blocks.rate));
  const double highest = std::min(kHighestHum, kHighestShare * blocks.rate);
  amplitudes_.resize(blocks.quiet.size());
  for (std::size_t i = 0; i < blocks.quiet.size(); ++i) {
    Phasors sums;
    Demodulate(blocks.At(blocks.quiet[i]), blocks.length, step, sums);
    const Amplitudes back = Turned(-mains * blocks.Seconds(blocks.quiet[i]));
    for (std::size_t k = 0; k < kHarmonics && static_cast<double>(k + 1) * mains <= highest; ++k)
      amplitudes_[i][k] =
          Complex(sums.re[k], sums.im[k]) * back[k] * (2 / static_cast<double>(blocks.length));
  }
  // Over twice the time the frequency is told twice as well, as long as it stays the same.
  for (std::size_t hops = kHops; hops < blocks.count && Follow(hops);) hops *= 2;
}

/// Adds to the frequency what the phases advance by in quiet blocks so many hops apart; false where these are few
/// or not in step. Neighbouring blocks tell which harmonics there are.
bool Hum::Follow(std::size_t hops) {
  Amplitudes sums{};
  std::array<double, kHarmonics> energies{};
  const std::size_t pairs = blocks_.Pairs(hops, [&](std::size_t i, std::size_t j) {
    for (std::size_t k = 0; k < kHarmonics; ++k) {
      sums[k] += amplitudes_[j][k] * std::conj(amplitudes_[i][k]);
      energies[k] += (std::norm(amplitudes_[j][k]) + std::norm(amplitudes_[i][k])) / 2;
    }
  });
  if (pairs < kLeastPairs) return false;
  double inStep = 0, all = 0, turned = 0, weights = 0;
  for (std::size_t k = 0; k < kHarmonics; ++k) {
    const double size = std::abs(sums[k]), order = static_cast<double>(k + 1);
    if (hops == kHops) heard_[k] = size > kLeastStep * energies[k];
    if (!heard_[k]) continue;
    inStep += size;
    all += energies[k];
    turned += order * size * std::arg(sums[k]);
    weights += order * order * size;
  }
  if (hops == kHops) power_ = inStep / static_cast<double>(pairs) / 2;
  if (inStep <= kStillInStep * all) return false;
  const double faster = turned / weights / (2 * std::numbers::pi * blocks_.Seconds(hops));  // Hz
  frequency_ += faster;
  // What a block tells is the amplitude in its middle.
  const double middle = static_cast<double>(blocks_.length) / 2 / blocks_.rate;
  for (std::size_t i = 0; i < amplitudes_.size(); ++i) {
    const Amplitudes back = Turned(-faster * (blocks_.Seconds(blocks_.quiet[i]) + middle));
    for (std::size_t k = 0; k < kHarmonics; ++k) amplitudes_[i][k] *= back[k];
  }
  return true;
}

/// The harmonics at any block, from the quiet ones about.
Amplitudes Hum::Near(std::size_t block) const {
  const std::vector<std::size_t>& quiet = blocks_.quiet;
  const auto at =
      static_cast<std::size_t>(std::lower_bound(quiet.begin(), quiet.end(), block) - quiet.begin());
  Amplitudes mean{};
  double total = 0;
  for (std::size_t i = at - std::min(at, kNeighbours); i < std::min(quiet.size(), at + kNeighbours); ++i) {
    const double seconds = blocks_.Seconds(std::max(quiet[i], block) - std::min(quiet[i], block));
    const double nearness = 1 / (kNear * kNear + seconds * seconds), weight = nearness * nearness;
    total += weight;
    for (std::size_t k = 0; k < kHarmonics; ++k)
      if (heard_[k]) mean[k] += weight * amplitudes_[i][k];
  }
  for (Complex& amplitude : mean) amplitude /= total;
  return mean;
}

/// From the centre of a block to that of the next one; before the first and behind the last as there.
void Hum::Subtract() const {
  const Phasors step(Turned(frequency_ / blocks_.rate));
  Amplitudes now = Near(0);
  std::size_t from = 0;
  for (std::size_t block = 0; block <= blocks_.count; ++block) {
    const bool last = block == blocks_.count;
    const std::size_t end = last ? blocks_.samples.size() : block * blocks_.hop + blocks_.length / 2;
    const Amplitudes next = last ? now : Near(block);
    Amplitudes slope;
    for (std::size_t k = 0; k < kHarmonics; ++k)
      slope[k] = (next[k] - now[k]) / static_cast<double>(end - from);
    const Phasors turned(Turned(frequency_ * static_cast<double>(from) / blocks_.rate));
    SubtractTurning(blocks_.samples.data() + from, end - from, Phasors(now), Phasors(slope), turned, step);
    now = next;
    from = end;
  }
}

}  // namespace

bool RemoveMainsHum(std::span<float> samples, double rate) {
  Blocks blocks(samples, rate);
  if (!blocks.FindQuiet() || !blocks.Repeat()) return false;
  const Hum slower(blocks, 50), faster(blocks, 60);
  const Hum& hum = slower.power() > faster.power() ? slower : faster;
  if (!hum.IsSteady()) return false;
  hum.Subtract();
  return true;
}

}  // namespace parlowen
