#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QTest>

#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class CommandsTest : public WindowTest {};

TEST_F(CommandsTest, TheMenusShowEveryRowOfTheTableAndWhatIsGreyed) {
  for (const CommandRow& row : CommandTable()) {
    const QAction* action = window->ActionOf(row.number);
    ASSERT_NE(action, nullptr) << row.number;
    EXPECT_EQ(action->text(), row.label);
    EXPECT_EQ(action->isEnabled(), Station().states.IsEnabled(row.number)) << row.number;
  }
  Open(WriteRamp("ramp.wav", 22050, 30000));
  for (const CommandRow& row : CommandTable())
    EXPECT_EQ(window->ActionOf(row.number)->isEnabled(), Station().states.IsEnabled(row.number)) << row.number;
  EXPECT_EQ(window->menuBar()->actions().constLast()->text(), "扩展(&X)");
}

TEST_F(CommandsTest, AGreyedEntrySaysWhatIsMissing) {
  EXPECT_EQ(window->ActionOf(120)->toolTip(), "先打开声音文件");
  Open(WriteRamp("high.wav", 22100, 30000));
  EXPECT_EQ(window->ActionOf(212)->toolTip(), "采样频率≥22100Hz，请先转换");
  EXPECT_EQ(window->ActionOf(160)->toolTip(), "先用左、右键选定一段");
  EXPECT_EQ(window->ActionOf(40113)->toolTip(), "先打开双声道文件");
  Station().Select(100, 150);
  window->Dialogs().Repaint();
  QApplication::processEvents();
  EXPECT_TRUE(window->ActionOf(40001)->isEnabled());
  EXPECT_EQ(window->ActionOf(160)->toolTip(), "选定的段短于51个样点");
}

TEST_F(CommandsTest, UndoSaysWhatItTakesBack) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  Station().Select(19200, 24800);
  ASSERT_TRUE(window->Dispatch(40001));
  EXPECT_EQ(window->ActionOf(40036)->toolTip(), "可撤消：剪切 0.35 秒（1.20 秒处）");
  ASSERT_TRUE(window->Dispatch(40036));
  EXPECT_EQ(Document().sampleCount, 48000);
  EXPECT_FALSE(window->ActionOf(40036)->isEnabled());
  EXPECT_EQ(window->ActionOf(40036)->toolTip(), "没有可撤消的剪切或粘贴");
}

TEST_F(CommandsTest, ShortcutsRunTheirCommandsAndGreyedOnesDoNothing) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  QTest::keyClick(&Waveform(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Document().sampleCount, 48000);
  QTest::keyClick(&Waveform(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Document().SelectionLength(), 48000);
  QTest::keyClick(&Waveform(), Qt::Key_D, Qt::ControlModifier);
  EXPECT_FALSE(Document().selectionDefined());
  Station().Select(1000, 3000);
  window->Dialogs().Repaint();
  QApplication::processEvents();
  QTest::keyClick(&Waveform(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(Document().viewStart, 1000);
  EXPECT_LE(Document().samplesPerPixel, 3);
  QTest::keyClick(&Waveform(), Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Document().viewLength, 48000);
  QTest::keyClick(&Waveform(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Document().sampleCount, 46000);
  QTest::keyClick(&Waveform(), Qt::Key_F6);
  EXPECT_TRUE(Station().spectrogram.shown);
}

TEST_F(CommandsTest, NothingElseActsWhileAQuestionIsOpen) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  BoxWatcher watcher([&](QWidget& box) {
    EXPECT_FALSE(window->Dispatch(40026));
    window->ActionOf(40026)->trigger();
    QTest::keyClick(&Waveform(), Qt::Key_X);
    QTest::mouseClick(&Waveform(), Qt::LeftButton, {}, At(Waveform(), 200));
    QTest::mouseClick(&Waveform(), Qt::RightButton, {}, At(Waveform(), 300));
    TurnWheel(Waveform(), {200, 20}, -120);
    window->OpenFile(SoundsFile("english_female_prompt_8000.wav"));
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  ASSERT_TRUE(window->Dispatch(40008));
  EXPECT_FALSE(Document().selectionDefined());
  EXPECT_EQ(Document().samplesPerPixel, 160);
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_TRUE(window->Dispatch(40026));
}

TEST_F(CommandsTest, TheHintOfTheToolStandsInTheStatusBar) {
  EXPECT_EQ(window->HintShown().toStdString(), Station().view.Hint());
  Open(WriteRamp("ramp.wav", 16000, 48000));
  const QString before = window->HintShown();
  ASSERT_TRUE(window->Dispatch(40010));
  EXPECT_NE(window->HintShown(), before);
  EXPECT_EQ(window->HintShown().toStdString(), Station().view.Hint());
}

TEST_F(CommandsTest, ASelectionCanBeTypedInSecondsAndInSamples) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  const auto type = [&](const char* start, const char* end, bool samples) {
    BoxWatcher watcher([&](QWidget& dialog) {
      const auto edits = dialog.findChildren<QLineEdit*>();
      ASSERT_EQ(edits.size(), 2);
      edits[0]->setText(start);
      edits[1]->setText(end);
      for (auto* radio : dialog.findChildren<QRadioButton*>())
        if (radio->text() == (samples ? "样点" : "秒")) radio->setChecked(true);
      qobject_cast<QDialog*>(&dialog)->accept();
    });
    Activate();
    QTest::keyClick(&Waveform(), Qt::Key_G, Qt::ControlModifier);
  };
  type("0.5", "1.25", false);
  EXPECT_EQ(Document().selectionStart, 8000);
  EXPECT_EQ(Document().selectionEnd, 20000);
  type("123", "99999999999", true);
  EXPECT_EQ(Document().selectionStart, 123);
  EXPECT_EQ(Document().selectionEnd, 48000);
}

}  // namespace
}  // namespace parlowen
