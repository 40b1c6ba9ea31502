#include "annotation/IpaFile.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "document/WavFile.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using namespace testing;

std::string Record(std::string text, std::int32_t position) {
  text.resize(10);
  return std::string("IPA\0", 4) + text + Little(static_cast<std::uint32_t>(position), 4);
}

IpaRecords Read(const std::string& bytes) { return ReadIpaRecords(AsBytes(bytes)); }

/// What stands behind the header and the samples.
std::string Behind(const SoundDocument& document, const std::vector<Annotation>& annotations,
                   bool withPitch) {
  const auto bytes = IpaBytesOf(document, annotations, withPitch);
  return {bytes.begin() + 44 + 2 * document.sampleCount, bytes.end()};
}

class IpaFile : public ::testing::Test {
 protected:
  IpaFile() {
    document.sampleRate = 16000;
    document.sampleCount = 16000 + 159;  // 100 frames
    for (int i = 0; i < document.sampleCount; ++i)
      document.samples[i] = static_cast<std::int16_t>(i % 3000 - 1500);
  }
  SoundDocument document;
};

TEST_F(IpaFile, WithoutAnnotationsAndContourIsAPlainWavFile) {
  EXPECT_EQ(IpaBytesOf(document, {}, false), WavBytesOf(document, false));
  document.twoChannel = true;
  const auto bytes = IpaBytesOf(document, {}, false);
  EXPECT_EQ(bytes.size(), 44u + 2 * 16159) << "one channel of the two";
  EXPECT_EQ(bytes[32], 2);
}

TEST_F(IpaFile, HasItsRecordsInTheOrderTheyWereInserted) {
  const std::vector<Annotation> annotations = {{"tʂʰɿ", 700}, {"mɑ", 1}, {"妈 a", 700}};
  EXPECT_EQ(Behind(document, annotations, false),
            Record("t\xAA\xE4\xAA\xF4\xAA\xD4", 700) + Record("m\xAA\xA1", 1) + Record(ToGbk("妈 a"), 700));
  const IpaRecords records = Read(Behind(document, annotations, false));
  ASSERT_EQ(records.annotations.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(records.annotations[i].text, annotations[i].text);
    EXPECT_EQ(records.annotations[i].position, annotations[i].position);
  }
  EXPECT_FALSE(records.periods);
}

TEST_F(IpaFile, HasOneValueAFrameAndNoTwoMore) {
  for (std::size_t frame = 0; frame < 200; ++frame) document.pitch[frame] = static_cast<float>(frame) + 0.5f;
  const std::string behind = Behind(document, {{"a", 5}}, true);
  const std::vector<float> values(document.pitch.begin(), document.pitch.begin() + 100);
  EXPECT_EQ(behind, Record("a", 5) + PitchTail(values));
  EXPECT_EQ(Read(behind).periods, values);
  // The longest sound at a low rate has more frames than a contour.
  document.sampleRate = 1000;
  document.sampleCount = 200000;
  EXPECT_EQ(Behind(document, {}, true).size(), 6u + 4 * 12498);
}

TEST_F(IpaFile, TextsAreCutAtTheEndOfACharacter) {
  // 9 bytes of 10: the fifth hanzi does not fit, nor the end of a record whose text has no end of its own.
  EXPECT_EQ(Behind(document, {{"一二三四五", 0}}, false), Record(ToGbk("一二三四"), 0));
  EXPECT_EQ(Behind(document, {{"123456789", 0}}, false), Record("123456789", 0));
  EXPECT_EQ(Read(Record("123456789A", 3)).annotations[0].text, "123456789");
  EXPECT_EQ(Read(Record(ToGbk("一二三四五"), 3)).annotations[0].text, "一二三四");
  EXPECT_EQ(Read(Record(std::string("ab\0cd", 5), 3)).annotations[0].text, "ab")
      << "what stands behind the NUL is no text";
  // A user-defined code that has no symbol here goes through as it is.
  EXPECT_EQ(Behind(document, Read(Record("\xAB\xA1x", 0)).annotations, false), Record("\xAB\xA1x", 0));
}

TEST_F(IpaFile, ReadingEndsWhereTheRecordsAreNotWhole) {
  const std::string one = Record("a", 1), two = Record("b", 2);
  const struct {
    const char* what;
    std::string bytes;
    std::size_t annotations;
    std::optional<std::size_t> periods;
  } cases[] = {
      {"nothing", "", 0, {}},
      {"a tag alone", one + "IPA", 1, {}},
      {"an unknown tag", one + std::string("IPB\0", 4) + two, 1, {}},
      {"a tag without its zero", one + "IPA " + two.substr(4), 1, {}},
      {"the last byte is missing", one + two.substr(0, 17), 1, {}},
      {"a block in the middle", one + PitchTail({1, 2, 3}) + two, 2, 3},
      {"an empty block", PitchTail({}) + one, 1, 0},
      {"a count without bytes", one + std::string("PCH\0", 4) + "\x01", 1, {}},
      {"one value is missing", one + PitchTail({1, 2, 3}, 4), 1, {}},
      {"a negative count", PitchTail({1, 2, 3}, 0xFFFF) + two, 0, {}},
      {"more values than a contour has", PitchTail(std::vector<float>(12501, 7.0f)) + one, 1, 12500},
      {"the last block counts", PitchTail({1, 2}) + PitchTail({1, 2, 3}), 0, 3},
  };
  for (const auto& c : cases) {
    const IpaRecords records = Read(c.bytes);
    EXPECT_EQ(records.annotations.size(), c.annotations) << c.what;
    EXPECT_EQ(records.periods.has_value(), c.periods.has_value()) << c.what;
    EXPECT_EQ(records.periods.value_or(std::vector<float>()).size(), c.periods.value_or(0)) << c.what;
  }
}

TEST_F(IpaFile, TakesThe500thAnnotationAndNotThe501st) {
  std::string bytes;
  for (int i = 0; i < 500; ++i) bytes += Record("a", i);
  EXPECT_EQ(Read(bytes).annotations.size(), 500u);
  EXPECT_FALSE(Read(bytes).tooMany);
  bytes += Record("a", 500) + PitchTail({9});
  EXPECT_EQ(Read(bytes).annotations.back().position, 499);
  EXPECT_TRUE(Read(bytes).tooMany);
  EXPECT_TRUE(Read(bytes).periods) << "what follows is still read";
}

}  // namespace
}  // namespace parlowen
