// Playing and recording as the window shows them, with devices driven by hand.

#include <QFile>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include "audio/FakeDevices.h"
#include "audio/qt/QtLoudspeaker.h"
#include "shell_qt/Doubles.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using testing::Square;

class SoundTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    window = std::make_unique<MainWindow>("", *preferences, SoundDevices{&loudspeaker, &microphone});
    window->resize(1024, 720);
    window->show();
    Activate();
  }
  testing::FakeLoudspeaker loudspeaker;
  testing::FakeMicrophone microphone;
};

TEST_F(SoundTest, WhileItRecordsOnlyTheStopCanBeChosen) {
  Open(WriteRamp("a.wav", 16000, 20000));
  ASSERT_TRUE(window->Dispatch(40104));
  QCoreApplication::processEvents();
  EXPECT_TRUE(window->HintShown().contains("保持安静"));
  {
    BoxWatcher watcher("确定");  // no block counted: the room is too quiet
    QTest::keyClick(window.get(), Qt::Key_T);
    microphone.Fill(Square(1));
  }
  ASSERT_TRUE(window->Dispatch(272));
  QCoreApplication::processEvents();
  for (const CommandRow& row : CommandTable())
    EXPECT_EQ(window->ActionOf(row.number)->isEnabled(), row.number == 274) << row.number;
  QTest::mouseClick(&Waveform(), Qt::LeftButton, {}, At(Waveform(), 100));
  EXPECT_LT(Document().selectionStart, 0);
  window->OpenFile(WriteRamp("b.wav", 16000, 100));
  EXPECT_EQ(Document().sampleCount, 20000);
  EXPECT_TRUE(window->HintShown().contains("听到语音后"));
  QTest::keyClick(window.get(), Qt::Key_T);
  microphone.Fill(Square(1));
  QCoreApplication::processEvents();
  EXPECT_FALSE(window->ActionOf(274)->isEnabled());
  EXPECT_TRUE(window->ActionOf(110)->isEnabled());
  EXPECT_FALSE(window->HintShown().contains("录音"));
}

TEST_F(SoundTest, TheCrossEndsARecordingAndAsksAboutIt) {
  ASSERT_TRUE(window->Dispatch(40022));
  for (int i = 0; i < 4; ++i) microphone.Fill(Square(8000));
  ASSERT_TRUE(Station().recording.keeping());
  EXPECT_FALSE(window->close());
  BoxWatcher watcher("取消");
  microphone.Fill(Square(8000));  // the last block
  EXPECT_TRUE(QTest::qWaitFor([&] { return watcher.texts.size() == 1; }, 2000));
  EXPECT_FALSE(Station().recording.running());
  EXPECT_GT(Document().sampleCount, 0);
  EXPECT_TRUE(window->isVisible());
}

TEST_F(SoundTest, TheCursorMovesAndADialogStopsThePlay) {
  Open(WriteRamp("a.wav", 16000, 100000));
  ASSERT_TRUE(window->Dispatch(40023));
  loudspeaker.position = 5000;
  EXPECT_TRUE(QTest::qWaitFor([&] { return Station().view.cursor == 5000; }, 2000));
  EXPECT_TRUE(window->ActionOf(40025)->isEnabled());
  BoxWatcher watcher("确定");
  window->Dispatch(40008);
  EXPECT_FALSE(Station().player.playing());
  EXPECT_FALSE(Station().view.cursor);
  ASSERT_TRUE(window->Dispatch(40023));
  Station().Select(100, 200);
  EXPECT_TRUE(Station().player.playing()) << "marking does not disturb it";
  window->Dispatch(40002);
  EXPECT_TRUE(Station().player.playing());
  window->Dispatch(40001);
  EXPECT_FALSE(Station().player.playing()) << "a cut does";
  ASSERT_TRUE(window->Dispatch(40023));
  QTest::mouseClick(&Waveform(), Qt::LeftButton, Qt::ShiftModifier, At(Waveform(), 100));
  EXPECT_FALSE(Station().player.playing()) << "so does a paste with the mouse";
}

TEST_F(SoundTest, TheToolBarPlaysTheSelectionOrElseTheWholeAndStops) {
  Open(WriteRamp("a.wav", 16000, 20000));
  const auto press = [&](const char* text) {
    for (auto* button : window->findChild<QToolBar*>()->findChildren<QToolButton*>())
      if (button->text() == text) QTest::mouseClick(button, Qt::LeftButton);
  };
  press("放音");
  EXPECT_EQ(loudspeaker.heard.size(), 20000u);
  press("停止");
  EXPECT_FALSE(Station().player.playing());
  Station().Select(1000, 4000);
  QCoreApplication::processEvents();
  press("放音");
  EXPECT_EQ(std::ssize(loudspeaker.heard), Document().selectionEnd - Document().selectionStart);
  EXPECT_TRUE(Station().player.playing());
}

TEST(WorkerTest, WhatTheDeviceRefusesIsSaidAndOneThatWillNotOpenIsTriedTwice) {
  const QTemporaryDir folder;
  const auto write = [&](const char* name, const QByteArray& bytes) {
    return QString::fromStdString(
        testing::WriteFile(folder.filePath(name).toStdString(), bytes.toStdString()));
  };
  // A process that takes a play of three samples, 12 + 4 + 6 bytes, and gives one answer.
  const QString worker =
      write("worker", "#!/bin/sh\ncd \"${0%/*}\"\nhead -c 22 >>asked\ncat answer\ncat >/dev/null\n");
  QFile::setPermissions(worker, QFile::ReadOwner | QFile::ExeOwner);
  const auto said = [&](SoundFailure failure) {
    write("answer", PackMessage({SoundMessageKind::Failed, 1, PackNumbers({static_cast<int>(failure)})}));
    SoundProcess process(worker);
    QtLoudspeaker loudspeaker(process);
    std::string text;
    loudspeaker.onFailed = [&](const std::string& failed) { text = failed; };
    const std::int16_t samples[] = {1, 2, 3};
    EXPECT_TRUE(loudspeaker.Open(48000).empty() && loudspeaker.Prepare(samples) && loudspeaker.Write());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !text.empty(); }, 10000));
    return text;
  };
  EXPECT_EQ(said(SoundFailure::RateRefused), "放音设备不支持 48000 Hz 的采样频率");
  EXPECT_EQ(said(SoundFailure::NotOpened), "放音设备打不开，请检查系统的声音设置");
  EXPECT_EQ(QFile(folder.filePath("asked")).size(), 3 * 22);
  // A size that no message has: what stands behind it is not read as a message.
  QByteArray bytes = PackNumbers({1, 1, -1}) + PackNumbers({1, 1, 0});
  EXPECT_TRUE(!TakeMessage(bytes) && bytes.isEmpty());
}

}  // namespace
}  // namespace parlowen
