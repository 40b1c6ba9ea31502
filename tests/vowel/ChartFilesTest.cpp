#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "base/Gbk.h"
#include "vowel/FormantFile.h"
#include "vowel/VowelChartFile.h"

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

VowelChart ChartOf(int count, bool bark) {
  VowelChart chart;
  chart.barkMode = bark;
  chart.referenceF0 = 120;
  for (int i = 0; i < count; ++i) {
    chart.shape = static_cast<PointShape>(i % 5);
    chart.Add(283 + i, 2350, 3000);
  }
  return chart;
}

TEST(ChartFile, PointsAreTheseBytes) {
  // 283.0f = 438D8000, 2350.0f = 4512E000, 3000.0f = 453B8000; place 76, 240, 480.
  EXPECT_EQ(ChartBytes(ChartOf(1, false)).bytes(),
            (Bytes{1, 0,    76,   0,    240, 0,    0xE0, 1,    0, 0,    0,    0,
                   0, 0x80, 0x8D, 0x43, 0,   0xE0, 0x12, 0x45, 0, 0x80, 0x3B, 0x45}));
  EXPECT_EQ(ChartBytes(ChartOf(1, true)).bytes(),
            (Bytes{0xFF, 0xFF, 120, 0, 1,    0,    54,   0, 0x32, 1,    0,
                   0,    0,    0,   0, 0x80, 0x8D, 0x43, 0, 0xE0, 0x12, 0x45}));
}

TEST(ChartFile, SizesAndTheWayBack) {
  for (const bool bark : {false, true})
    for (const int count : {0, 1, 199, 200}) {
      SCOPED_TRACE(count);
      const VowelChart chart = ChartOf(count, bark);
      const Bytes bytes = ChartBytes(chart).bytes();
      EXPECT_EQ(bytes.size(), static_cast<std::size_t>(bark ? 6 + 16 * count : 2 + 22 * count));
      VowelChart present;
      present.barkMode = !bark;
      present.referenceF0 = 99;
      const auto read = ReadChart(bytes, present);
      ASSERT_TRUE(read);
      EXPECT_EQ(read->barkMode, bark);
      EXPECT_EQ(read->referenceF0, bark ? 120 : 99) << "a frequency chart has none of its own";
      EXPECT_EQ(ChartBytes(*read).bytes(), bytes);
    }
}

TEST(ChartFile, PointsWithoutTheZeroWordAreReadToo) {
  for (const bool bark : {false, true}) {
    const VowelChart chart = ChartOf(3, bark);
    const Bytes bytes = ChartBytes(chart).bytes();
    const std::size_t header = bark ? 6 : 2, point = bark ? 16 : 22, zero = bark ? 6 : 8;
    Bytes shorter(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(header));
    for (std::size_t p = 0; p < 3; ++p)
      for (std::size_t i = 0; i < point; ++i)
        if (i != zero && i != zero + 1) shorter.push_back(bytes[header + p * point + i]);
    const auto read = ReadChart(shorter, {});
    ASSERT_TRUE(read);
    EXPECT_EQ(ChartBytes(*read).bytes(), bytes);
  }
}

TEST(ChartFile, DamagedFilesAreSeen) {
  const Bytes good = ChartBytes(ChartOf(3, false)).bytes();
  const auto counted = [](Bytes bytes, std::uint8_t low, std::uint8_t high = 0) {
    bytes[0] = low;
    bytes[1] = high;
    return bytes;
  };
  const std::pair<const char*, Bytes> cases[] = {
      {"empty", {}},
      {"one byte", {0}},
      {"a point too few", counted(good, 4)},
      {"201 points", counted(Bytes(2 + 201 * 22), 201)},
      {"−2 points", counted(good, 0xFE, 0xFF)},
      {"cut in a point", Bytes(good.begin(), good.end() - 1)},
      {"a Bark chart without a count", {0xFF, 0xFF, 1, 0}},
      {"a Bark chart with −1 points", {0xFF, 0xFF, 1, 0, 0xFF, 0xFF}},
      {"a Bark chart cut short", {0xFF, 0xFF, 1, 0, 1, 0, 1, 2, 3}},
  };
  for (const auto& [why, bytes] : cases) EXPECT_FALSE(ReadChart(bytes, {})) << why;
}

TEST(ChartFile, TheListingsAreTheseBytes) {
  VowelChart chart = ChartOf(2, false);
  chart.points[1].f1 = 1234.56f;
  chart.points[1].f3 = 0;
  EXPECT_EQ(ChartListing(chart), ToGbk("\r\n 点序号      F1(Hz)      F2(Hz)      F3(Hz)\r\n"
                                       "   1        283.0       2350.0       3000.0\r\n"
                                       "   2       1234.6       2350.0          0.0\r\n"));
  // B(120) = 1.285, B(283) = 2.958, B(2350) = 13.982
  EXPECT_EQ(
      ChartListing(ChartOf(1, true)),
      ToGbk(
          "\r\n 使用 Bark 相对坐标：Bark(f)=7*log((f/650.)+sqrt(f*f/422500.+1))\r\n\t\t  参考音高F0=120, B0=1.29\r\n "
          "\r\n 点序号      F1(Hz)       B1      F2(Hz)        B2\r\n"
          "   1        283.0       2.96     2350.0      13.98\r\n"));
}

