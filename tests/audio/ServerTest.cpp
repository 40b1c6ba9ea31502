// The desktop's window and its devices against a sound server. real_server_test.sh starts one with a null
// sink "room" and a source "mic" that hears it, and runs these tests; "Nowhere" is run without any server.

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <cmath>

#include "audio/qt/QtLoudspeaker.h"
#include "audio/qt/QtMicrophone.h"
#include "shell/qt/LevelMeter.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

constexpr const char* kSound = PARLOWEN_SOURCE_DIR "/sounds/english_male_sentence_16000.wav";
constexpr int kPlayed = 56000;  // samples of it: 3.5 s

/// A window with devices, as the desktop program makes it.
struct Desktop {
  explicit Desktop(const QString& settings) : preferences(settings) {
    window.resize(1024, 720);
    window.show();
    window.Station().recorder.recordGain = 1.0f;
  }
  Workstation& Station() { return window.Station(); }
  SoundDocument& Document() { return Station().document; }

  Preferences preferences;
  QtLoudspeaker loudspeaker;
  QtMicrophone microphone;
  MainWindow window{"", preferences, {&loudspeaker, &microphone}};
};

class SoundServer : public testing::Test {
 protected:
  QString Settings(const char* name) { return folder.filePath(name); }
  static bool Wait(const std::function<bool()>& done, int milliseconds) {
    return QTest::qWaitFor(done, milliseconds);
  }

  /// Runs pactl; what it prints.
  static QString Pactl(const QStringList& arguments) {
    QProcess process;
    process.start("pactl", arguments);
    EXPECT_TRUE(process.waitForFinished(5000)) << "pactl";
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().trimmed();
  }
  /// The room and its microphone come and go. A server without another device ends what runs there.
  static void LeaveRoom() {
    Pactl({"unload-module", "module-remap-source"});
    Pactl({"unload-module", "module-null-sink"});
  }
  static void EnterRoom() {
    Pactl({"load-module", "module-null-sink", "sink_name=room", "rate=16000"});
    Pactl({"load-module", "module-remap-source", "source_name=mic", "master=room.monitor"});
    Pactl({"set-default-sink", "room"});
    Pactl({"set-default-source", "mic"});
  }

  QTemporaryDir folder;
};

/// Correlation of a recorded stretch with the sound at an offset.
double Correlation(const SampleBuffer& a, int offset, const SampleBuffer& b, int first, int count) {
  double ab = 0, aa = 0, bb = 0;
  for (int i = 0; i < count; ++i) {
    const double x = a[offset + first + i], y = b[first + i];
    ab += x * y;
    aa += x * x;
    bb += y * y;
  }
  return ab / std::sqrt(aa * bb + 1);
}

TEST_F(SoundServer, ARecordingIsPlayedAndRecordedBack) {
  Desktop player(Settings("a.ini")), recorder(Settings("b.ini"));
  player.window.OpenFile(kSound);
  player.Station().Select(0, kPlayed);
  recorder.Document().sampleRate = 16000;
  ASSERT_TRUE(recorder.Station().states.IsEnabled(272)) << "there is a microphone";
  ASSERT_TRUE(recorder.window.Dispatch(272));
  ASSERT_TRUE(recorder.Station().recording.running());
  EXPECT_TRUE(Wait([&] { return recorder.Station().recording.blocks() > 2; }, 5000)) << "no block arrives";
  EXPECT_FALSE(recorder.window.Meter().isHidden());

  ASSERT_TRUE(player.window.Dispatch(160));
  ASSERT_TRUE(Wait([&] { return !player.Station().player.playing(); }, 20000)) << "the play does not end";
  ASSERT_TRUE(Wait([&] { return !recorder.Station().recording.running(); }, 10000))
      << "silence does not end the recording";
  EXPECT_TRUE(Wait([&] { return recorder.window.Meter().isHidden(); }, 1000));

  const SoundDocument &sound = player.Document(), &heard = recorder.Document();
  EXPECT_EQ(heard.sampleRate, 16000);
  // The recorder waits for two voiced blocks and cuts 12100 samples off the trailing silence.
  ASSERT_GT(heard.sampleCount, kPlayed / 2);
  int best = 0;
  double correlation = -1;
  const int middle = heard.sampleCount / 2;
  for (int offset = 0; offset + middle + 4000 < kPlayed; ++offset) {
    const double c = Correlation(sound.samples, offset, heard.samples, middle, 4000);
    if (c > correlation) correlation = c, best = offset;
  }
  EXPECT_GT(correlation, 0.9) << "the recorder takes the mean of every half block away";

  // Block for block what the recorder makes of the sound there: not a sample is lost, doubled or changed on
  // the way.
  int wrong = 0;
  for (int start = 0; start + kBlockSamples <= heard.sampleCount; start += kBlockSamples) {
    std::vector<std::int16_t> block(kBlockSamples);
    for (int i = 0; i < kBlockSamples; ++i)
      block[static_cast<std::size_t>(i)] = SampleSpan{sound.samples.data(), kPlayed}.At(best + start + i);
    ConditionBlock(block, 1, 1.0f);
    for (int i = 0; i < kBlockSamples; ++i)
      wrong += heard.samples[start + i] != block[static_cast<std::size_t>(i)] ? 1 : 0;
  }
  std::printf("recorded %d samples from sample %d on; %d differ\n", heard.sampleCount, best, wrong);
  EXPECT_EQ(wrong, 0);
}

