#include "channels/ChannelFiles.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Gbk.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Little;

const float kBlank = std::numeric_limits<float>::quiet_NaN();

std::string Text(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }
std::string FloatBytes(float value) { return Little(std::bit_cast<std::uint32_t>(value), 4); }
std::optional<NasalanceCurve> Parse(const std::string& file) { return ParseNas(testing::AsBytes(file)); }

/// A file of two values, field by field.
std::string NasFile(const std::string& tag = "HEAD", std::uint32_t length = 20, std::uint32_t start = 320,
                    std::uint32_t step = 160, float ratio = 1.5f, float first = 42.5f) {
  return tag + Little(length, 4) + Little(start, 4) + Little(step, 4) + FloatBytes(ratio) +
         FloatBytes(first) + FloatBytes(-1.0f);
}

TEST(NasFile, IsWrittenAndReadFieldByField) {
  EXPECT_EQ(Text(NasBytesOf({320, 160, 1.5f, {42.5f, kBlank}})), NasFile());
  const auto read = Parse(NasFile());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->start, 320);
  EXPECT_EQ(read->step, 160);
  EXPECT_EQ(read->gainRatio, 1.5f);
  EXPECT_EQ(read->values.at(0), 42.5f);
  EXPECT_TRUE(std::isnan(read->values.at(1)));
  EXPECT_TRUE(Parse(Text(NasBytesOf({0, 160, 1.0f, {}})))) << "no values";
}

TEST(NasFile, BrokenFilesAreRefused) {
  EXPECT_FALSE(Parse(""));
  EXPECT_FALSE(Parse(NasFile("HEAP")));
  EXPECT_FALSE(Parse(NasFile("HEAD", 24)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 16)));
  EXPECT_FALSE(Parse(NasFile() + "x"));
  EXPECT_FALSE(Parse("HEAD" + Little(21, 4) + NasFile().substr(8) + "x")) << "not whole values";
  EXPECT_FALSE(Parse("HEAD" + Little(8, 4) + Little(0, 8)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 0x80000000)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 1572865)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 0, 0)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 0, 3841)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 0, 160, 0)));
  EXPECT_FALSE(Parse(NasFile("HEAD", 20, 0, 160, INFINITY)));
  for (const float value : {100.5f, -0.5f, -INFINITY, kBlank})
    EXPECT_TRUE(std::isnan(Parse(NasFile("HEAD", 20, 0, 160, 1, value))->values.at(0))) << value;
}

TEST(NasRatioText, ListsTheFrames) {
  EXPECT_EQ(FromGbk(NasRatioText({800, 160, 1.25f, {40.0f, kBlank, 20.0f}}, "/声音/a.nsp", 16000)),
            "\r\n          鼻音能量比数据\r\n\r\n /声音/a.nsp\r\n"
            " 采样率=16000 Hz  增益比=1.2500  帧数=3  有效帧数=2\r\n"
            " 平均值=30.00%  标准差=10.00%  最小值=20.00%  最大值=40.00%\r\n"
            "\r\n 帧序号      时间(s)    鼻音能量比(%)\r\n"
            "      1        0.060       40.00\r\n"
            "      2        0.070          --\r\n"
            "      3        0.080       20.00\r\n");
}

TEST(StereoWav, SaysTwoChannelsInItsHeader) {
  SoundDocument document;
  document.sampleCount = 2;
  document.sampleRate = 22050;
  document.twoChannel = true;
  testing::WavBytes wav;
  wav.rate = 22050;
  wav.channels = 2;
  wav.blockAlign = 4;
  wav.samples = {1, -3, 2, -4};
  document.samples[0] = 1, document.samples[1] = 2;
  document.samples2[0] = -3, document.samples2[1] = -4;
  EXPECT_EQ(Text(StereoWavBytesOf(document)), wav.Bytes());
}

}  // namespace
}  // namespace parlowen
