#include "base/IpaCodes.h"

#include <gtest/gtest.h>

#include <set>

#include "base/Format.h"
#include "base/Gbk.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

std::string Code(int number) { return std::string("\xAA") + static_cast<char>(0xA0 + number); }

TEST(IpaCodes, TheRowIsTheDocumentsTableAndGoesThereAndBack) {
  const std::string table = testing::ReadFile(PARLOWEN_SOURCE_DIR "/docs/ipa-codes.md");
  std::set<std::string> symbols;
  for (int number = 1; number <= 94; ++number) {
    const std::string symbol = IpaFromGbk(Code(number));
    symbols.insert(symbol);
    EXPECT_EQ(IpaToGbk(symbol), Code(number));
    const std::string row = Format("| %d | AA%02X", number, 0xA0 + number);
    const std::size_t at = table.find(row);
    ASSERT_NE(at, std::string::npos) << number;
    EXPECT_NE(table.substr(at, table.find('\n', at) - at).find("| " + symbol + " |"), std::string::npos)
        << number;
  }
  EXPECT_EQ(symbols.size(), 94u);
}

TEST(IpaCodes, ASymbolOfTwoCodesIsDrawnAlikeAndStoredAsItWas) {
  // β, θ, χ, ɑ, ɡ, each as an ordinary and as a phonetic code.
  const std::string ordinary = "\xA6\xC2\xA6\xC8\xA6\xD6\xA8\xBB\xA8\xC0", symbols = "βθχɑɡ";
  EXPECT_EQ(FromGbk(ordinary), symbols);
  EXPECT_EQ(IpaFromGbk(IpaToGbk(symbols)), symbols);
  EXPECT_NE(IpaToGbk(symbols), ordinary);
  EXPECT_NE(IpaFromGbk(ordinary), symbols);
  EXPECT_EQ(IpaAsDrawn(IpaFromGbk(ordinary)), symbols);
  EXPECT_EQ(IpaAsDrawn("a普ʂ\uE765"), "a普ʂ\uE765");
}

TEST(IpaCodes, OtherTextAndOtherUserCodesAreKept) {
  const std::string bytes = ToGbk("普通话 ma") + "\xAB\xA1\xF8\xA1\xA1\x40";
  EXPECT_EQ(IpaToGbk(IpaFromGbk(bytes)), bytes);
  EXPECT_EQ(IpaFromGbk(bytes), FromGbk(bytes));
}

}  // namespace
}  // namespace parlowen
