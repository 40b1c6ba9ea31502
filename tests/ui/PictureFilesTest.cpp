#include <gtest/gtest.h>

#include <array>
#include <regex>

#include "base/Utf8.h"
#include "ui/Picture.h"
#include "ui/Png.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint32_t BigEndian(const Bytes& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | bytes.at(at + i);
  return value;
}

/// The checksum of PNG chunks by polynomial division, bit by bit.
std::uint32_t SlowCrc(const Bytes& bytes, std::size_t begin, std::size_t end) {
  std::uint32_t crc = ~0u;
  for (std::size_t i = begin; i < end; ++i)
    for (int bit = 0; bit < 8; ++bit) {
      const std::uint32_t lowest = (crc ^ (bytes[i] >> bit)) & 1;
      crc = crc >> 1 ^ (lowest != 0 ? 0xEDB88320u : 0);
    }
  return ~crc;
}

/// The scan lines of a PNG whose zlib stream is stored blocks, everything else checked on the way.
Bytes ScanLines(const Bytes& png, int columns, int rows, int channels) {
  const Bytes signature = {0x89, 'P', 'N', 'G', 13, 10, 26, 10};
  EXPECT_TRUE(std::equal(signature.begin(), signature.end(), png.begin()));
  std::string types;
  Bytes stream;
  std::size_t at = 8;
  while (at < png.size()) {
    const std::size_t length = BigEndian(png, at);
    const std::string type(png.begin() + static_cast<std::ptrdiff_t>(at) + 4,
                           png.begin() + static_cast<std::ptrdiff_t>(at) + 8);
    types += type + " ";
    EXPECT_EQ(BigEndian(png, at + 8 + length), SlowCrc(png, at + 4, at + 8 + length)) << type;
    if (type == "IHDR") {
      EXPECT_EQ(BigEndian(png, at + 8), static_cast<std::uint32_t>(columns));
      EXPECT_EQ(BigEndian(png, at + 12), static_cast<std::uint32_t>(rows));
      const Bytes rest(png.begin() + static_cast<std::ptrdiff_t>(at) + 16,
                       png.begin() + static_cast<std::ptrdiff_t>(at) + 21);
      EXPECT_EQ(rest, (Bytes{8, static_cast<std::uint8_t>(channels == 3 ? 2 : 0), 0, 0, 0}));
    }
    if (type == "IDAT")
      stream.assign(png.begin() + static_cast<std::ptrdiff_t>(at) + 8,
                    png.begin() + static_cast<std::ptrdiff_t>(at + 8 + length));
    at += 12 + length;
  }
  EXPECT_EQ(types, "IHDR IDAT IEND ");
  EXPECT_EQ((stream[0] * 256 + stream[1]) % 31, 0);
  Bytes lines;
  for (std::size_t block = 2; block + 4 < stream.size();) {
    const std::size_t length = stream[block + 1] + 256u * stream[block + 2];
    EXPECT_EQ(length ^ 0xFFFF, stream[block + 3] + 256u * stream[block + 4]);
    lines.insert(lines.end(), stream.begin() + static_cast<std::ptrdiff_t>(block) + 5,
                 stream.begin() + static_cast<std::ptrdiff_t>(block + 5 + length));
    const bool last = stream[block] == 1;
    block += 5 + length;
    EXPECT_EQ(last, block + 4 == stream.size());
  }
  std::uint64_t a = 1, b = 0;
  for (const std::uint8_t byte : lines) b = (b + (a = (a + byte) % 65521)) % 65521;
  EXPECT_EQ(BigEndian(stream, stream.size() - 4), b << 16 | a);
  return lines;
}

TEST(Png, EveryImageDecodesToItsPixels) {
  // 255·257 bytes with the filter bytes are one full stored block of 65535; one row more needs a second.
  const std::array<int, 3> sizes[] = {{1, 1, 1}, {3, 2, 3}, {254, 257, 1}, {254, 258, 1}, {1004, 256, 1}};
  for (const auto& [columns, rows, channels] : sizes) {
    SCOPED_TRACE(columns);
    const auto stride = static_cast<std::size_t>(columns * channels);
    Bytes pixels(stride * static_cast<std::size_t>(rows));
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 37 + i / 251);
    Bytes expected;
    for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
      expected.push_back(0);
      expected.insert(expected.end(), pixels.begin() + static_cast<std::ptrdiff_t>(row * stride),
                      pixels.begin() + static_cast<std::ptrdiff_t>((row + 1) * stride));
    }
    EXPECT_TRUE(ScanLines(EncodePng(columns, rows, channels, pixels), columns, rows, channels) == expected);
  }
}

TEST(Png, Base64FollowsItsStandard) {
  const std::array<const char*, 2> cases[] = {
      {"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
      {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {"\xFB\xFF\xFE", "+//+"}};
  for (const auto& [plain, coded] : cases) {
    const std::string text = plain;
    EXPECT_EQ(ToBase64({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}), coded);
  }
}

/// Well-formed as far as our writer goes: every tag closes in order, no stray "<" or "&", only characters of
/// XML.
::testing::AssertionResult IsWellFormed(const std::string& xml) {
  if (!IsUtf8(xml)) return ::testing::AssertionFailure() << "not UTF-8";
  for (std::size_t at = 0; at < xml.size();) {
    const char32_t c = TakeUtf8(xml, at);
    if ((c < 0x20 && c != '\n') || c == 0xFFFE || c == 0xFFFF)
      return ::testing::AssertionFailure() << "character " << static_cast<unsigned>(c);
  }
  static const std::regex kTag(R"(<(/?)([a-z]+)((?: [a-zA-Z0-9:-]+="[^"<]*")*)(/?)>|<\?xml [^<]*\?>)");
  std::vector<std::string> open;
  std::string rest;
  auto from = xml.cbegin();
  for (std::sregex_iterator tag(xml.begin(), xml.end(), kTag), none; tag != none; ++tag) {
    rest.append(from, xml.cbegin() + tag->position());
    from = xml.cbegin() + tag->position() + tag->length();
    if ((*tag)[2].length() == 0 || (*tag)[4].length() != 0) continue;
    if ((*tag)[1].length() == 0) {
      open.push_back((*tag)[2]);
    } else if (open.empty() || open.back() != (*tag)[2]) {
      return ::testing::AssertionFailure() << "closes " << (*tag)[2];
    } else {
      open.pop_back();
    }
  }
  rest.append(from, xml.cend());
  rest = std::regex_replace(rest, std::regex("&(amp|lt|gt|quot|apos);"), "");
  if (!open.empty() || rest.find_first_of("<>&") != std::string::npos)
    return ::testing::AssertionFailure() << "left over: " << rest;
  return ::testing::AssertionSuccess();
}

TEST(Svg, NoTextCanBreakTheDocument) {
  Picture picture{10, 10, {}};
  for (const char* text :
       {"]]>", "</text>", "\x01\x1F\n\r", "\xFF\xC0", "\xEF\xBF\xBE \xEF\xBF\xBF", "\x7F", "&amp;"})
    picture.Add(TextMark{0, 0, text});
  EXPECT_TRUE(IsWellFormed(ToSvg(picture))) << ToSvg(picture);
}

}  // namespace
}  // namespace parlowen
