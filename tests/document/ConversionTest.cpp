// Segment filter and rate conversion.

#include "document/ConversionCommands.h"

#include <cmath>

#include "document/Desk.h"
#include "document/RateConversion.h"
#include "document/SegmentFilter.h"
#include "dsp/Fir.h"
#include "support/Samples.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr const char* kCaption = "none|Parlowen(Tessiran) -- ";

std::string Said(const Desk& desk, const std::string& text) {
  return kCaption + (desk.folder / "sound1.wav") + "|" + text;
}

TEST(SegmentFilter, RefusesInTheOrderRateSegmentLengthCutoff) {
  Desk desk;
  const auto filter = [&] {
    FilterSegmentCommand(desk.window, desk.document);
    return desk.window.Log();
  };
  desk.Load(Ramp(400000), 16001);
  EXPECT_EQ(filter(), Texts{Said(desk, "采样频率不宜超过16000Hz！")});
  desk.Load(Ramp(400000), 16000);
  EXPECT_EQ(filter(), Texts{Said(desk, "请先在幅度能量图中用鼠标左、右键选定要滤波的语音段！")});
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
    const Texts shown = filter();  // without an answer the dialog is cancelled
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0], c.refusal != nullptr
                            ? Said(desk, c.refusal)
                            : "input|对选定段进行滤波|输入滤波器的截止频率（Hz, 范围：200-500）300");
  }
  desk.Mark(1000, 9000);
  for (const char* cutoff : {"199", "501", "", "-300"}) {
    desk.window.answers = {std::string("ok:") + cutoff};
    EXPECT_EQ(filter().back(), Said(desk, "输入频率范围超界！")) << cutoff;
  }
  EXPECT_EQ(desk.Samples(), Ramp(400000)) << "a refusal changes nothing";
  for (const char* cutoff : {"200", "500"}) {
    desk.window.answers = {std::string("ok:") + cutoff, "yes"};
    EXPECT_EQ(filter().back(), Said(desk, "波形数据从  0.06 秒到  0.56 秒已经被滤波！"));
  }
}

TEST(SegmentFilter, ChangesTheSegmentAloneAndReadsItsMargins) {
  const auto sound = Sines(20000, 16000, {{150, 10000}});
  for (const FilterPass pass : {FilterPass::Low, FilterPass::High}) {
    Desk desk;
    desk.Load(sound);
    FilterStretch(desk.document, 6000, 14000, 300, pass);
    // The same with the shared routine over a longer copy: what lies 40 samples before the segment is already filtered.
    double coefficients[81];
    DesignFirFilter(300, 0.92, 40, pass == FilterPass::High, coefficients, 16000);
    auto expected = sound, copy = sound;
    ApplyFirFilter(81, 8040, 5960, coefficients, copy.data(), 20000);
    std::copy(copy.begin() + 6000, copy.begin() + 14000, expected.begin() + 6000);
    EXPECT_NE(expected, sound);
    EXPECT_EQ(desk.Samples(), expected);
  }
}

TEST(RateConversion, FollowsTheStatedOrderOfOperationsToTheBit) {
  // Loud noise with silent stretches and steps: sums near whole numbers, zeros, saturation.
  std::uint32_t seed = 1;
  std::vector<std::int16_t> sound;
  for (int i = 0; i < 30000; ++i) {
    seed = seed * 1664525u + 1013904223u;
    const int noise = static_cast<int>(seed >> 16) - 32768;
    sound.push_back(static_cast<std::int16_t>(i / 3000 % 3 == 0   ? noise
                                              : i / 3000 % 3 == 1 ? 0
                                                                  : (i / 700 % 2 ? 32767 : -32768)));
  }
  const int count = static_cast<int>(sound.size());
  for (const auto& [rate, target, cutoff] :
       {std::array{44100, 16000, 7200}, {22050, 16000, 7200}, {16001, 16000, 7200}, {48000, 11025, 4961}}) {
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

TEST(RateConversion, TakesBothChannelsAndStandsTinySounds) {
  Desk desk;
  desk.Load(Sines(44100, 44100, {{1000, 10000}}), 44100);
  desk.document.twoChannel = true;
  std::copy_n(desk.document.samples.data(), 44100, desk.document.samples2.data());
  desk.document.SamplesChanged();
  ConvertDocument(desk.document, 16000);
  EXPECT_EQ(desk.Samples(), desk.Samples2());
  EXPECT_TRUE(desk.SilentBehindTheEnd());
  for (int count = 0; count < 20; ++count) {
    std::vector<std::int16_t> few(static_cast<std::size_t>(count + 16));
    std::fill_n(few.begin(), count, std::int16_t{100});
    EXPECT_EQ(ConvertSamples(few.data(), count, 32000, 16000), std::max(0, count / 2 - 1));
  }
}

}  // namespace
}  // namespace parlowen
