// The desktop's window and its devices against a sound server. real_server_test.sh starts one with a null
// sink "room" and a source "mic" that hears it, both made the defaults behind another pair, and runs these tests;
// "Nowhere" is run without any server.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <csignal>
#include <utility>

#include "audio/qt/QtLoudspeaker.h"
#include "audio/qt/QtMicrophone.h"
#include "audio/qt/SoundProcess.h"
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
    QObject::connect(&microphone, &QtMicrophone::PresenceChanged, &window, &MainWindow::InputDevicesChanged);
  }
  Workstation& Station() { return window.Station(); }
  SoundDocument& Document() { return Station().document; }

  Preferences preferences;
  SoundProcess sound{PARLOWEN_PROGRAM};
  QtLoudspeaker loudspeaker{sound};
  QtMicrophone microphone{sound};
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
  static void Signal(int signal) {
    QFile pid(qEnvironmentVariable("PARLOWEN_SERVER") + "/pid");
    ASSERT_TRUE(pid.open(QIODevice::ReadOnly));
    ::kill(pid.readAll().trimmed().toInt(), signal);
  }

  /// What happens to the sound of the desktops, and what ends the trouble.
  struct Trouble {
    const char* name;
    std::function<void(const std::vector<Desktop*>&)> harm;
    std::function<void()> heal;
  };
  static std::vector<Trouble> Troubles() {
    using Desktops = const std::vector<Desktop*>&;
    const auto serve = [] { QProcess::execute(PARLOWEN_SERVER_SCRIPT, {"--serve"}); };
    // A server without another device ends what runs there.
    const auto leave = [](Desktops) {
      Pactl({"unload-module", "module-remap-source"});
      Pactl({"unload-module", "module-null-sink"});
    };
    const auto enter = [] {
      Pactl({"load-module", "module-null-sink", "sink_name=room", "rate=16000"});
      Pactl({"load-module", "module-remap-source", "source_name=mic", "master=room.monitor"});
      Pactl({"set-default-sink", "room"});
      Pactl({"set-default-source", "mic"});
    };
    const auto kill = [](Desktops desktops) {
      for (Desktop* desktop : desktops) ::kill(static_cast<pid_t>(desktop->sound.Pid()), SIGKILL);
    };
    return {{"the devices are taken away", leave, enter},
            {"the server ends", [](Desktops) { Signal(SIGTERM); }, serve},
            {"the server is killed", [](Desktops) { Signal(SIGKILL); }, serve},
            {"the server hangs", [](Desktops) { Signal(SIGSTOP); }, [] { Signal(SIGCONT); }},
            {"the sound processes die", kill, [] {}}};
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
  ASSERT_TRUE(Wait([&] { return recorder.Station().states.IsEnabled(272); }, 5000))
      << "there is a microphone";
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
  // The block before the voice may have begun before the play.
  for (int offset = -kBlockSamples; offset + middle + 4000 < kPlayed; ++offset) {
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

TEST_F(SoundServer, WhateverHappensToItNothingIsLostAndSoundComesBack) {
  for (const Trouble& trouble : Troubles()) {
    SCOPED_TRACE(trouble.name);
    Desktop desktop(Settings("a.ini")), recorder(Settings("b.ini"));
    Player& player = desktop.Station().player;
    const Recorder& recording = recorder.Station().recording;
    const CommandStates& states = recorder.Station().states;
    const auto sounds = [&] { return player.playing() && player.playbackPosition() > 1000; };
    const auto hears = [&] { return recording.recorded() > 8000; };
    desktop.window.OpenFile(kSound);
    recorder.Document().sampleRate = 16000;
    recorder.Station().recorder.voiceThreshold = -1;  // silence is voice enough
    ASSERT_TRUE(Wait([&] { return recorder.window.Dispatch(40022); }, 10000));
    ASSERT_TRUE(Wait(hears, 10000));
    desktop.window.Dispatch(40023);
    ASSERT_TRUE(Wait(sounds, 10000));

    QStringList said;
    const int before = recording.recorded();
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0, longest = 0;
    {
      BoxWatcher watcher("确定");
      trouble.harm({&desktop, &recorder});
      EXPECT_TRUE(Wait(
          [&] {
            longest = std::max(longest, clock.elapsed() - std::exchange(last, clock.elapsed()));
            return !player.playing() && !recording.running() && watcher.texts.size() > 1;
          },
          15000));
      said = watcher.texts;
    }
    std::printf("%s: after %lld ms, window busy for at most %lld ms: %s\n", trouble.name,
                static_cast<long long>(clock.elapsed()), static_cast<long long>(longest),
                said.join(" | ").toUtf8().constData());
    EXPECT_LT(longest, 1000);
    const int kept = recorder.Document().sampleCount;
    EXPECT_GE(kept, before);
    EXPECT_EQ(said.size(), 2);
    EXPECT_TRUE(said.join(' ').contains(QString::number(kept / 16000.0, 'f', 2) + " 秒")) << kept;
    EXPECT_TRUE(states.IsEnabled(120)) << "it can be saved";
    EXPECT_TRUE(desktop.Station().states.IsEnabled(40023) && !desktop.Station().states.IsEnabled(40025));

    trouble.heal();
    BoxWatcher watcher([](QWidget& box) {  // no device yet; the recording is not saved
      for (const char* button : {"确定", "放弃(&D)"})
        for (QAbstractButton* one : box.findChildren<QAbstractButton*>())
          if (one->text() == button) return one->click();
      ADD_FAILURE() << "a box that nobody answers";
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_TRUE(
        Wait([&] { return player.playing() || desktop.window.Dispatch(40023) ? sounds() : false; }, 15000));
    ASSERT_TRUE(Wait([&] { return states.IsEnabled(40022); }, 15000));
    ASSERT_TRUE(recorder.window.Dispatch(40022));
    EXPECT_TRUE(Wait(hears, 10000));
  }
}

TEST_F(SoundServer, AWindowOpensStopsAndClosesAtOnceWhileTheServerHangs) {
  QElapsedTimer clock;
  {
    Desktop desktop(Settings("a.ini"));
    desktop.window.OpenFile(kSound);
    desktop.window.Dispatch(40023);
    ASSERT_TRUE(Wait([&] { return desktop.Station().player.playbackPosition() > 0; }, 10000));
    Signal(SIGSTOP);
    clock.start();
    desktop.window.Dispatch(40025);
    EXPECT_FALSE(desktop.Station().player.playing());
    EXPECT_LT(clock.elapsed(), 100);
    Desktop another(Settings("b.ini"));
    another.window.OpenFile(kSound);
    another.window.Dispatch(40023);
    QTest::qWait(300);
    EXPECT_FALSE(another.Station().states.IsEnabled(272));
  }
  EXPECT_LT(clock.elapsed(), 3000);
  Signal(SIGCONT);
}

TEST_F(SoundServer, WindowsThatCloseInTheMiddleLeaveTheServerInPeace) {
  for (int i = 0; i < 3; ++i) {
    Desktop playing(Settings("a.ini")), recording(Settings("b.ini"));
    playing.window.OpenFile(kSound);
    playing.window.Dispatch(40023);
    Wait([&] { return recording.window.Dispatch(272); }, 5000);
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
  EXPECT_TRUE(Wait([&] { return !desktop.Station().player.playing() && !watcher.texts.isEmpty(); }, 5000));
  desktop.window.Dispatch(40104);
  EXPECT_FALSE(desktop.Station().recording.running());
  EXPECT_EQ(watcher.texts, (QStringList{"没有可用的放音设备", " Error Getting Wave_In_Dev_Caps!"}));
  EXPECT_LT(clock.elapsed(), 10000);
}

}  // namespace
}  // namespace parlowen
