#include "audio/Recorder.h"

#include <gtest/gtest.h>

#include <functional>

#include "audio/FakeDevices.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr int kLoud = 1000, kQuiet = 50;

struct Booth {
  testing::FakeWindow window;
  CommandStates states;
  SoundDocument document;
  RecorderSettings settings;
  testing::TempFolder folder;
  testing::FakeMicrophone microphone;
  Recorder recorder{&microphone, window, document, states, settings};

  explicit Booth(int rate = 16000) {
    settings.recordGain = 1.0f;
    document.samples[0] = 77;
    document.resetForNewSound(1, rate, states);
    document.filePath = "/old/sound1.wav";
  }
  void Feed(int count, int amplitude, int channels = 1) {
    for (int i = 0; i < count; ++i) ASSERT_TRUE(microphone.Fill(Square(amplitude, channels)));
  }
  /// The amplitudes of the recorded blocks.
  std::vector<int> Kept(int channels = 1) const {
    std::vector<int> amplitudes;
    for (int i = 0; i < document.sampleCount; i += kBlockSamples / channels)
      amplitudes.push_back(document.samples[i]);
    return amplitudes;
  }
  /// Stops by hand; the block that comes then is dropped.
  void Stop() {
    recorder.stopRecording();
    Feed(1, 9999);
  }
};

TEST(Recorder, OneClickDoesNotStartTwoVoicedBlocksDoAndTheBlockBeforeIsKept) {
  Booth booth;
  ASSERT_EQ(booth.recorder.startRecording(RecordingStop::AfterSilence), 0);
  booth.Feed(1, kLoud);
  booth.Feed(1, 10);
  booth.Feed(1, kLoud);  // clicks
  booth.Feed(1, 11);
  EXPECT_FALSE(booth.recorder.keeping());
  EXPECT_EQ(booth.document.samples[0], 77) << "the old sound is still there";
  EXPECT_EQ(booth.document.filePath, "/old/sound1.wav");
  booth.Feed(1, 500);
  booth.Feed(1, 501);
  EXPECT_TRUE(booth.recorder.keeping());
  EXPECT_EQ(booth.document.sampleCount, 3 * kBlockSamples);
  booth.Feed(1, 12);
  booth.Stop();
  EXPECT_EQ(booth.Kept(), (std::vector<int>{11, 500, 501, 12}));
  EXPECT_FALSE(booth.microphone.open);
}

TEST(Recorder, SilenceEndsItAfterTheLimitOfTheRate) {
  const struct {
    int rate, channels, limit, trimmed;  // channels·rate/1900 blocks; samples cut off
  } cases[] = {{8000, 1, 4, 4400}, {11025, 1, 5, 5500},  {16000, 1, 8, 12100},  {22050, 1, 11, 5500},
               {8000, 2, 8, 4400}, {11025, 2, 11, 5500}, {16000, 2, 16, 12100}, {22050, 2, 23, 5500}};
  for (const auto& c : cases) {
    Booth booth(c.rate);
    booth.recorder.startRecording(RecordingStop::AfterSilence, c.channels);
    EXPECT_EQ(booth.microphone.channels, c.channels);
    booth.Feed(10, kLoud, c.channels);
    booth.Feed(c.limit - 1, kQuiet, c.channels);
    booth.Feed(1, 121, c.channels);  // one voiced block starts the count again
    booth.Feed(c.limit, kQuiet, c.channels);
    EXPECT_TRUE(booth.recorder.running());
    booth.Feed(1, kLoud, c.channels);  // the block that ends it is dropped, whatever it holds
    EXPECT_FALSE(booth.recorder.running()) << c.rate;
    // The block that reached the limit was not appended.
    const int frames = kBlockSamples / c.channels;
    EXPECT_EQ(booth.document.sampleCount, (10 + 2 * (c.limit - 1) + 1) * frames - c.trimmed)
        << c.rate << ' ' << c.channels;
    EXPECT_EQ(booth.document.samples[booth.document.sampleCount], 0) << "what was cut off is silent";
    EXPECT_EQ(booth.document.twoChannel, c.channels == 2);
  }
}

