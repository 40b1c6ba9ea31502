#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>

#include "shell/qt/MenuTexts.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class CommandsTest : public WindowTest {};

TEST_F(CommandsTest, AMenuHasEveryLetterOnceAndShowsTheKeysOfThePanes) {
  int menus = 0;
  for (const QMenu* menu : window->findChildren<QMenu*>()) {
    QStringList letters;
    for (const QAction* action : menu->actions())
      if (const auto letter = QKeySequence::mnemonic(action->text()); !letter.isEmpty())
        letters << letter.toString();
    EXPECT_EQ(letters.removeDuplicates(), 0) << menu->title().toStdString();
    // Without a title: the toolkit's own, of the titles for which the bar has no room.
    EXPECT_TRUE(menu->toolTipsVisible() || letters.empty() || menu->title().isEmpty())
        << "says why an entry is greyed";
    menus += letters.size() > 1;
  }
  EXPECT_GE(menus, 14);
  EXPECT_EQ(window->ActionOf(40106)->text(), "选定语音段的语调分析[&I]");
  EXPECT_EQ(window->ActionOf(40074)->text(), "音长加入统计组[I]");
  EXPECT_EQ(window->ActionOf(160)->text(), "局部放音[&P]\tSpace");
  EXPECT_EQ(window->ActionOf(40013)->text(), "前进到标志[&M]\tPgDown");
  EXPECT_TRUE(window->ActionOf(274)->shortcut().isEmpty());
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

TEST_F(CommandsTest, TheToolBarZoomsBothWays) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  const int scale = Document().samplesPerPixel;
  const auto press = [&](const char* text) {
    for (auto* button : window->findChildren<QToolButton*>())
      if (button->text() == text) button->click();
    return Document().samplesPerPixel;
  };
  EXPECT_EQ(press("放大"), scale / 2);
  EXPECT_EQ(press("缩小"), scale);
}

TEST_F(CommandsTest, NothingElseActsWhileAQuestionIsOpen) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  const int scale = Document().samplesPerPixel;
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
  EXPECT_EQ(Document().samplesPerPixel, scale);
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_TRUE(window->Dispatch(40026));
}

TEST_F(CommandsTest, ASelectionCanBeTypedInSeconds) {
  Open(WriteRamp("ramp.wav", 16000, 48000));
  BoxWatcher watcher([&](QWidget& dialog) {
    const auto edits = dialog.findChildren<QLineEdit*>();
    ASSERT_EQ(edits.size(), 2);
    edits[0]->setText("0.5");
    edits[1]->setText("1.25");
    qobject_cast<QDialog*>(&dialog)->accept();
  });
  Activate();
  QTest::keyClick(&Waveform(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(Document().selectionStart, 8000);
  EXPECT_EQ(Document().selectionEnd, 20000);
}

}  // namespace
}  // namespace parlowen
