// Good files with a few bytes changed, cut or doubled, from a fixed seed. Whatever comes out of the readers
// keeps its bounds; what they read past its end is found by the sanitizers.

#include <gtest/gtest.h>

#include <random>

#include "document/SoundDocument.h"
#include "palatography/NspBytes.h"
#include "palatography/NspFile.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr int kRounds = 20000;

class Mutator {
 public:
  std::string operator()(std::string file) {
    for (int count = 1 + Below(4); count > 0 && !file.empty(); --count) {
      const std::size_t at = static_cast<std::size_t>(Below(static_cast<int>(file.size())));
      switch (Below(5)) {
        case 0: file[at] = static_cast<char>(Below(256)); break;
        case 1: file[at] = static_cast<char>(file[at] ^ (1 << Below(8))); break;
        case 2: file.resize(at); break;
        case 3: file.insert(at, file.substr(at, static_cast<std::size_t>(Below(40)))); break;
        default: PutExtremeWord(file, at); break;
      }
    }
    return file;
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  /// Lengths stand at multiples of two.
  void PutExtremeWord(std::string& file, std::size_t at) {
    constexpr std::uint32_t kWords[] = {0,   1,   2,          3,          4,          391,
                                        392, 393, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    const std::string word = Little(kWords[Below(12)], 4);
    at -= at % 2;
    if (at + 4 <= file.size()) file.replace(at, 4, word);
  }
  std::mt19937 random_{16};
};

TEST(NspMutation, TwoChannelFilesKeepTheirBounds) {
  NspBytes file;
  file.chunks = std::string("JUNK") + Speech("SDA_", Ramp(30)) + Speech("SD_B", Ramp(30));
  const std::string good = file.TwoChannel();
  Mutator mutate;
  int read = 0;
  for (int i = 0; i < kRounds; ++i) {
    const std::string bad = mutate(good);
    TwoChannelNsp recording;
    if (ParseTwoChannelNsp(AsBytes(bad), recording) != NspRefusal::None) continue;
    ++read;
    const auto count = static_cast<std::size_t>(recording.sampleCount);
    ASSERT_TRUE(recording.hasFirst || recording.hasSecond);
    ASSERT_TRUE(recording.first.size() <= count && recording.second.size() <= count);
    ASSERT_LE(count * 2, bad.size());
    ASSERT_TRUE(recording.sampleRate >= kSmallestRate && recording.sampleRate <= 32000);
  }
  EXPECT_GT(read, kRounds / 20)
      << "most of the files are refused at once: the changes are too coarse to test anything";
}

TEST(NspMutation, EpgFilesKeepTheirBounds) {
  NspBytes file;
  file.chunks = Speech("SDA_", Ramp(30)) + Preferences() + Chunk("PALA", std::string(65, 'x')) +
                Marker("MKA_", 7, "t1x") + Chunk("ODD_", "abc") + Speech("SD_B", Ramp(20)) +
                Marker("MK_B", 3, "u");
  const std::string good = file.Epg(30);
  Mutator mutate;
  int read = 0;
  for (int i = 0; i < kRounds; ++i) {
    const std::string bad = mutate(good);
    EpgRecording recording;
    if (ParseEpgNsp(AsBytes(bad), recording) != NspRefusal::None) continue;
    ++read;
    ASSERT_LE(recording.samples.size(), static_cast<std::size_t>(recording.sampleCount));
    ASSERT_LE(recording.sampleCount, kMaxSamples);
    ASSERT_LE(recording.samples.size() * 2 + recording.palate.size(), bad.size());
    for (const EpgMarker& marker : recording.markers)
      ASSERT_TRUE(marker.position >= 0 && marker.position <= recording.sampleCount);
  }
  EXPECT_GT(read, kRounds / 20);
}

}  // namespace
}  // namespace parlowen