TEST(Recorder, TheStopAtTheCapacityKeepsAllThatWasRecorded) {
  for (const int channels : {1, 2}) {
    Booth booth;
    const int frames = kBlockSamples / channels, whole = kMaxSamples / frames;
    booth.recorder.startRecording(RecordingStop::ByHand, channels);
    for (int i = 0; i < whole; ++i) booth.Feed(1, 200 + i, channels);
    EXPECT_EQ(booth.recorder.recorded(), whole * frames);
    booth.Feed(1, 5000, channels);  // does not fit: the stop
    EXPECT_TRUE(booth.recorder.running());
    booth.Feed(1, 5000, channels);
    EXPECT_FALSE(booth.recorder.running());
    ASSERT_EQ(booth.document.sampleCount, whole * frames);
    const auto kept = booth.Kept(channels);
    for (int i = 0; i < whole; ++i) ASSERT_EQ(kept[static_cast<std::size_t>(i)], 200 + i);
    EXPECT_EQ(booth.document.samples[whole * frames], 0);
  }
}

TEST(Recorder, EveryFailureHasItsTextAndLeavesTheDocument) {
  const struct {
    const char *failAt, *shown;
  } cases[] = {{"present", "none|Error| Error Getting Wave_In_Dev_Caps!"},
               {"open", "none|Error| Error Opening Wave_In_Device!"},
               {"prepare", "none|Error| Error in waveIn PrepareHeader!"},
               {"queue", "none|Parlowen(Tessiran)| Error in waveIn Add Buffer"},
               {"start", "none|Error| Error in Start_Recording"}};
  for (const auto& c : cases) {
    Booth booth(44100);
    booth.microphone.failAt = c.failAt;
    EXPECT_EQ(booth.recorder.startRecording(RecordingStop::AfterSilence), -1);
    EXPECT_EQ(booth.window.Log(), Texts{c.shown});
    EXPECT_FALSE(booth.recorder.running());
    EXPECT_FALSE(booth.microphone.open);
    EXPECT_EQ(booth.document.sampleRate, 44100);
    EXPECT_EQ(booth.document.samples[0], 77);
    EXPECT_FALSE(booth.states.Holds(Need::Recording));
    EXPECT_EQ(booth.recorder.runGainTest(booth.folder / "Thrsh.dat"), -1);
    EXPECT_EQ(booth.window.Log(), Texts{c.shown});
  }
  Booth booth;
  Recorder none(nullptr, booth.window, booth.document, booth.states, booth.settings);
  EXPECT_EQ(none.startRecording(RecordingStop::ByHand), -1);
  EXPECT_EQ(booth.window.Log(), Texts{cases[0].shown});
}

TEST(Recorder, ADeviceThatVanishesLosesNothing) {
  const auto gone = [](Booth& booth) { booth.microphone.onLost(InputLoss::Gone); };
  const auto refused = [](Booth& booth) { booth.microphone.onLost(InputLoss::NotOpened); };
  const auto full = [](Booth& booth) {
    booth.microphone.failAt = "queue";
    booth.Feed(1, kLoud);
  };
  const struct {
    std::function<void(Booth&)> happens;
    int before, kept;  // blocks; 0: the old sound of one sample
    const char* shown;
  } cases[] = {
      {gone, 4, 4,
       "none|Parlowen(Tessiran)|录音设备已断开或没有响应，录音到此结束。\n已录下的 0.55 秒声音都在"},
      {gone, 2, 0, "none|Parlowen(Tessiran)|录音设备已断开或没有响应，录音没有开始。\n原来的声音没有改变"},
      {full, 4, 5, "none|Parlowen(Tessiran)| Error in waveIn Add Buffer"},
      {full, 0, 0, "none|Parlowen(Tessiran)| Error in waveIn Add Buffer"},
      {refused, 0, 0, "none|Error| Error Opening Wave_In_Device!"}};
  for (const auto& c : cases) {
    Booth booth;
    booth.recorder.startRecording(RecordingStop::ByHand);
    booth.Feed(c.before, kLoud);
    booth.window.Log();
    c.happens(booth);
    EXPECT_FALSE(booth.recorder.running() || booth.microphone.open);
    EXPECT_EQ(booth.document.sampleCount, c.kept > 0 ? c.kept * kBlockSamples : 1);
    EXPECT_EQ(booth.document.samples[0], c.kept > 0 ? kLoud : 77);
    EXPECT_EQ(booth.document.filePath, c.kept > 0 ? "" : "/old/sound1.wav");
    EXPECT_EQ(booth.window.Log().back().rfind(c.shown, 0), 0u) << c.shown;
    EXPECT_TRUE(booth.states.Holds(Need::Sound)) << "it can be saved";
  }
}

