#include "spectral/LpcAnalysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <limits>
#include <numeric>

#include "document/LevelMeasures.h"
#include "dsp/Decibel.h"
#include "dsp/SignalTables.h"
#include "spectral/Formants.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

using testing::kNineVowels;
using Column = std::vector<long double>;

class Lpc : public ::testing::Test {
 protected:
  Lpc() { InitSignalTables(); }
  LpcAnalyser analyser;
  double levels[kEnvelopePoints];
};
using Formants = Lpc;

struct LeastSquares {
  Column coefficients;
  long double residual;
};

/// min Σ (y[n] − Σ a(i)·y[n−i])² over n = order .. N − 2 by Householder reflections of the data, no
/// covariances at all.
LeastSquares SolveByReflections(const Column& y, int order, int frameLength) {
  const int rows = frameLength - 1 - order;
  std::vector<Column> a(static_cast<std::size_t>(order) + 1, Column(static_cast<std::size_t>(rows)));
  for (int i = 0; i <= order; ++i)  // the last column is the right side
    for (int r = 0; r < rows; ++r)
      a[static_cast<std::size_t>(i)][static_cast<std::size_t>(r)] =
          y[static_cast<std::size_t>(order + r - (i == order ? 0 : i + 1))];
  for (std::size_t k = 0; k < static_cast<std::size_t>(order); ++k) {
    Column v(a[k].begin() + static_cast<std::ptrdiff_t>(k), a[k].end());
    const long double norm = std::sqrt(std::inner_product(v.begin(), v.end(), v.begin(), 0.0L));
    v[0] += v[0] < 0 ? -norm : norm;
    const long double square = std::inner_product(v.begin(), v.end(), v.begin(), 0.0L);
    for (std::size_t c = k; c < a.size(); ++c) {
      const long double share =
          2 * std::inner_product(v.begin(), v.end(), a[c].begin() + static_cast<std::ptrdiff_t>(k), 0.0L) /
          square;
      for (std::size_t r = 0; r < v.size(); ++r) a[c][k + r] -= share * v[r];
    }
  }
  LeastSquares result{Column(static_cast<std::size_t>(order)), 0};
  for (std::size_t i = static_cast<std::size_t>(order); i-- > 0;) {
    long double sum = a.back()[i];
    for (std::size_t c = i + 1; c < static_cast<std::size_t>(order); ++c)
      sum -= a[c][i] * result.coefficients[c];
    result.coefficients[i] = sum / a[i][i];
  }
  for (std::size_t r = static_cast<std::size_t>(order); r < a.back().size(); ++r)
    result.residual += a.back()[r] * a.back()[r];
  return result;
}

TEST_F(Lpc, EnvelopesAreTheLeastSquaresPredictionOfTheFrame) {
  const struct {
    int rate, start, length, requested, order;
    bool high;
  } cases[] = {{16000, 3000, 400, 16, 16, true},  {16000, 3001, 45, 12, 16, false},
               {8000, 1000, 200, 16, 12, true},   {11025, 900, 275, 14, 14, true},
               {22050, 5000, 512, 16, 16, false}, {8000, 700, 160, 5, 5, false},
               {16000, 0, 400, 16, 16, true},     {11025, 4400, 282, 1, 1, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.rate) + " order " + std::to_string(c.order));
    const auto sound = testing::MakeVowel(kNineVowels[c.order % 9], c.rate, 117, c.rate / 2);
    Column y;
    const auto at = [&](int n) { return static_cast<long double>(sound[static_cast<std::size_t>(n)]); };
    for (int n = c.start; n < c.start + c.length - 1; ++n)
      y.push_back(at(n + 1) - (c.high ? 0.95 : 0.9) * at(n));
    const LeastSquares truth = SolveByReflections(y, c.order, c.length);

    LpcEnvelope({sound.data(), static_cast<int>(sound.size())}, c.start, c.length, c.high, c.requested,
                {c.rate, 9000}, analyser, levels);
    ASSERT_EQ(analyser.order, c.order);
    for (int i = 1; i <= c.order; ++i)
      EXPECT_NEAR(analyser.coefficients[static_cast<std::size_t>(i)],
                  static_cast<double>(truth.coefficients[static_cast<std::size_t>(i) - 1]), 1e-5)
          << i;
    const double reference = c.high ? 8 * 9000 / c.rate + 46 : 28;
    for (int k = 0; k < kEnvelopePoints; ++k) {
      std::complex<long double> inverse = 1;
      for (int i = 1; i <= c.order; ++i)
        inverse -= truth.coefficients[static_cast<std::size_t>(i) - 1] *
                   std::polar(1.0L, -2 * std::numbers::pi_v<long double> * k * i / 512);
      const double level =
          static_cast<double>(10 * std::log10((truth.residual + 1) / std::norm(inverse))) - reference;
      // The table of logarithms lies up to 0.011 dB below.
      EXPECT_NEAR(levels[k], std::max(0.0, level), 0.02) << k;
    }
  }
}

