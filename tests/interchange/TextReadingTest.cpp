// Encodings, and the tokens of text object files.

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "interchange/TextDecoding.h"
#include "interchange/TextObject.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

DecodedText Decoded(const std::string& bytes) { return DecodeText(testing::AsBytes(bytes)); }

/// The characters as 16-bit units, written out without the reader's own arithmetic.
std::string Utf16(std::u16string_view text, bool big) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
    bytes += big ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TEST(TextDecoding, KnowsTheEncodingsByMarkByZerosAndByForm) {
  const std::u16string_view wide = u"a音\"😀";
  const std::string text = "a音\"😀";
  EXPECT_EQ(Decoded(text).text, text);
  EXPECT_EQ(Decoded("\xEF\xBB\xBF" + text).text, text);
  EXPECT_EQ(Decoded("\xFF\xFE" + Utf16(wide, false)).text, text);
  EXPECT_EQ(Decoded("\xFE\xFF" + Utf16(wide, true)).text, text);
  EXPECT_EQ(Decoded(Utf16(wide, false)).text, text);
  EXPECT_EQ(Decoded(Utf16(wide, true)).text, text);
  EXPECT_EQ(Decoded("\xFF\xFE" + Utf16(u"音标", false)).text, "音标") << "no zero bytes";
  EXPECT_EQ(Decoded("").text, "");
  for (const std::string& unicode : {text, Utf16(wide, true)}) EXPECT_FALSE(Decoded(unicode).fromGbk);
}

TEST(TextDecoding, TakesOtherBytesForGbkAndSaysSo) {
  const DecodedText gbk = Decoded("\xD2\xF4\xB1\xEA \xAA\xA5");
  EXPECT_EQ(gbk.text, "音标 ɛ");
  EXPECT_TRUE(gbk.fromGbk);
}

TEST(TextDecoding, HalfUnitsAndLoneSurrogatesDoNoHarm) {
  EXPECT_EQ(Decoded("\xFF\xFE" + Utf16(u"ab", false) + "x").text, "ab");
  EXPECT_EQ(Decoded("\xFF\xFE" + Utf16(std::u16string{u'a', 0xD800, u'b', 0xDC00}, false)).text,
            "a\uFFFDb\uFFFD");
  EXPECT_EQ(Decoded("\xFF\xFE" + Utf16(std::u16string{0xD83D}, false)).text, "\uFFFD");
}

TEST(TokenReader, TakesNumbersStringsAndFlagsAndNothingElse) {
  TokenReader reader(
      "xmin = 0.5 item [1]: 7th 2,5 =3 ! 99 \"no\"\n -1e-3 +4 .5 \"a \"\"b\"\"\r\nc\" tiers? <exists> size=8 9!x\n10");
  for (const double number : {0.5, -0.001, 4.0, 0.5}) EXPECT_EQ(reader.TakeNumber(), number);
  EXPECT_EQ(reader.TakeString(), "a \"b\"\r\nc");
  EXPECT_TRUE(reader.TakeFlag("exists"));
  EXPECT_EQ(reader.TakeNumber(), 9);
  EXPECT_EQ(reader.TakeNumber(), 10);
  EXPECT_FALSE(reader.failed());
  reader.TakeNumber();
  EXPECT_TRUE(reader.failed());
}

TEST(TokenReader, FailsAtAnotherKindAndStaysSo) {
  const char* texts[] = {"\"1\" 2", "<1> 2",  "",    "nan inf -inf 0x10 - + . 1e",
                         "1e999 2", "\"open", "! 5", "<a\n> \"x"};
  for (const char* text : texts) {
    TokenReader reader(text);
    EXPECT_EQ(reader.TakeNumber(), 0) << text;
    EXPECT_TRUE(reader.failed()) << text;
    EXPECT_EQ(reader.TakeNumber(), 0) << text;
  }
  TokenReader open("a \"never closed");
  EXPECT_EQ(open.TakeString(), "");
  EXPECT_TRUE(open.failed());
  TokenReader flag("<absent> 1");
  EXPECT_FALSE(flag.TakeFlag("exists"));
  EXPECT_FALSE(flag.failed());
}

}  // namespace
}  // namespace parlowen