TEST(GainTestRun, ATestWhoseDeviceBreaksSetsNothing) {
  Booth booth(11025);
  booth.recorder.runGainTest(booth.folder / "Thrsh.dat");
  booth.Feed(12, 200);
  booth.microphone.onLost(InputLoss::Gone);
  const Texts shown = booth.window.Log();
  EXPECT_EQ(shown[1], "status|增益测试已停止，增益和阈值不变");
  EXPECT_EQ(shown.size(), 3u) << "what failed is said in a box";
  EXPECT_EQ(booth.settings.voiceThreshold, 120);
  EXPECT_EQ(ReadFile(booth.folder / "Thrsh.dat"), "");
  EXPECT_FALSE(booth.recorder.running() || booth.recorder.listensOnly());
}

TEST(GainTestRun, ATestThatItsUserEndsCountsTheRestAsSilence) {
  Booth booth(11025);
  booth.recorder.runGainTest(booth.folder / "Thrsh.dat");
  booth.Feed(12, 200);
  booth.Stop();
  // Blocks 1..19 count, 11 of them with 2·200: M = 4400/19 = 231, s = √(231/60).
  EXPECT_EQ(booth.window.Log().back(), "status|Gain, Thr=1.02, 235");
}

TEST(GainTestRun, AdaptsToTheRoomAndLeavesTheDocument) {
  const struct {
    int amplitude;  // level1 + level2 = twice this
    Texts shown;
    std::string file;
  } cases[] = {
      {0, {"status|Testing finished,      OK!", "none|Parlowen(Tessiran)|录音增益太低，必须手工调高！"}, ""},
      // s = √(2/60) = 0.1826: 10.954, 21
      {1,
       {"status|Testing finished,      OK!", "status|Gain, Thr=10.95, 21"},
       Little(0x412F456F, 4) + Little(21, 2)},
      {30,
       {"status|Testing finished,      OK!", "status|Gain, Thr=2.00, 120"},
       Little(0x40000000, 4) + Little(120, 2)},
      // s = √(400/60) = 2.582: 0.7746, 309
      {200,
       {"status|Testing finished,      OK!", "status|Gain, Thr=0.77, 309"},
       Little(0x3F464BF8, 4) + Little(309, 2)},
      {201,
       {"status|Testing finished,      OK!", "none|Parlowen(Tessiran)|录音增益太高，必须手工调低！"},
       ""},
  };
  for (const auto& c : cases) {
    Booth booth(44100);
    ASSERT_EQ(booth.recorder.runGainTest(booth.folder / "Thrsh.dat"), 0);
    EXPECT_EQ(booth.window.Log(), Texts{"status|Please keep silence, Testing ......"});
    booth.Feed(1, 30000);  // the click of the start
    booth.Feed(20, c.amplitude);
    EXPECT_TRUE(booth.recorder.running());
    EXPECT_TRUE(booth.window.log.empty());
    booth.Feed(1, 30000);
    EXPECT_EQ(booth.window.Log(), c.shown);
    EXPECT_EQ(ReadFile(booth.folder / "Thrsh.dat"), c.file);
    EXPECT_EQ(booth.settings.recordGain, c.file.empty() ? 1.0f : booth.settings.recordGain);
    EXPECT_EQ(booth.document.samples[0], 77);
    EXPECT_EQ(booth.document.sampleRate, 44100);
    EXPECT_FALSE(booth.states.Holds(Need::Recording));
  }
}

TEST(GainTestRun, TheSettingsHoldEvenWhereTheFileCannotBeWritten) {
  Booth booth(11025);
  booth.recorder.runGainTest(booth.folder / "none/Thrsh.dat");
  booth.Feed(22, 30);
  EXPECT_EQ(booth.settings.voiceThreshold, 120);
  EXPECT_EQ(booth.settings.recordGain, 2.0f);
  const Texts shown = booth.window.Log();
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "error|Parlowen(Tessiran)|文件打开错误"), 1);
}

}  // namespace
}  // namespace parlowen