TEST_F(SoundServer, ALoudspeakerThatVanishesEndsThePlay) {
  {
    Desktop desktop(Settings("a.ini"));
    desktop.window.OpenFile(kSound);
    QTest::qWait(300);
    desktop.window.Dispatch(40023);
    QTest::qWait(500);
    BoxWatcher watcher("确定");
    LeaveRoom();
    EXPECT_TRUE(Wait([&] { return !desktop.Station().player.playing(); }, 10000)) << "hangs";
    std::printf("shown: %s\n", watcher.texts.join(" | ").toUtf8().constData());
    EXPECT_TRUE(desktop.Station().states.IsEnabled(40023));
  }
  EnterRoom();
}

TEST_F(SoundServer, AMicrophoneThatVanishesLeavesWhatWasRecorded) {
  {
    Desktop desktop(Settings("a.ini"));
    desktop.Document().sampleRate = 16000;
    desktop.Station().recorder.voiceThreshold = -1;  // silence is voice enough
    QTest::qWait(300);
    ASSERT_TRUE(desktop.window.Dispatch(40022));
    ASSERT_TRUE(Wait([&] { return desktop.Station().recording.recorded() > 8000; }, 10000));
    BoxWatcher watcher("确定");
    LeaveRoom();
    EXPECT_TRUE(Wait([&] { return !desktop.Station().recording.running(); }, 10000)) << "hangs";
    QTest::qWait(200);
    std::printf("shown: %s\n", watcher.texts.join(" | ").toUtf8().constData());
    EXPECT_GT(desktop.Document().sampleCount, 8000);
    EXPECT_TRUE(desktop.Station().states.IsEnabled(120));
  }
  EnterRoom();
}

TEST_F(SoundServer, WindowsThatCloseInTheMiddleLeaveTheServerInPeace) {
  for (int i = 0; i < 3; ++i) {
    Desktop playing(Settings("a.ini")), recording(Settings("b.ini"));
    playing.window.OpenFile(kSound);
    playing.window.Dispatch(40023);
    recording.window.Dispatch(272);
    QTest::qWait(200);
  }
  Pactl({"info"});
}

/// Run without a server.
class Nowhere : public SoundServer {};

TEST_F(Nowhere, AMachineWithoutSoundSaysSoAndDoesNotHang) {
  QElapsedTimer clock;
  clock.start();
  Desktop desktop(Settings("a.ini"));
  desktop.window.OpenFile(kSound);
  EXPECT_FALSE(desktop.Station().states.IsEnabled(272));
  BoxWatcher watcher("确定");
  desktop.window.Dispatch(40023);
  EXPECT_FALSE(desktop.Station().player.playing());
  desktop.window.Dispatch(40104);
  EXPECT_FALSE(desktop.Station().recording.running());
  EXPECT_EQ(watcher.texts, (QStringList{"没有可用的放音设备", " Error Getting Wave_In_Dev_Caps!"}));
  EXPECT_LT(clock.elapsed(), 10000);
}

}  // namespace
}  // namespace parlowen
