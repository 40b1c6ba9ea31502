#include "base/Bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace parlowen {
namespace {

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
      {"a skip that would wrap",
       [](ByteReader& r, std::size_t n) {
         r.TakeUint8();
         r.Skip(n);
       },
       huge},
      {"a place behind the end", [](ByteReader& r, std::size_t n) { r.SeekTo(n); }, 4},
      {"a piece that would wrap",
       [](ByteReader& r, std::size_t n) {
         r.TakeUint8();
         EXPECT_TRUE(r.Take(n).empty());
       },
       huge},
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
