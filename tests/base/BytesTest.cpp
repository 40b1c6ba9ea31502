#include "base/Bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace parlowen {
namespace {

TEST(Bytes, AReaderNeverLeavesItsBytesAndStaysFailed) {
  const std::uint8_t three[] = {1, 2, 3};
  const std::size_t huge = std::numeric_limits<std::size_t>::max();
  const auto fails = [&](const char* what, const auto& act) {
    SCOPED_TRACE(what);
    ByteReader reader(three);
    act(reader);
    EXPECT_TRUE(reader.failed());
    EXPECT_EQ(reader.Remaining(), 0u);
    EXPECT_EQ(reader.TakeUint8(), 0);
    reader.SeekTo(0);
    EXPECT_EQ(reader.TakeUint8(), 1) << "reading goes on";
    EXPECT_TRUE(reader.failed()) << "but the record stays bad";
  };
  fails("a field over the end", [](ByteReader& r) { EXPECT_EQ(r.TakeUint32LE(), 0u); });
  fails("a skip over the end", [](ByteReader& r) { r.Skip(4); });
  fails("a skip that would wrap", [&](ByteReader& r) { r.Skip(1), r.Skip(huge); });
  fails("a place behind the end", [](ByteReader& r) { r.SeekTo(4); });
  fails("a piece that would wrap", [&](ByteReader& r) { r.Skip(1), r.Take(huge); });
  fails("a tag over the end", [](ByteReader& r) { EXPECT_FALSE(r.TakeTag("\1\2\3\4")); });
  ByteReader end(three);
  end.SeekTo(3);
  EXPECT_FALSE(end.failed()) << "the end itself is a place";
}

}  // namespace
}  // namespace parlowen
