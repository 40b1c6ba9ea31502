#include "base/Bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace parlowen {
namespace {

TEST(Bytes, EveryFieldIsLittleEndianAndReadsBack) {
  ByteWriter out;
  out.PutTag("HEAD");
  out.PutUint8(0xFE);
  out.PutInt16LE(-2);
  out.PutUint16LE(0xFEDC);
  out.PutInt32LE(-3);
  out.PutUint32LE(0x89ABCDEF);
  out.PutFloat32LE(-1.5f);   // BFC00000
  out.PutFloat64LE(1.0);     // 3FF00000 00000000
  const std::int16_t samples[] = {1, -32768};
  out.PutInt16sLE(samples);
  const std::vector<std::uint8_t> expected = {'H', 'E', 'A', 'D', 0xFE, 0xFE, 0xFF, 0xDC, 0xFE, 0xFD, 0xFF, 0xFF, 0xFF,
                                              0xEF, 0xCD, 0xAB, 0x89, 0, 0, 0xC0, 0xBF, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F,
                                              1, 0, 0, 0x80};
  ASSERT_EQ(out.bytes(), expected);

  ByteReader in(expected);
  EXPECT_TRUE(in.TakeTag("HEAD"));
  EXPECT_EQ(in.TakeUint8(), 0xFE);
  EXPECT_EQ(in.TakeInt16LE(), -2);
  EXPECT_EQ(in.TakeUint16LE(), 0xFEDC);
  EXPECT_EQ(in.TakeInt32LE(), -3);
  EXPECT_EQ(in.TakeUint32LE(), 0x89ABCDEFu);
  EXPECT_EQ(in.TakeFloat32LE(), -1.5f);
  EXPECT_EQ(in.TakeFloat64LE(), 1.0);
  in.Skip(2);
  EXPECT_EQ(in.TakeInt16LE(), INT16_MIN);
  EXPECT_EQ(in.Remaining(), 0u);
  EXPECT_FALSE(in.failed());
}

TEST(Bytes, AReaderNeverLeavesItsBytesAndStaysFailed) {
  const std::uint8_t three[] = {1, 2, 3};
  const std::size_t huge = std::numeric_limits<std::size_t>::max();
  const struct {
    const char* what;
    void (*act)(ByteReader&, std::size_t);
    std::size_t count;
  } cases[] = {
      {"a field over the end", [](ByteReader& r, std::size_t) { EXPECT_EQ(r.TakeUint32LE(), 0u); }, 0},
      {"a skip over the end", [](ByteReader& r, std::size_t n) { r.Skip(n); }, 4},
      {"a skip that would wrap", [](ByteReader& r, std::size_t n) { r.TakeUint8(); r.Skip(n); }, huge},
      {"a place behind the end", [](ByteReader& r, std::size_t n) { r.SeekTo(n); }, 4},
      {"a piece that would wrap", [](ByteReader& r, std::size_t n) { r.TakeUint8(); EXPECT_TRUE(r.Take(n).empty()); }, huge},
      {"a tag over the end", [](ByteReader& r, std::size_t) { EXPECT_FALSE(r.TakeTag("\1\2\3\4")); }, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ByteReader reader(three);
    c.act(reader, c.count);
    EXPECT_TRUE(reader.failed());
    EXPECT_EQ(reader.Remaining(), 0u);
    EXPECT_EQ(reader.TakeUint8(), 0);
    reader.SeekTo(0);
    EXPECT_EQ(reader.TakeUint8(), 1) << "reading goes on";
    EXPECT_TRUE(reader.failed()) << "but the record stays bad";
  }
  ByteReader end(three);
  end.SeekTo(3);
  EXPECT_FALSE(end.failed()) << "the end itself is a place";
}

}  // namespace
}  // namespace parlowen
