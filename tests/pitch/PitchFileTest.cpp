// Pitch data files and the listing, byte for byte.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "pitch/PitchFile.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Little;

std::string Record(int start, const std::vector<float>& periods) {
  std::string bytes =
      "HEAD" + Little(4 * periods.size() + 4, 4) + Little(static_cast<std::uint32_t>(start), 4);
  for (const float period : periods) bytes += Little(std::bit_cast<std::uint32_t>(period), 4);
  return bytes;
}

PitchFileEnd Read(const std::string& bytes, std::vector<PitchRecord>& records) {
  records.clear();
  return ReadPitchRecords({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, records);
}

TEST(PitchFile, ARecordHoldsTheFramesOfBothEnds) {
  SoundDocument document;
  document.sampleRate = 16000;
  document.pitch.fill(0);
  for (std::size_t f = 0; f < 40; ++f) document.pitch[f] = 100.0f + static_cast<float>(f);
  ByteWriter out;
  // 3200·100/16000 = 20, 3999·100/16000 = 24: n = 4, five values, B = 4·4 + 8.
  const FrameSpan frames = RecordedFrames(3200, 3999, 16000);
  ASSERT_TRUE(WritePitchRecord(out, document, 3200, frames));
  const std::string bytes(out.bytes().begin(), out.bytes().end());
  EXPECT_EQ(bytes, Record(3200, {120, 121, 122, 123, 124}));
  EXPECT_EQ(bytes.substr(4, 4), Little(24, 4));
  std::vector<PitchRecord> records;
  EXPECT_EQ(Read(bytes + bytes, records), PitchFileEnd::Complete);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].start, 3200);
  EXPECT_EQ(records[1].periods, (std::vector<float>{120, 121, 122, 123, 124}));
}

TEST(PitchFile, FramesThatTheContourCannotHaveAreZero) {
  SoundDocument document;
  document.pitch.fill(7);
  ByteWriter out;
  ASSERT_TRUE(WritePitchRecord(out, document, 0, {kContourFrames - 1, kContourFrames + 1}));
  EXPECT_EQ(std::string(out.bytes().begin(), out.bytes().end()), Record(0, {7, 0, 0}));
  EXPECT_FALSE(WritePitchRecord(out, document, 0, {5, 4}));
}

TEST(PitchFile, BrokenRecordsEndTheReadingWhereTheyBegin) {
  const std::string good = Record(1600, {125, 0, 130});
  const auto with = [&](std::size_t at, const std::string& bytes) {
    std::string broken = good;
    return broken.replace(at, bytes.size(), bytes);
  };
  const struct {
    const char* why;
    std::string bytes;
    bool complete;
  } cases[] = {{"empty", "", true},
               {"three bytes are the end", "HEA", true},
               {"another tag", with(0, "HEAP"), false},
               {"no value: B/4 − 1 = 0", with(4, Little(7, 4)), false},
               {"a negative count", with(4, Little(0xFFFFFFF0u, 4)), false},
               {"the largest count", with(4, Little(0x7FFFFFFFu, 4)), false},
               {"one value more than there is", with(4, Little(20, 4)), false},
               {"cut in the values", good.substr(0, good.size() - 1), false},
               {"cut in the count", good.substr(0, 6), false},
               {"a count that is no multiple of four counts whole values", with(4, Little(19, 4)), true}};
  std::vector<PitchRecord> records;
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.bytes, records) == PitchFileEnd::Complete, c.complete) << c.why;
    EXPECT_EQ(Read(good + c.bytes, records) == PitchFileEnd::Complete, c.complete) << c.why;
    EXPECT_GE(records.size(), 1u) << c.why;  // what stands before is kept
    EXPECT_EQ(records[0].periods.size(), 3u) << c.why;
  }
}

TEST(PitchFile, TheListingIsThisText) {
  // 128 Hz and 64 Hz are 12 and 0 semitones; 16000/90 = 177.7, 12·log2(177/64) = 17.61; 100 is frame 0.
  EXPECT_EQ(PitchListing({16100, {125.0f, 250.0f, 0.0f, 90.0f}}, 2, 16000),
            "\r\n          第2段：T=1.00秒--1.03秒\r\n\r\n"
            "T(秒)    频率(Hz) 半音调    T(秒)    频率(Hz) 半音调 \r\n"
            "1.00     128      12.0      1.01     64       0.0   \r\n"
            "1.02     0        0.0       1.03     177      17.6  \r\n");
}

TEST(PitchFile, AnOddLastFrameHasNoLineEnd) {
  const std::string text = PitchListing({0, {125.0f, 125.0f, 125.0f}}, 1, 8000);
  EXPECT_TRUE(text.ends_with("0.0   \r\n0.02     64       0.0       ")) << text;
}

TEST(PitchFile, ValuesThatAreNoPeriodListAsZero) {
  for (const float value : {0.0f, -1.0f, std::bit_cast<float>(0x7FC00000u), std::bit_cast<float>(0x7F800000u),
                            0.4f, 1e-30f, 20000.0f})
    EXPECT_TRUE(PitchListing({0, {value}}, 1, 16000).ends_with("0.00     0        0.0       ")) << value;
  EXPECT_TRUE(PitchListing({0, {0.5f}}, 1, 16000).ends_with("0.00     32000    107.6     "));
}

TEST(PitchFile, ManyFramesAreListedAndTheirTimesDrift) {
  // From 100 s on, neighbouring values of single precision are 7.6e-6 s apart: 9000 steps of 0.01 miss 190.00
  // visibly.
  const std::string text = PitchListing({1600000, std::vector<float>(9001, 125.0f)}, 1, 16000);
  float time = 100;
  for (int i = 0; i < 9000; ++i) time += 0.01f;
  ASSERT_GT(std::fabs(time - 190.0f), 0.005f);
  char shown[16];
  std::snprintf(shown, sizeof shown, "%.2f ", static_cast<double>(time));
  EXPECT_EQ(text.substr(text.rfind("\r\n") + 2, std::strlen(shown)), shown);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4 + 4500);
}

}  // namespace
}  // namespace parlowen
