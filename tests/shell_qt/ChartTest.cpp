#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
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
  void AddPoint(int f1, int f2) {
    Station().vowels.chart.Add(f1, f2, 0);
    Station().Act([] {});
    window->Dialogs().Repaint(Pane::Chart);
    QApplication::processEvents();
  }
  bool SaveChartAs(const QString& path) {
    BoxWatcher watcher([&](QWidget& dialog) {
      if (path.isEmpty()) return QTest::keyClick(&dialog, Qt::Key_Escape);
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    return window->Dispatch(40072);
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

TEST_F(ChartTest, AChangedChartIsAskedAboutBeforeAnotherAndBeforeTheEnd) {
  const QString path = folder.filePath("a.vch");
  ShowChart();
  AddPoint(600, 1200);
  ASSERT_TRUE(SaveChartAs(path));
  ASSERT_TRUE(QFile::exists(path));
  {
    BoxWatcher none(&Agree);  // just saved; a loaded chart keeps its coordinates
    Open(path);
    EXPECT_EQ(none.texts.size(), 0);
  }
  EXPECT_EQ(preferences->RecentFiles().constFirst(), path);
  AddPoint(300, 2200);
  SaveChartAs("");  // cancelled: nothing is saved
  {
    BoxWatcher no("取消");
    Open(path);
    EXPECT_EQ(no.texts.size(), 1);
    window->close();
    EXPECT_EQ(no.texts.size(), 2);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->Dispatch(40073));
    EXPECT_EQ(no.texts.size(), 3);
  }
  EXPECT_EQ(Station().vowels.chart.count, 2);
  Open(SoundsFile("english_female_prompt_8000.wav"));  // another sound leaves the chart: no question
  EXPECT_EQ(Document().sampleRate, 8000);
  BoxWatcher yes(&Agree);
  Open(path);
  EXPECT_EQ(Station().vowels.chart.count, 1);
  window->close();
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace parlowen
