#include "palatography/PalateFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "base/Gbk.h"
#include "document/SoundDocument.h"

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

PalateRecord Record() {
  const ContactFrame some{0x7E, 0x81, 0, 0, 0, 0, 0, 0x01};
  return {160, 480, 16000, 2, 100, MeasureStatistics(std::vector{some, ContactFrame{}})};
}

Bytes BytesOf(const PalateRecord& record) {
  ByteWriter out;
  WritePalateRecord(out, record);
  return out.bytes();
}

template <typename T>
Bytes With(std::size_t offset, T value) {
  Bytes bytes = BytesOf(Record());
  std::memcpy(bytes.data() + offset, &value, sizeof value);
  return bytes;
}

TEST(PalateFile, ComesBackAsItWasWritten) {
  Bytes bytes = BytesOf(Record());
  ASSERT_EQ(bytes.size(), kPalateRecordBytes);
  PalateRecord silent = Record();
  silent.statistics = MeasureStatistics(std::vector{ContactFrame{}});
  const Bytes second = BytesOf(silent);
  bytes.insert(bytes.end(), second.begin(), second.end());
  const auto records = ReadPalateFile(bytes);
  ASSERT_TRUE(records && records->size() == 2);
  EXPECT_EQ(BytesOf((*records)[0]), BytesOf(Record()));
  EXPECT_EQ((*records)[0].statistics.percent, Record().statistics.percent);
  // A stretch without contact has 0 in the file, and no place again when it is read.
  EXPECT_EQ(BytesOf((*records)[1]), second);
  EXPECT_TRUE(std::isnan((*records)[1].statistics.mean[kGravityCentre]));
  EXPECT_EQ(MeanOf(*records).mean[kGravityCentre], Record().statistics.mean[kGravityCentre]);
}

TEST(PalateFile, IsRefusedForOneWrongField) {
  const double infinite = std::numeric_limits<double>::infinity();
  const struct {
    const char* reason;
    Bytes bytes;
    bool good;
  } cases[] = {
      {"tag", With(0, 'h'), false},
      {"length", With(4, std::int32_t{664}), false},
      {"start below 0", With(8, std::int32_t{-1}), false},
      {"no stretch", With(8, std::int32_t{480}), false},
      {"as long as a document", With(12, std::int32_t{kMaxSamples}), true},
      {"longer", With(12, std::int32_t{kMaxSamples + 1}), false},
      {"slow", With(16, std::int32_t{1000}), true},
      {"slower", With(16, std::int32_t{999}), false},
      {"fast", With(16, std::int32_t{384001}), false},
      {"no frames", With(20, std::int32_t{0}), false},
      {"no rate", With(24, 0.0), false},
      {"rate", With(24, infinite), false},
      {"share", With(32 + 61 * 8, 100.0), true},
      {"share above all", With(32 + 61 * 8, 100.5), false},
      {"negative share", With(32, -0.5), false},
      {"mean", With(528, std::nan("")), false},
      {"deviation", With(648, infinite), false},
      {"variability", With(656, std::nan("")), false},
  };
  for (const auto& c : cases) EXPECT_EQ(ReadPalateFile(c.bytes).has_value(), c.good) << c.reason;
  Bytes cut = BytesOf(Record());
  cut.pop_back();
  EXPECT_FALSE(ReadPalateFile(cut));
  EXPECT_FALSE(ReadPalateFile(Bytes{}));
  Bytes many;
  for (std::size_t i = 0; i < kMostPalateRecords; ++i) {
    const Bytes one = BytesOf(Record());
    many.insert(many.end(), one.begin(), one.end());
  }
  EXPECT_TRUE(ReadPalateFile(many));
  const Bytes one = BytesOf(Record());
  many.insert(many.end(), one.begin(), one.end());
  EXPECT_FALSE(ReadPalateFile(many));
}

TEST(PalateFile, TheTextHasARecordAndOfTwoTheirMean) {
  const std::string text = FromGbk(PalateText({Record()}));
  EXPECT_TRUE(
      text.starts_with("\r\n          腭位统计数据\r\n\r\n          第1段：T=0.010秒--0.030秒，2帧\r\n\r\n"
                       "        50.0  50.0  50.0  50.0  50.0  50.0\r\n"
                       "  50.0   0.0   0.0   0.0   0.0   0.0   0.0  50.0\r\n"));
  EXPECT_TRUE(text.ends_with("，不对称=0.00\r\n"));
  EXPECT_EQ(text.find("平均"), std::string::npos);
  PalateRecord silent = Record();
  silent.statistics = MeasureStatistics(std::vector{ContactFrame{}});
  const std::string none = FromGbk(PalateText({silent, silent}));
  EXPECT_NE(
      none.find("总接触=0.0%，前=0.0%，中=0.0%，后=0.0%，CA=0.000，CC=0.000，COG=--，不对称=--，变异=0.0%\r\n"
                "标准差：总接触=0.0%"),
      std::string::npos);
  EXPECT_NE(none.find("\r\n          平均（2段）\r\n\r\n"), std::string::npos);
}

}  // namespace
}  // namespace parlowen