TEST_F(Lpc, OrdersAtTheirBounds) {
  const struct {
    int requested, rate, order;
  } cases[] = {{16, 8000, 12}, {13, 8999, 12},  {12, 8000, 12},  {11, 8999, 11},
               {16, 9000, 16}, {13, 9000, 13},  {14, 15999, 14}, {12, 16000, 16},
               {1, 44100, 16}, {20, 12000, 16}, {-3, 12000, 0}};
  for (const auto& c : cases)
    EXPECT_EQ(EffectiveLpcOrder(c.requested, c.rate), c.order) << c.requested << " at " << c.rate;
}

TEST_F(Lpc, FramesWithoutTermsAndSilenceAreFlat) {
  const auto noise = testing::Noise(600, 9000);
  for (const int length : {-5, 0, 1, 2, 16, 17}) {  // N − p − 1 ≤ 0 up to 17
    std::fill_n(levels, kEnvelopePoints, -1.0);
    LpcEnvelope({noise.data(), 600}, 100, length, false, 16, {16000, 9000}, analyser, levels);
    EXPECT_EQ(std::count(levels, levels + 256, 0.0), 256) << length;
  }
  LpcEnvelope({noise.data(), 600}, 100, 18, false, 16, {16000, 9000}, analyser, levels);
  EXPECT_NE(analyser.coefficients[1], 0.0) << "one term";
  const std::vector<std::int16_t> silence(600);
  LpcEnvelope({silence.data(), 600}, 0, 400, true, 16, {16000, 1}, analyser, levels);
  EXPECT_EQ(std::count(levels, levels + 256, 0.0), 256);
  EXPECT_EQ(*std::max_element(analyser.coefficients.begin(), analyser.coefficients.end()), 0.0);
}

TEST_F(Lpc, OutsideTheSoundThereIsSilence) {
  auto inside = testing::Noise(400, 9000);
  std::vector<std::int16_t> padded(300);
  padded.insert(padded.end(), inside.begin(), inside.end());
  padded.resize(1000);
  double expected[kEnvelopePoints];
  for (const int start : {-300, -100, -1, 0, 1, 100, 399, 500}) {
    LpcEnvelope({padded.data(), 1000}, start + 300, 300, true, 16, {16000, 9000}, analyser, expected);
    LpcEnvelope({inside.data(), 400}, start, 300, true, 16, {16000, 9000}, analyser, levels);
    EXPECT_TRUE(std::equal(levels, levels + 256, expected)) << start;
  }
  // Extremes: a square at the full scale, and a constant whose covariance has no rank.
  for (auto& sample : padded)
    sample = static_cast<std::int16_t>((&sample - padded.data()) % 32 < 16 ? 32767 : -32768);
  for (const int start : {0, 500, 100000, -100000}) {
    LpcEnvelope({padded.data(), 1000}, start, 600, false, 16, {16000, 32767}, analyser, levels);
    EXPECT_TRUE(std::all_of(levels, levels + 256, [](double level) { return level >= 0 && level <= 112; }));
  }
}

TEST(Covariance, ZeroPivotsAreNotDividedBy) {
  CovarianceMatrix phi{};
  double right[17] = {0, 3, 0, 5}, a[17];
  // Elements 1 and 3 stand alone; 2 is empty.
  phi[1][1] = 2;
  phi[3][3] = 4;
  EXPECT_DOUBLE_EQ(SolveCovariance(phi, right, 3, 20, a), 20 - 9 / 2.0 - 25 / 4.0);
  EXPECT_DOUBLE_EQ(a[1], 1.5);
  EXPECT_EQ(a[2], 0.0);
  EXPECT_DOUBLE_EQ(a[3], 1.25);
  EXPECT_EQ(SolveCovariance(phi, right, 3, 1, a), 0.0) << "no negative energy";
  right[2] = 1e-10;  // over the smallest pivot, 1e-20
  SolveCovariance(phi, right, 3, 20, a);
  EXPECT_DOUBLE_EQ(a[2], 1e10);
}

/// Levels of round peaks: S = height − c/2·(k − centre)² about each centre, which bends by c at every point,
/// on a floor that slopes so that it bends nowhere.
struct Peak {
  int centre;
  double curvature;
};
std::vector<double> Peaks(const std::vector<Peak>& peaks) {
  std::vector<double> levels(256);
  for (int k = 0; k < 256; ++k) {
    levels[static_cast<std::size_t>(k)] = 0;
    for (const Peak& peak : peaks)  // the slopes of a bend over three points go on to both sides
      levels[static_cast<std::size_t>(k)] += 60 - peak.curvature * std::abs(k - peak.centre) / 2;
  }
  return levels;
}
/// The bandwidth that a curvature gives, turned round.
double CurvatureOf(double bandwidth, double spacing) { return 6 * std::pow(2 * spacing / bandwidth, 2); }

