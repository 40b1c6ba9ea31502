#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <set>

#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

std::string Pair(int lead, int trail) { return {static_cast<char>(lead), static_cast<char>(trail)}; }
std::string Utf8Of(char32_t character) {
  std::string text;
  AppendUtf8(text, character);
  return text;
}

TEST(Gbk, EveryByteComesBackAsItWasRead) {
  std::set<std::string> characters;
  for (int lead = 0x80; lead <= 0xFF; ++lead)
    for (int trail = 0; trail <= 0xFF; ++trail) {
      const std::string code = Pair(lead, trail), text = FromGbk(code);
      ASSERT_EQ(ToGbk(text), code) << std::hex << lead << trail;
      ASSERT_TRUE(HasGbkCodes(text));
      ASSERT_EQ(IpaToGbk(IpaFromGbk(code)), code) << std::hex << lead << trail;
      std::size_t at = 0;
      TakeUtf8(text, at);
      const bool isPair = lead > 0x80 && lead < 0xFF && trail >= 0x40 && trail != 0x7F && trail != 0xFF;
      ASSERT_EQ(at == text.size(), isPair) << std::hex << lead << trail;
      if (isPair) characters.insert(text);
    }
  EXPECT_EQ(characters.size(), 23940u) << "no character has two codes";
}

TEST(Gbk, KnownCodesAndTheUserDefinedZones) {
  const struct {
    const char* gbk;
    char32_t character;
  } cases[] = {
      {"\xB0\xA1", U'啊'},
      {"\xD7\xF9", U'座'},
      {"\x81\x40", U'丂'},
      {"\xA3\xA1", U'！'},
      {"\xFE\x4F", U'\uFA29'},
      // 94 columns a row: AAA1..AFFE from U+E000, F8A1..FEFE behind it from U+E234; then A140..A7A0, 96 a
      // row, from U+E4C6.
      {"\xAA\xA1", 0xE000},
      {"\xAF\xFE", 0xE233},
      {"\xF8\xA1", 0xE234},
      {"\xFE\xFE", 0xE4C5},
      {"\xA1\x40", 0xE4C6},
      {"\xA1\x80", 0xE505},
      {"\xA7\xA0", 0xE765},
      // What no standard has given a character, in the order of the codes; single bytes.
      {"\xA2\xAB", 0xE766},
      {"\xFE\xA0", 0xE864},
      {"\x80", 0xEF80},
      {"\xFF", 0xEFFF},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FromGbk(c.gbk), Utf8Of(c.character)) << std::hex << static_cast<std::uint32_t>(c.character);
    EXPECT_EQ(ToGbk(Utf8Of(c.character)), c.gbk) << std::hex << static_cast<std::uint32_t>(c.character);
  }
}

TEST(Gbk, WhatHasNoCodeBecomesAQuestionMark) {
  EXPECT_EQ(ToGbk("a😀b\xC3(\xED\xA0\x80ɚ"), "a?b?(????");
  EXPECT_FALSE(HasGbkCodes("好😀"));
  EXPECT_FALSE(HasGbkCodes("\xFF"));
  EXPECT_TRUE(HasGbkCodes("好 a\n"));
  EXPECT_EQ(FromGbk("\xB0\n\x80z\xFF\xB0\xA1"), "\uEFB0\n\uEF80z\uEFFF啊");
}

TEST(Gbk, TextIsCutAtACharacter) {
  const std::string text = ToGbk("a元音b");  // bytes: 1 2 2 1
  const std::size_t expected[] = {0, 1, 1, 3, 3, 5, 6, 6};
  for (std::size_t bytes = 0; bytes < std::size(expected); ++bytes)
    EXPECT_EQ(CutGbk(text, bytes).size(), expected[bytes]) << bytes;
  EXPECT_EQ(CutGbk("\xFF\xB0\xA1", 2).size(), 1u) << "FF begins no pair";
  const std::size_t expectedUtf8[] = {0, 1, 1, 1, 4, 4, 4, 7, 8, 8};
  for (std::size_t bytes = 0; bytes < std::size(expectedUtf8); ++bytes)
    EXPECT_EQ(CutUtf8("a元音b", bytes).size(), expectedUtf8[bytes]) << bytes;
}

TEST(Utf8, IllFormedBytesAreSkippedOneByOne) {
  const struct {
    const char* bytes;
    std::u32string characters;
  } cases[] = {
      {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
       U"\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"},
      {"\xC1\xBF", U"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x9F\xBF", U"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
      {"\xE4\xB8", U"\uFFFD\uFFFD"},                      // ends too early
      {"\xE4x\x80", U"\uFFFDx\uFFFD"},
  };
  for (const auto& c : cases) {
    std::u32string read;
    const std::string text = c.bytes;
    for (std::size_t at = 0; at < text.size();) read += TakeUtf8(text, at);
    EXPECT_TRUE(read == c.characters) << text;
    EXPECT_EQ(IsUtf8(text), read.find(kReplacementCharacter) == std::u32string::npos);
    std::string again;
    for (const char32_t character : read) AppendUtf8(again, character);
    EXPECT_TRUE(IsUtf8(again));
  }
}

TEST(Format, NumbersReadBackToTheSameValue) {
  for (const double value : {0.1, 1.0 / 3, 1e300, -5e-324, 123456789.0, 0.0})
    EXPECT_EQ(std::strtod(ShortestNumber(value).c_str(), nullptr), value);
  for (const float value : {0.1f, 1.0f / 3, 16777217.0f, 1e-38f})
    EXPECT_EQ(std::strtof(ShortestNumber(value).c_str(), nullptr), value);
  EXPECT_EQ(ShortestNumber(0.1f), "0.1") << "no digits that a float does not have";
  EXPECT_EQ(ShortestNumber(std::nan("")), "null");
  EXPECT_EQ(ShortestNumber(-HUGE_VALF), "null");
  EXPECT_EQ(Format("%s%d", std::string(5000, 'x').c_str(), 7), std::string(5000, 'x') + "7");
}

}  // namespace
}  // namespace parlowen
