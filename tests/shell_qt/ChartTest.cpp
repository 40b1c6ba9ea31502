#include <QAbstractButton>
#include <QApplication>
#include <QSplitter>
#include <QTest>

#include "shell/qt/TimeAxisStrip.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class ChartTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    Open(SoundsFile("english_male_sentence_16000.wav"));
  }
  PaneWidget& Chart() { return window->PaneOf(Pane::Chart); }
  /// Yes, in the notices OK: frequency coordinates.
  static void Agree(QWidget& box) {
    for (const char* text : {"是(&Y)", "确定", "放弃(&D)"})
      for (auto* button : box.findChildren<QAbstractButton*>())
        if (button->text() == text) return button->click();
  }
  void ShowChart() {
    BoxWatcher watcher(&Agree);
    ASSERT_TRUE(window->Dispatch(40057));
    Settle();
  }
  void Settle() {
    Activate();
    QApplication::processEvents();
  }
};

TEST_F(ChartTest, TheChartTakesThePlaceOfTheThreeLowerPanesAndGivesItBack) {
  const QList<int> before = window->findChild<QSplitter*>()->sizes();
  const QPoint below = Waveform().mapTo(window.get(), QPoint(0, Waveform().height() - 1));
  ASSERT_FALSE(Chart().isVisible());
  ShowChart();
  EXPECT_EQ(window->size(), QSize(1024, 720));
  for (const Pane pane : {Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_FALSE(window->PaneOf(pane).isVisible());
  EXPECT_FALSE(window->findChild<TimeAxisStrip*>()->isVisible());
  EXPECT_TRUE(window->PaneOf(Pane::Amplitude).isVisible());
  EXPECT_TRUE(Chart().isVisible());
  EXPECT_TRUE(Chart().hasFocus());
  EXPECT_GE(Chart().mapTo(window.get(), QPoint(0, Chart().height() - 1)).y(), below.y());
  EXPECT_EQ(Chart().PaneSize().width(), Document().paneWidth);
  // The corners of the group plot, the lowest fixed marks, are in rows up to 520.
  EXPECT_GE(Chart().RowsToBottom(), 530);
  QTest::keyClick(&Chart(), Qt::Key_Escape);
  Settle();
  EXPECT_FALSE(Chart().isVisible());
  EXPECT_TRUE(Waveform().hasFocus());
  EXPECT_EQ(window->findChild<QSplitter*>()->sizes(), before);
}

}  // namespace
}  // namespace parlowen