TEST_F(Formants, AreTheBendsOfTheEnvelope) {
  const double spacing = 16000 / 512.0;
  const auto pick = [&](const std::vector<Peak>& peaks, int rate) {
    return PickFormants(Peaks(peaks).data(), 256, rate);
  };
  auto found = pick({{16, CurvatureOf(100, spacing)}, {48, CurvatureOf(200, spacing)}}, 16000);
  ASSERT_EQ(found.count, 2);
  EXPECT_DOUBLE_EQ(found.frequency[0], 500);
  EXPECT_NEAR(found.bandwidth[0], 100, 1e-6);
  EXPECT_DOUBLE_EQ(found.frequency[1], 1500);
  EXPECT_NEAR(found.bandwidth[1], 200, 1e-6);

  // At 25600 Hz a point is 50 Hz. Two peaks 150 Hz apart, 300 and 200 Hz wide, are one: 150 < 500/3.
  const auto wide = [](double bandwidth) { return CurvatureOf(bandwidth, 50); };
  found = pick({{20, wide(300)}, {23, wide(200)}}, 25600);
  ASSERT_EQ(found.count, 1);
  EXPECT_DOUBLE_EQ(found.frequency[0], 1150);
  found = pick({{20, wide(200)}, {23, wide(300)}}, 25600);
  ASSERT_EQ(found.count, 1);
  EXPECT_DOUBLE_EQ(found.frequency[0], 1000);
  EXPECT_EQ(pick({{20, wide(249)}, {23, wide(199)}}, 25600).count, 2);  // 150 ≥ 448/3

  EXPECT_EQ(pick({{1, wide(60)}}, 25600).count, 0) << "50 Hz";
  EXPECT_EQ(pick({{2, wide(60)}}, 25600).count, 1) << "100 Hz";
  EXPECT_EQ(pick({{40, wide(1279.9)}}, 25600).count, 1);
  EXPECT_EQ(pick({{40, wide(1280.1)}}, 25600).count, 0) << "a twentieth of the rate is 1280 Hz";

  std::vector<Peak> many;
  for (int i = 1; i <= 8; ++i) many.push_back({20 * i, wide(100)});
  found = pick(many, 25600);
  ASSERT_EQ(found.count, 6);
  EXPECT_DOUBLE_EQ(found.frequency[5], 6000);

  std::vector<double> curve(256, 30.0);
  EXPECT_EQ(PickFormants(curve.data(), 256, 16000).count, 0);
  // A run that reaches the last point is lost; a strict minimum opens one that has no bend.
  for (int k = 0; k < 256; ++k) curve[static_cast<std::size_t>(k)] = -0.01 * std::pow(k - 200, 2);
  EXPECT_EQ(PickFormants(curve.data(), 256, 16000).count, 0);
  for (int k = 0; k < 256; ++k) curve[static_cast<std::size_t>(k)] = std::abs(k - 100);
  EXPECT_EQ(PickFormants(curve.data(), 256, 16000).count, 0);
}

TEST_F(Formants, AMinimumInsideAPeakDoesNotSplitIt) {
  // Bends of 4, then a notch of one point, then a bend of 6: one peak, at the larger bend.
  std::vector<double> curve(256, 0.0);
  for (int k = 0; k < 256; ++k) curve[static_cast<std::size_t>(k)] = 200 - 2.0 * std::abs(k - 50);
  curve[52] = 190;
  curve[53] = 196.5;
  const auto bend = [&](std::size_t k) { return 2 * curve[k] - curve[k - 1] - curve[k + 1]; };
  ASSERT_TRUE(bend(50) > 0 && bend(51) > bend(50) && bend(52) < 0 && bend(53) > bend(51));
  const FormantFrame found = PickFormants(curve.data(), 256, 25600);
  ASSERT_EQ(found.count, 1);
  EXPECT_DOUBLE_EQ(found.frequency[0], 53 * 50.0);
}

double MedianOf(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

TEST_F(Formants, OfTheRecordedVowelsAreAllFound) {
  const auto sound = testing::RecordedVowels();
  ASSERT_EQ(sound.size(), 64800u);
  const SampleSpan span{sound.data(), 64800};
  std::vector<double> errors[3];
  for (int v = 0; v < 9; ++v) {
    // The sound sets in 30 ms after its place in the table and fades out over the last 40 ms.
    const int start = v * 7200 + 480, end = v * 7200 + 5760;
    for (int at = start; at + 400 <= end; at += 160) {
      LpcEnvelope(span, at, 400, true, 16, {16000, SegmentPeakLevel(span, start, end)}, analyser, levels);
      const FormantFrame found = PickFormants(levels, kEnvelopePoints, 16000);
      ASSERT_GE(found.count, 3) << kNineVowels[v].name << " at " << at;
      for (std::size_t f = 0; f < 3; ++f) {
        const double error = std::fabs(found.frequency[f] - kNineVowels[v].formants[f]);
        EXPECT_LT(error, 100) << kNineVowels[v].name << " F" << f + 1 << " at " << at;
        errors[f].push_back(error);
      }
    }
  }
  EXPECT_LE(MedianOf(errors[0]), 13);
  EXPECT_LE(MedianOf(errors[1]), 8);
  EXPECT_LE(MedianOf(errors[2]), 8);
}

}  // namespace
}  // namespace parlowen
