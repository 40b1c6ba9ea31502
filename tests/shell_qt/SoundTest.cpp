// Playing and recording as the window shows them, with devices driven by hand.

#include <QTest>

#include "audio/FakeDevices.h"
#include "shell_qt/Doubles.h"

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

}  // namespace
}  // namespace parlowen
