#include <gtest/gtest.h>

#include "audio/file/FileLoudspeaker.h"
#include "audio/file/FileMicrophone.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Ramp;
using testing::ReadFile;
using testing::TempFolder;
using testing::WavBytes;
using testing::WriteFile;

TEST(FileMicrophone, AMonoFileFeedsBothChannelsAndTheLeftOneOfTwoFeedsOne) {
  TempFolder folder;
  WavBytes mono, stereo;
  mono.samples = {1, 2, 3};
  stereo.samples = {10, -10, 20, -20};
  stereo.blockAlign = 4;
  WriteFile(folder / "mono.wav", mono.Bytes());
  WriteFile(folder / "stereo.wav", stereo.Bytes());
  const auto heard = [&](const char* name, int channels) {
    FileMicrophone microphone;
    EXPECT_EQ(microphone.Listen(folder / name), "");
    std::vector<std::int16_t> block(8, 99);
    microphone.Open(96000, channels);   // the rate is nobody's business
    microphone.Queue(block);
    EXPECT_FALSE(microphone.Deliver()) << "not started";
    microphone.Start();
    EXPECT_TRUE(microphone.Deliver());
    EXPECT_FALSE(microphone.Deliver()) << "nothing queued";
    return block;
  };
  using Block = std::vector<std::int16_t>;
  EXPECT_EQ(heard("mono.wav", 1), (Block{1, 2, 3, 0, 0, 0, 0, 0}));
  EXPECT_EQ(heard("mono.wav", 2), (Block{1, 1, 2, 2, 3, 3, 0, 0}));
  EXPECT_EQ(heard("stereo.wav", 1), (Block{10, 20, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(heard("stereo.wav", 2), (Block{10, -10, 20, -20, 0, 0, 0, 0}));
}

TEST(FileMicrophone, AFileThatIsNoSoundIsRefusedAndTheOldOneStays) {
  TempFolder folder;
  WavBytes bits;
  bits.bits = 8;
  FileMicrophone microphone;
  EXPECT_NE(microphone.Listen(folder / "none.wav"), "");
  EXPECT_FALSE(microphone.IsPresent());
  EXPECT_EQ(microphone.Listen(WriteFile(folder / "good.wav", WavBytes{}.Bytes())), "");
  EXPECT_NE(microphone.Listen(WriteFile(folder / "bits.wav", bits.Bytes())), "");
  EXPECT_NE(microphone.Listen(WriteFile(folder / "text.wav", std::string(100, 't'))), "");
  EXPECT_TRUE(microphone.IsPresent());
}

TEST(FileLoudspeaker, WritesOnePlayAfterTheOtherAtTheRateOfTheFirst) {
  TempFolder folder;
  FileLoudspeaker speaker;
  int done = 0;
  speaker.onDone = [&] { ++done; };
  const auto play = [&](const std::vector<std::int16_t>& samples, int rate, int blocks) {
    EXPECT_EQ(speaker.Open(rate), "");
    speaker.Prepare(samples);
    speaker.Write();
    for (int i = 0; i < blocks; ++i) EXPECT_TRUE(speaker.Deliver());
    const int position = speaker.Position();
    speaker.Reset();
    EXPECT_TRUE(speaker.Close());
    EXPECT_FALSE(speaker.Deliver());
    return position;
  };
  EXPECT_EQ(play(Ramp(10), 8000, 1), 10) << "to nowhere";
  EXPECT_TRUE(folder.Names().empty());
  speaker.WriteTo(folder / "a.wav");
  EXPECT_EQ(play(Ramp(2200), 16000, 1), 2200);
  EXPECT_EQ(done, 2);
  EXPECT_EQ(play(Ramp(5000, 2201), 8000, 1), 2200);   // stopped after its first block
  EXPECT_EQ(done, 2);
  WavBytes expected;
  expected.samples = Ramp(4400);
  EXPECT_EQ(ReadFile(folder / "a.wav"), expected.Bytes());
  speaker.WriteTo(folder / "b.wav");
  EXPECT_EQ(play(Ramp(5), 8000, 1), 5);
  expected.samples = Ramp(5);
  expected.rate = 8000;
  EXPECT_EQ(ReadFile(folder / "b.wav"), expected.Bytes());
  EXPECT_EQ(folder.Names().size(), 2u);

  speaker.WriteTo(folder / "none/c.wav");
  speaker.Open(8000);
  EXPECT_FALSE(speaker.Close()) << "cannot be written";
}

}  // namespace
}  // namespace parlowen