VowelTrack TrackOf(int start, int frames) {
  VowelTrack track;
  track.start = start;
  for (int k = 0; k < frames; ++k) {
    FormantFrame frame;
    frame.count = k == 0 ? 4 : 1;
    frame.frequency = {300.9, 1000, 2000, 3000};
    frame.bandwidth = {50, 60, 70.99, 80};
    track.frames.push_back(frame);
  }
  return track;
}

std::optional<std::vector<FormantBlock>> WholeFormantFile(ByteSpan bytes) {
  std::vector<FormantBlock> blocks;
  if (ReadFormantBlocks(bytes, blocks) == FormantFileEnd::Broken) return {};
  return blocks;
}

TEST(FormantFile, ABlockIsTheseBytes) {
  ByteWriter file;
  WriteFormantBlock(file, TrackOf(2400, 2));
  ASSERT_EQ(file.bytes().size(), 12u + 96);
  EXPECT_EQ(Bytes(file.bytes().begin(), file.bytes().begin() + 12),
            (Bytes{'H', 'E', 'A', 'D', 104, 0, 0, 0, 0x60, 9, 0, 0}));
  double values[12];
  std::memcpy(values, file.bytes().data() + 12, sizeof values);
  const double expected[12] = {300.9, 50, 1000, 60, 2000, 70.99, 300.9, 50, 0, 0, 0, 0};
  EXPECT_TRUE(std::equal(values, values + 12, expected));
}

TEST(FormantFile, EveryBlockIsListed) {
  ByteWriter file;
  WriteFormantBlock(file, TrackOf(2459, 2));  // 0.1536 s
  WriteFormantBlock(file, TrackOf(0, 0));
  const auto blocks = WholeFormantFile(file);
  ASSERT_TRUE(blocks && blocks->size() == 2);
  const std::string header = "T(秒)     F1(Hz)  B1(Hz)  F2(Hz)  B2(Hz)  F3(Hz)  B3(Hz)  \r\n";
  EXPECT_EQ(FormantListing(blocks->front(), 1, 16000),
            ToGbk("\r\n          第1段：T=0.15秒--0.17秒\r\n\r\n" + header +
                  "0.15        300      50    1000      60    2000      70\r\n"
                  "0.16        300      50       0       0       0       0\r\n"));
  EXPECT_EQ(FormantListing(blocks->back(), 2, 16000),
            ToGbk("\r\n          第2段：T=0.00秒--0.00秒\r\n\r\n" + header));
}

TEST(FormantFile, DamagedFilesAreSeen) {
  ByteWriter file;
  WriteFormantBlock(file, TrackOf(0, 2));
  WriteFormantBlock(file, TrackOf(5, 1));
  const Bytes good = file.bytes();
  const auto with = [&](std::size_t at, std::uint8_t value) {
    Bytes b = good;
    b[at] = value;
    return b;
  };
  EXPECT_TRUE(WholeFormantFile(good));
  EXPECT_TRUE(WholeFormantFile({})) << "no block at all";
  EXPECT_FALSE(WholeFormantFile(with(0, 'h')));
  std::vector<FormantBlock> sound;
  EXPECT_EQ(ReadFormantBlocks(with(108, 'h'), sound), FormantFileEnd::Broken);
  EXPECT_EQ(sound.size(), 1u) << "the block before the damaged one";
  EXPECT_FALSE(WholeFormantFile(with(4, 56))) << "the first block ends in its second frame";
  EXPECT_FALSE(WholeFormantFile(with(112, 104))) << "longer than the file";
  EXPECT_FALSE(WholeFormantFile(with(7, 0x7F)));
  EXPECT_FALSE(WholeFormantFile(with(7, 0xFF))) << "a negative size";
  EXPECT_FALSE(WholeFormantFile(Bytes(good.begin(), good.end() - 1)));
  EXPECT_TRUE(WholeFormantFile(Bytes(good.begin(), good.begin() + 111))) << "less than a tag is the end";
}

TEST(VowelFiles, AnyByteMayLie) {
  ByteWriter formants;
  WriteFormantBlock(formants, TrackOf(0, 2));
  for (const Bytes& good :
       {ChartBytes(ChartOf(3, false)).bytes(), ChartBytes(ChartOf(3, true)).bytes(), formants.bytes()})
    for (std::size_t at = 0; at < good.size(); ++at)
      for (const int value : {0, 1, 0x7F, 0x80, 0xFF}) {
        Bytes bytes = good;
        bytes[at] = static_cast<std::uint8_t>(value);
        if (auto chart = ReadChart(bytes, {})) {
          ChartListing(*chart);
          chart->PlaceAgain();
          ASSERT_LE(ChartBytes(*chart).bytes().size(), 6u + 200 * 22);
        }
        std::vector<FormantBlock> blocks;
        ReadFormantBlocks(bytes, blocks);
        for (const FormantBlock& block : blocks) FormantListing(block, 1, 11025);
      }
}

TEST(FormantFile, NonsenseIsListedWithoutHarm) {
  FormantBlock block;
  block.start = INT32_MIN;
  block.frames = {{std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -0.5, 5}};
  const std::string text = FormantListing(block, 1, 0);
  EXPECT_NE(text.find("       02147483647-21474836482147483647       0       5\r\n"), std::string::npos)
      << text;
}

}  // namespace
}  // namespace parlowen
