#include "prosody/ToneFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "base/Gbk.h"
#include "prosody/ToneStatistics.h"

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

ToneItem Item(const std::string& group, std::vector<float> hertz) {
  ToneItem item;
  item.group = ToGbk(group);
  item.sound = ToGbk("妈 1.wav");
  item.sampleRate = 16000;
  item.start = 800;
  item.end = 8000;
  item.first = 7;
  item.hertz = std::move(hertz);
  item.points = TonePointsOf(item.hertz);
  return item;
}

template <typename Value>
void Put(Bytes& bytes, std::size_t at, Value value) {
  const auto raw = std::bit_cast<std::array<std::uint8_t, sizeof value>>(value);
  std::copy(raw.begin(), raw.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

TEST(ToneFile, ARecordIsTheseBytes) {
  const ToneItem item = Item("阴平", {100, 0, 200, 210, 220.5f});
  Bytes expected(104 + 20);
  const auto text = [&](std::size_t at, const std::string& characters) {
    std::copy(characters.begin(), characters.end(), expected.begin() + static_cast<std::ptrdiff_t>(at));
  };
  text(0, "HEAD");
  Put<std::int32_t>(expected, 4, 96 + 20);
  text(8, "\xD2\xF5\xC6\xBD");  // 阴平
  Put<std::int32_t>(expected, 16, 16000);
  Put<std::int32_t>(expected, 20, 800);
  Put<std::int32_t>(expected, 24, 8000);
  Put<std::int32_t>(expected, 28, 7);
  Put<std::int16_t>(expected, 32, 1);
  Put<std::int32_t>(expected, 36, 5);
  text(40, "\xC2\xE8 1.wav");
  for (std::size_t i = 0; i < 5; ++i) Put(expected, 104 + 4 * i, item.hertz[i]);
  EXPECT_EQ(WriteToneItems({&item, 1}).bytes(), expected);
  EXPECT_EQ(ParseToneItems(expected), std::vector{item});
  EXPECT_EQ(ParseToneItems({}), std::vector<ToneItem>{});
}

TEST(ToneFile, OneWrongFieldSpoilsTheFile) {
  const std::vector<ToneItem> items = {Item("T1", {100, 110, 120, 130, 140}),
                                       Item("T2", {100, 110, 120, 130, 140})};
  const Bytes good = WriteToneItems(items).bytes();
  ASSERT_TRUE(ParseToneItems(good));
  const auto with = [&](std::size_t at, auto value) {
    Bytes bytes = good;
    Put(bytes, 124 + at, value);  // of the second record
    return ParseToneItems(bytes).has_value();
  };
  EXPECT_FALSE(with(0, 'h'));
  EXPECT_FALSE(with(4, std::int32_t{97}));
  EXPECT_FALSE(with(8, std::int64_t{0})) << "no group";
  EXPECT_FALSE(with(16, std::int32_t{999}));
  EXPECT_FALSE(with(16, std::int32_t{384001}));
  EXPECT_FALSE(with(20, std::int32_t{-1}));
  EXPECT_FALSE(with(20, std::int32_t{8000})) << "start = end";
  EXPECT_FALSE(with(24, std::int32_t{1572865}));
  EXPECT_TRUE(with(24, std::int32_t{1572864}));
  EXPECT_FALSE(with(36, std::int32_t{4}));
  EXPECT_FALSE(with(36, std::int32_t{INT32_MAX}));
  EXPECT_FALSE(with(104, 0.0f)) << "the first value is none";
  EXPECT_TRUE(with(108, 0.0f));
  EXPECT_FALSE(with(108, 9.9f));
  EXPECT_FALSE(with(108, 4001.0f));
  EXPECT_FALSE(with(108, NAN));
}

TEST(ToneFile, AResultComesBackAndLiesAtItsOffsets) {
  const std::vector<ToneItem> items = {Item("T1", {128, 128, 128, 128, 128}),
                                       Item("T2", {256, 256, 256, 256, 256, 256}),
                                       Item("T1", {64, 64, 64, 64, 64, 64, 64})};
  // T1 is 6 ± 6 semitones and 60 ± 10 ms, T2 24 ± 0 and 60 ± 0.
  const ToneStatistics statistics = PoolTones(items, {});
  const Bytes bytes = WriteToneResult(ToneResultOf(statistics)).bytes();
  ASSERT_EQ(bytes.size(), 28u + 2 * 208);
  ByteReader in(bytes);
  in.SeekTo(4);
  EXPECT_EQ(in.TakeInt32LE(), 20 + 2 * 208);
  EXPECT_EQ(in.TakeInt32LE(), 2 | 11 << 16);
  EXPECT_NEAR(in.TakeFloat64LE(), 64 * std::sqrt(2.0), 1e-9);
  EXPECT_NEAR(in.TakeFloat64LE(), 256, 1e-9);
  in.SeekTo(28 + 8);
  EXPECT_EQ(in.TakeInt16LE(), 2);
  in.SeekTo(28 + 16);
  EXPECT_NEAR(in.TakeFloat64LE(), 6, 1e-9);
  in.SeekTo(28 + 104);
  EXPECT_NEAR(in.TakeFloat64LE(), 6, 1e-9);
  in.SeekTo(28 + 192);
  EXPECT_EQ(in.TakeFloat64LE(), 60);
  EXPECT_EQ(in.TakeFloat64LE(), 10);
  EXPECT_EQ(ParseToneResult(bytes), ToneResultOf(statistics));
  // Points 11·6 and 11·24: mean 15, deviation 9.
  EXPECT_NEAR(statistics.ScaleOf(ToneAxis::Lz).Of(24), 1, 1e-9);
  EXPECT_EQ(statistics.DigitsOf(statistics.groups[1]), "55");
  EXPECT_EQ(NumberInGroup(items, 2), 2);
}

}  // namespace
}  // namespace parlowen
