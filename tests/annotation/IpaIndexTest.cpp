#include "annotation/IpaIndex.h"

#include <gtest/gtest.h>

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

const std::string kData = PARLOWEN_SOURCE_DIR "/data";

/// The codes of a symbol as the index lists them: phonetic ones as four digits, letters as they are.
std::string CodesOf(const std::string& symbol) {
  std::string codes;
  const std::string gbk = IpaToGbk(symbol);
  for (std::size_t at = 0; at < gbk.size(); ++at) {
    if (!codes.empty()) codes += ' ';
    const auto lead = static_cast<unsigned char>(gbk[at]);
    codes += lead < 0x80 ? std::string(1, gbk[at])
                         : Format("%02X%02X", lead, static_cast<unsigned char>(gbk[++at]));
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

TEST(IpaIndex, HeadingsAndBrokenLinesAreNoRows) {
  const auto rows = ReadIpaIndex(
      "title\n1\t2\t3\t4\t5\r\n\r\n\xAA\xF4\tb\t\t\t\na\tb\tc\td\na\tb\tc\td\te\tf\nz\t\t\t\tlast");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].symbol, "ʰ");
  EXPECT_EQ(rows[1].description, "last");
  EXPECT_TRUE(ReadIpaIndex("").empty());
}

}  // namespace
}  // namespace parlowen
