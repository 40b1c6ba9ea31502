#include "annotation/IpaIndex.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using testing::Texts;

const std::string kData = PARLOWEN_SOURCE_DIR "/data";

/// The codes of a symbol as the index lists them: phonetic ones as four digits, letters as they are.
std::string CodesOf(const std::string& symbol) {
  std::string codes;
  const std::string gbk = IpaToGbk(symbol);
  for (std::size_t at = 0; at < gbk.size(); ++at) {
    if (!codes.empty()) codes += ' ';
    const auto lead = static_cast<unsigned char>(gbk[at]);
    codes += lead < 0x80 ? std::string(1, gbk[at]) : Format("%02X%02X", lead, static_cast<unsigned char>(gbk[++at]));
  }
  return codes;
}

TEST(IpaIndex, EveryRowHasTheCodesOfItsSymbol) {
  const std::string bytes = testing::ReadFile(kData + "/Ipacode.txt");
  const std::vector<IpaIndexRow> rows = ReadIpaIndex(bytes);
  EXPECT_GE(rows.size(), 70u);
  for (const IpaIndexRow& row : rows) {
    EXPECT_EQ(row.codes, CodesOf(row.symbol)) << row.symbol;
    EXPECT_FALSE(row.description.empty()) << row.symbol;
  }
  const std::string text = IpaFromGbk(bytes);
  EXPECT_EQ(IpaToGbk(text), bytes);
  EXPECT_EQ(text.find("\xEF\xBF\xBD"), std::string::npos) << "every byte is text";
}

TEST(IpaIndex, HasEveryInitialAndFinalOfPinyin) {
  const std::vector<IpaIndexRow> rows = ReadIpaIndex(testing::ReadFile(kData + "/Ipacode.txt"));
  for (const char* pinyin : {"b", "p", "m", "f", "d", "t", "n", "l", "g", "k", "h", "j", "q", "x", "zh", "ch", "sh", "r", "z", "c", "s",
                             "a", "o", "e", "ê", "i", "u", "ü", "-i", "er", "ai", "ei", "ao", "ou", "an", "en", "ang", "eng", "ong",
                             "ia", "ie", "iao", "iou", "ian", "in", "iang", "ing", "iong", "ua", "uo", "uai", "uei", "uan", "uen",
                             "uang", "ueng", "üe", "üan", "ün"})
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [&](const IpaIndexRow& row) { return row.pinyin == pinyin; })) << pinyin;
}

TEST(IpaIndex, HeadingsAndBrokenLinesAreNoRows) {
  const auto rows = ReadIpaIndex("title\n1\t2\t3\t4\t5\r\n\r\n\xAA\xF4\tb\t\t\t\na\tb\tc\td\na\tb\tc\td\te\tf\nz\t\t\t\tlast");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].symbol, "ʰ");
  EXPECT_EQ(rows[1].description, "last");
  EXPECT_TRUE(ReadIpaIndex("").empty());
}

TEST(IpaIndex, IsShownOrSaidToBeMissing) {
  testing::FakeWindow window;
  ShowIpaIndex(window, kData);
  ShowIpaIndex(window, "/nowhere");
  EXPECT_EQ(window.Log(), (Texts{"editor|" + kData + "/Ipacode.txt", "error|Parlowen(Tessiran)|不能调入国际音标索引"}));
}

}  // namespace
}  // namespace parlowen
