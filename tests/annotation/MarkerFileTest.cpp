#include "annotation/MarkerFile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/Gbk.h"

namespace parlowen {
namespace {

/// Markers 10, 30 and a label in the first band, one marker in the last.
MarkerSet SmallSet() {
  MarkerSet set;
  set.markerCount = {2, 0, 0, 1};
  set.labelCount = {1, 0, 0, 1};
  set.markerPos[0] = 10;
  set.markerPos[1] = 0x01020304;
  set.markerPos[60] = 7;
  set.labels[0] = {10, 0x01020304, "好a"};
  set.labels[60] = {7, 7, "ʂ"};
  return set;
}
constexpr int kLong = 0x02000000;  // samples, behind all positions

std::string At(const std::vector<std::uint8_t>& bytes, std::size_t offset, std::size_t count) {
  return {bytes.begin() + static_cast<std::ptrdiff_t>(offset),
          bytes.begin() + static_cast<std::ptrdiff_t>(offset + count)};
}

TEST(MarkerFile, FieldsStandAtTheirOffsetsAndUnusedOnesAreZero) {
  MarkerSet set = SmallSet();
  set.markerPos[5] = 99;  // behind the count
  set.labels[30] = {1, 2, "left over"};
  const auto bytes = MarkerBytesOf(set);
  ASSERT_EQ(bytes.size(), 2576u);
  const auto zeros = [](std::size_t count) { return std::string(count, '\0'); };
  EXPECT_EQ(At(bytes, 0, 16), std::string("\2\0\0\0\0\0\1\0", 8) + std::string("\1\0\0\0\0\0\1\0", 8));
  EXPECT_EQ(At(bytes, 16, 320),
            std::string("\x0A\0\0\0\4\3\2\1", 8) + zeros(232) + std::string("\7\0\0\0", 4) + zeros(76));
  // 好 is BAC3; ʂ is the phonetic symbol AAE4.
  EXPECT_EQ(At(bytes, 336, 28), std::string("\x0A\0\0\0\4\3\2\1\xBA\xC3"
                                            "a",
                                            11) +
                                    zeros(17));
  EXPECT_EQ(At(bytes, 336 + 60 * 28, 28), std::string("\7\0\0\0\7\0\0\0\xAA\xE4", 10) + zeros(18));
  EXPECT_EQ(At(bytes, 336 + 28, 59 * 28), zeros(59 * 28));
}

TEST(MarkerFile, OtherSizesAndCountsAreNoMarkerFile) {
  const auto bytes = MarkerBytesOf(SmallSet());
  auto longer = bytes;
  longer.push_back(0);
  EXPECT_FALSE(ParseMarkers(longer, kLong));
  EXPECT_FALSE(ParseMarkers(ByteSpan(bytes).first(2575), kLong));
  EXPECT_FALSE(ParseMarkers({}, kLong));
  for (std::size_t field = 0; field < 16; field += 2) {
    for (const auto& [low, high, valid] :
         {std::tuple(20, 0, true), {21, 0, false}, {255, 255, false}, {0, 1, false}}) {
      auto changed = bytes;
      changed[field] = static_cast<std::uint8_t>(low);
      changed[field + 1] = static_cast<std::uint8_t>(high);
      EXPECT_EQ(ParseMarkers(changed, kLong).has_value(), valid) << field << " " << low;
    }
  }
}

TEST(MarkerFile, PositionsAreBroughtIntoTheSoundAndIntoOrder) {
  MarkerSet set;
  set.markerCount[1] = 4;
  set.markerPos = {};
  const std::int32_t positions[] = {900, -5, INT32_MAX, 400};
  std::copy(std::begin(positions), std::end(positions), set.markerPos.begin() + 20);
  set.labelCount[1] = 2;
  set.labels[20] = {400, INT32_MIN, "turned"};
  set.labels[21] = {900, 5000, "long"};
  const auto content = ParseMarkers(MarkerBytesOf(set), 1000);
  ASSERT_TRUE(content);
  EXPECT_TRUE(content->corrected);
  EXPECT_EQ(std::vector(content->set.Markers(1).begin(), content->set.Markers(1).end()),
            std::vector<std::int32_t>({0, 400, 900, 1000}));
  EXPECT_EQ(content->set.Labels(1)[0], (MarkerLabel{0, 400, "turned"}));
  EXPECT_EQ(content->set.Labels(1)[1], (MarkerLabel{900, 1000, "long"}));
  // What lies behind the counts is not looked at.
  auto unused = MarkerBytesOf(SmallSet());
  std::fill(unused.begin() + 16 + 3 * 4, unused.begin() + 16 + 20 * 4, std::uint8_t{0xFF});
  EXPECT_EQ(ParseMarkers(unused, kLong)->set, SmallSet());
}

TEST(MarkerFile, ATextWithoutAnEndIsCutAtACharacter) {
  auto bytes = MarkerBytesOf(SmallSet());
  const std::string text = ToGbk("一二三四五六七八九十");  // all 20 bytes
  std::copy(text.begin(), text.end(), bytes.begin() + 336 + 8);
  const auto content = ParseMarkers(bytes, kLong);
  ASSERT_TRUE(content);
  EXPECT_EQ(content->set.labels[0].text, "一二三四五六七八九");
}

}  // namespace
}  // namespace parlowen
