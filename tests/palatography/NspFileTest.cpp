#include "palatography/NspFile.h"

#include <gtest/gtest.h>

#include "palatography/NspBytes.h"

namespace parlowen {
namespace {

using namespace testing;
using Samples = std::vector<std::int16_t>;

const Samples kA = {1, -2, 3, -32768, 5}, kB = {-10, 20, -30, 32767, -50};

TwoChannelNsp TwoChannel(const NspBytes& file) {
  TwoChannelNsp recording;
  EXPECT_EQ(ParseTwoChannelNsp(AsBytes(file.TwoChannel()), recording), NspRefusal::None);
  return recording;
}
TwoChannelNsp TwoChannel(const std::string& chunks) {
  NspBytes file;
  file.chunks = chunks;
  return TwoChannel(file);
}

EpgRecording Epg(const std::string& chunks, std::uint32_t announced = 5) {
  NspBytes file;
  file.chunks = chunks;
  EpgRecording recording;
  EXPECT_EQ(ParseEpgNsp(AsBytes(file.Epg(announced)), recording), NspRefusal::None);
  return recording;
}

TEST(TwoChannelNsp, TheLastChunkTellsTheLength) {
  const TwoChannelNsp shorter = TwoChannel(Speech("SDA_", kA) + Speech("SD_B", {7, 8}));
  EXPECT_EQ(shorter.sampleCount, 2);
  EXPECT_EQ(shorter.first, (Samples{1, -2}));
  const TwoChannelNsp again = TwoChannel(Speech("SDA_", {9, 9}) + Speech("SDA_", kA));
  EXPECT_EQ(again.first, kA);
  EXPECT_FALSE(again.hasSecond);
}

TEST(TwoChannelNsp, UnknownMaterialIsScannedFourBytesAtATime) {
  // Whole words in front are passed; a chunk that begins between two words is never seen.
  EXPECT_TRUE(TwoChannel("JUNKJUNKJUNK" + Speech("SDA_", kA)).hasFirst);
  EXPECT_FALSE(TwoChannel("JUNKJU" + Speech("SDA_", kA) + Speech("SD_B", kB)).hasFirst);
  // A length of an unknown chunk is no length: its body is searched for ids.
  EXPECT_TRUE(TwoChannel(Chunk("PREF", Speech("SD_B", kB))).hasSecond);
  // An odd chunk has no pad byte.
  EXPECT_EQ(TwoChannel(Chunk("SDA_", "abc", false) + Speech("SD_B", kB)).second, kB);
}

TEST(TwoChannelNsp, TheFormLengthBoundsTheReading) {
  // Behind the 120 bytes: 4 (id) + 4 + 10 (first chunk), then 4 for the next id, which must leave at least 1.
  NspBytes file;
  file.chunks = Speech("SDA_", kA) + Speech("SD_B", kB);
  file.formLength = 108 + 18 + 4;
  EXPECT_FALSE(TwoChannel(file).hasSecond);
  file.formLength = 108 + 18 + 5;
  EXPECT_TRUE(TwoChannel(file).hasSecond);
  // A second channel of another size is counted with the size of the first: here 4 + 2 instead of 4 + 10.
  file.chunks = Speech("SDA_", {1}) + Speech("SD_B", kB) + Speech("SDA_", {2, 3});
  file.formLength = 108 + (4 + 4 + 2) + (4 + 4 + 2) + 5;
  EXPECT_EQ(TwoChannel(file).sampleCount, 2);
  file.formLength = *file.formLength - 1;
  EXPECT_EQ(TwoChannel(file).sampleCount, 5);
  file.formLength = 0xFFFFFFFF;
  EXPECT_EQ(TwoChannel(file).sampleCount, 2);
}

TEST(TwoChannelNsp, LengthsAreHeldAgainstTheFile) {
  NspBytes file;
  file.chunks = Chunk("SDA_", SampleBytes(kA), false, 0xFFFFFFFF);
  file.formLength = 0xFFFFFFFF;
  EXPECT_EQ(TwoChannel(file).first, kA);
  file.chunks = Speech("SDA_", kA) + "SD_B\x0A";  // the length itself is cut off
  EXPECT_FALSE(TwoChannel(file).hasSecond);
  // The capacity less a fifth of a second: 1572864·100/32000 = 4915, (4915 − 20)·320.
  EXPECT_EQ(NspSampleLimit(32000), 1566400);
  EXPECT_EQ(NspSampleLimit(11025), (14266 - 20) * 11025 / 100);
  file = NspBytes{.formLength = {},
                  .headerLength = {},
                  .rate = 32000,
                  .chunks = Speech("SDA_", Samples(1566401, 3)) + Speech("SD_B", Samples(1566402, 4))};
  const TwoChannelNsp large = TwoChannel(file);
  EXPECT_EQ(large.sampleCount, 1566400);
  EXPECT_EQ(large.second.size(), 1566400u) << "the next chunk begins behind the whole of the one before";
}

TEST(EpgNsp, ReadsEveryPart) {
  const EpgRecording read =
      Epg(Speech("SDA_", kA) + Preferences('q') + Chunk("PALA", "contact") + Marker("MKA_", 2, "t1") +
          Marker("MK_B", 3, "other") + Marker("MKA_", 5, "\xB0\xA1"));
  EXPECT_EQ(read.samples, kA);
  EXPECT_EQ(read.channel, 'A');
  EXPECT_EQ(read.sampleRate, 16000);
  EXPECT_EQ(read.maximumA, 1234);
  EXPECT_EQ(read.maximumB, -32768);
  EXPECT_TRUE(read.hasPreferences && read.hasPalate);
  EXPECT_EQ(read.preferences, ([] {
              std::array<std::uint8_t, 392> a{};
              a.fill('q');
              return a;
            })());
  EXPECT_EQ(std::string(read.palate.begin(), read.palate.end()), "contact");
  ASSERT_EQ(read.markers.size(), 2u);
  EXPECT_EQ(read.markers[0].position, 2);
  EXPECT_EQ(read.markers[0].label, "t1");
  EXPECT_EQ(read.markers[1].position, 5);
  EXPECT_EQ(read.markers[1].label, "啊");
}

TEST(EpgNsp, TheFirstSpeechChunkCounts) {
  const std::string markers = Marker("MKA_", 1, "a") + Marker("MK_B", 1, "b");
  const EpgRecording second = Epg(markers + Speech("SD_B", kB) + Speech("SDA_", kA) + Preferences());
  EXPECT_EQ(second.samples, kB);
  EXPECT_EQ(second.channel, 'B');
  ASSERT_EQ(second.markers.size(), 1u) << "the markers of the channel that was read";
  EXPECT_EQ(second.markers[0].label, "b");
  EXPECT_TRUE(second.hasPreferences);
  EXPECT_FALSE(second.hasPalate);
}

TEST(EpgNsp, TheHeaderAnnouncesTheSamples) {
  EXPECT_EQ(Epg(Speech("SDA_", kA), 3).samples, (Samples{1, -2, 3}));
  const EpgRecording longer = Epg(Speech("SDA_", kA) + Marker("MKA_", 40000, "late"), 50000);
  EXPECT_EQ(longer.samples, kA);
  EXPECT_EQ(longer.sampleCount, 50000) << "the rest is silence";
  EXPECT_EQ(longer.markers.size(), 1u);
  EXPECT_EQ(Epg(Speech("SDA_", kA), 0xFFFFFFFF).sampleCount, NspSampleLimit(16000));
  EXPECT_EQ(Epg(Speech("SDA_", kA), 0).sampleCount, 0);
}

TEST(EpgNsp, OddChunksArePaddedButSpeechIsNot) {
  for (const char* id : {"JUNK", "PALA", "MKA_"}) {
    SCOPED_TRACE(id);
    EXPECT_TRUE(Epg(Speech("SDA_", kA) + Chunk(id, "seven b") + Preferences()).hasPreferences);
    EXPECT_FALSE(Epg(Speech("SDA_", kA) + Chunk(id, "seven b", false) + Preferences()).hasPreferences);
  }
  EXPECT_TRUE(Epg(Chunk("SDA_", "abcde", false) + Preferences()).hasPreferences);
  EXPECT_TRUE(
      Epg(Chunk("SDA_", "abcd", false) + Chunk("SD_B", "abcde", false) + Preferences()).hasPreferences);
  EXPECT_EQ(Epg(Speech("SDA_", kA) + Chunk("PALA", "abc", false)).palate.size(), 3u)
      << "the last pad byte may be missing";
}

TEST(EpgNsp, LengthsAreHeldAgainstTheFile) {
  const std::string speech = Speech("SDA_", kA);
  EXPECT_FALSE(Epg(speech + Chunk("PALA", "abc", false, 0xFFFFFFFF) + Preferences()).hasPalate);
  EXPECT_FALSE(Epg(speech + Preferences().substr(0, 399)).hasPreferences);
  EXPECT_EQ(Epg(Chunk("SDA_", SampleBytes(kA), false, 0xFFFFFFFF)).samples, kA);
  EXPECT_TRUE(Epg(speech + Chunk("MKA_", "abc") + Marker("MKA_", 6, "behind the end") +
                  Marker("MKA_", 0xFFFFFFFF, ""))
                  .markers.empty());
  const EpgRecording long1 =
      Epg(speech + Marker("MKA_", 0, std::string(300, 'x')) + Marker("MKA_", 1, std::string("a\0b", 3)));
  EXPECT_EQ(long1.markers.at(0).label.size(), 255u);
  EXPECT_EQ(long1.markers.at(1).label, "a");
  std::string many = speech;
  for (int i = 0; i < 5000; ++i) many += Marker("MKA_", 1, "");
  EXPECT_EQ(Epg(many).markers.size(), 4096u);
}

}  // namespace
}  // namespace parlowen
