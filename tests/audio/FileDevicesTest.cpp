#include <gtest/gtest.h>

#include <fstream>

#include "audio/CaptureBlock.h"
#include "audio/Recorder.h"
#include "audio/file/FileLoudspeaker.h"
#include "audio/file/FileMicrophone.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Ramp;
using testing::ReadFile;
using testing::TempFolder;
using testing::WavBytes;
using testing::WriteFile;

/// A sample that tells its place, loud enough to be voice, and in every half block of mean 0.
std::int16_t LoudSample(std::int64_t i) {
  const auto level = static_cast<std::int16_t>(1000 + i / 2 * 7919 % 20000);
  return i % 2 == 0 ? level : static_cast<std::int16_t>(-level);
}

/// Writes a long mono sound in pieces.
std::string WriteLoudSound(const std::string& path, int count, std::uint32_t rate) {
  WavBytes wav;
  wav.rate = rate;
  wav.samples.clear();
  wav.dataSize = static_cast<std::uint32_t>(count) * 2;
  std::ofstream file(path, std::ios::binary);
  file << wav.Bytes();
  std::vector<std::int16_t> piece;
  for (int i = 0; i < count; ++i) {
    piece.push_back(LoudSample(i));
    if (piece.size() < 100000 && i + 1 < count) continue;
    file.write(reinterpret_cast<const char*>(piece.data()), static_cast<std::streamsize>(piece.size() * 2));
    piece.clear();
  }
  return path;
}

TEST(FileMicrophone, AnHourOfBlocksArrivesSampleForSample) {
  TempFolder folder;
  constexpr int kHour = 3600 * 8000;
  FileMicrophone microphone;
  ASSERT_EQ(microphone.Listen(WriteLoudSound(folder / "hour.wav", kHour, 8000)), "");
  std::array<std::array<std::int16_t, kBlockSamples>, 2> blocks;
  std::int64_t at = 0, wrong = 0;
  microphone.onFilled = [&](std::span<std::int16_t> block) {
    for (const std::int16_t sample : block) wrong += sample != (at < kHour ? LoudSample(at) : 0) ? 1 : 0, ++at;
    microphone.Queue(block);
  };
  microphone.Open(8000, 1);
  microphone.Queue(blocks[0]);
  microphone.Queue(blocks[1]);
  microphone.Start();
  while (microphone.DeliveredSilent() < 2) ASSERT_TRUE(microphone.Deliver());
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(microphone.Delivered(), 13091 + 2) << "28800000/2200, rounded up";

  // The recorder takes of that hour what the document holds.
  testing::FakeWindow window;
  CommandStates states;
  SoundDocument document;
  document.resetForNewSound(0, 8000, states);
  RecorderSettings settings;
  settings.recordGain = 1.0f;
  Recorder recorder(&microphone, window, document, states, settings);
  ASSERT_EQ(recorder.startRecording(RecordingStop::ByHand), 0);
  while (recorder.running()) ASSERT_TRUE(microphone.Deliver());
  ASSERT_EQ(document.sampleCount, kMaxSamples / kBlockSamples * kBlockSamples);
  // The half blocks are not quite of mean 0, but the gain of 1 keeps everything else.
  for (int half = 0; half < document.sampleCount; half += kBlockSamples / 2) {
    std::int64_t sum = 0;
    for (int i = half; i < half + kBlockSamples / 2; ++i) sum += LoudSample(i);
    for (int i = half; i < half + kBlockSamples / 2; ++i) ASSERT_EQ(document.samples[i], LoudSample(i) - sum / (kBlockSamples / 2)) << i;
  }
}

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
