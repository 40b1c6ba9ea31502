// Segment filter, rate conversion and saving the selection.

#include "document/ConversionCommands.h"

#include <cmath>
#include <complex>

#include "document/Desk.h"
#include "document/RateConversion.h"
#include "document/SegmentFilter.h"
#include "dsp/Fir.h"

namespace parlowen {
namespace {

using testing::Desk;
using testing::Ramp;
using testing::Texts;

constexpr double kTwoPi = 6.283185307179586;
constexpr const char* kCaption = "none|Parlowen(Tessiran) -- ";

std::vector<std::int16_t> Tone(int count, double hertz, double rate, double peak = 10000) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < count; ++i) samples.push_back(static_cast<std::int16_t>(std::lround(peak * std::sin(kTwoPi * hertz * i / rate))));
  return samples;
}

/// Amplitude of one frequency in a stretch of whole periods: one bin of a slow transform.
double AmplitudeAt(const std::vector<std::int16_t>& samples, int first, int count, double hertz, double rate) {
  std::complex<double> sum;
  for (int i = first; i < first + count; ++i)
    sum += static_cast<double>(samples[static_cast<std::size_t>(i)]) * std::polar(1.0, -kTwoPi * hertz * i / rate);
  return 2 * std::abs(sum) / count;
}

std::string Said(const Desk& desk, const std::string& text) { return kCaption + (desk.folder / "sound1.wav") + "|" + text; }

TEST(SegmentFilter, RefusesSegmentsBeyondItsLimits) {
  Desk desk;
  const auto filter = [&] {
    FilterSegmentCommand(desk.window, desk.document);
    return desk.window.Log();
  };
  desk.Load(Ramp(400000), 16000);
  const struct {
    int length;
    const char* refusal;
  } lengths[] = {{159, "请先在幅度能量图中用鼠标左、右键选定要滤波的语音段！"},
                 {160, "语音段太短或太长，请重新选定！"},
                 {7999, "语音段太短或太长，请重新选定！"},
                 {8000, nullptr},
                 {128159, nullptr},
                 {128160, "语音段太短或太长，请重新选定！"}};
  for (const auto& c : lengths) {
    desk.Mark(1000, 1000 + c.length);
    const Texts shown = filter();   // without an answer the dialog is cancelled
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0], c.refusal != nullptr ? Said(desk, c.refusal) : "input|对选定段进行滤波|输入滤波器的截止频率（Hz, 范围：200-500）300");
  }
  desk.Mark(1000, 9000);
  for (const char* cutoff : {"199", "501", "", "-300"}) {
    desk.window.answers = {std::string("ok:") + cutoff};
    EXPECT_EQ(filter().back(), Said(desk, "输入频率范围超界！")) << cutoff;
  }
  EXPECT_EQ(desk.Samples(), Ramp(400000)) << "a refusal changes nothing";
}

TEST(SegmentFilter, ALowPassKeepsALowToneAndTakesAHighOne) {
  const struct {
    FilterPass pass;
    double hertz, atLeast, atMost;
  } cases[] = {{FilterPass::Low, 100, 0.5, 3.0}, {FilterPass::Low, 2000, 0.0, 0.1}, {FilterPass::High, 2000, 0.9, 1.1},
               // The recursive routine takes about 10 dB, no more.
               {FilterPass::High, 100, 0.1, 0.5}};
  for (const auto& c : cases) {
    Desk desk;
    desk.Load(Tone(16000, c.hertz, 16000, 5000));
    FilterStretch(desk.document, 0, 16000, 300, c.pass);
    const double gain = AmplitudeAt(desk.Samples(), 4000, 8000, c.hertz, 16000) / 5000;
    EXPECT_GE(gain, c.atLeast) << c.hertz;
    EXPECT_LE(gain, c.atMost) << c.hertz;
  }
}

TEST(RateConversion, FollowsTheStatedOrderOfOperationsToTheBit) {
  // Loud noise with silent stretches and steps: sums near whole numbers, zeros, saturation.
  std::uint32_t seed = 1;
  std::vector<std::int16_t> sound;
  for (int i = 0; i < 30000; ++i) {
    seed = seed * 1664525u + 1013904223u;
    const int noise = static_cast<int>(seed >> 16) - 32768;
    sound.push_back(static_cast<std::int16_t>(i / 3000 % 3 == 0 ? noise : i / 3000 % 3 == 1 ? 0 : (i / 700 % 2 ? 32767 : -32768)));
  }
  const int count = static_cast<int>(sound.size());
  for (const auto& [rate, target, cutoff] : {std::array{44100, 16000, 7200}, {22050, 16000, 7200}, {16001, 16000, 7200}, {48000, 11025, 4961}}) {
    auto converted = sound, filtered = sound;
    converted.resize(sound.size() + 16);
    filtered.resize(sound.size() + 16);
    double coefficients[15];
    DesignFirFilter(cutoff, 0.92, 7, 0, coefficients, rate);
    ApplyFirFilter(15, count - 8, 8, coefficients, filtered.data(), count + 16);
    const double r = static_cast<double>(target) / rate;
    const auto outputs = static_cast<int>(count * r);
    std::vector<std::int16_t> expected = {filtered[0]};
    for (int k = 1; k < outputs; ++k) {
      const double t = k / r;
      const double i = std::floor(t), d = t - (i + 1);
      const std::int16_t* y = &filtered[static_cast<std::size_t>(i)];
      const double value = ((((y[0] + y[2]) * 0.5 - y[1]) * d + (y[2] - y[0]) * 0.5) * d) + y[1];
      expected.push_back(static_cast<std::int16_t>(std::clamp(std::trunc(value), -32768.0, 32767.0)));
    }
    ASSERT_EQ(ConvertSamples(converted.data(), count, rate, target), outputs - 1);
    converted.resize(expected.size());
    EXPECT_EQ(converted, expected) << rate << " to " << target;
  }
}

TEST(RateConversion, StandsTinySounds) {
  for (int count = 0; count < 20; ++count) {
    std::vector<std::int16_t> few(static_cast<std::size_t>(count + 16));
    std::fill_n(few.begin(), count, std::int16_t{100});
    EXPECT_EQ(ConvertSamples(few.data(), count, 32000, 16000), std::max(0, count / 2 - 1));
  }
}

TEST(SaveSelection, WritesAMonoFileAndTheSeriesGoesOnFromIt) {
  Desk desk;
  desk.Load(Ramp(1000), 11025);
  desk.Mark(100, 103);
  desk.document.twoChannel = true;
  desk.window.answers = {"file:" + (desk.folder / "part7")};
  SaveSelectionCommand(desk.window, desk.document);
  EXPECT_EQ(desk.window.Log(), Texts{"save|文件换名存为...|" + (desk.folder / "sound2.wav")});
  testing::WavBytes expected;
  expected.rate = 11025;
  expected.samples = {101, 102, 103};
  EXPECT_EQ(testing::ReadFile(desk.folder / "part7.wav"), expected.Bytes());
  EXPECT_EQ(desk.document.nextDigitPath, desk.folder / "part8.wav");
  EXPECT_EQ(desk.document.filePath, desk.folder / "sound1.wav");
}

}  // namespace
}  // namespace parlowen
