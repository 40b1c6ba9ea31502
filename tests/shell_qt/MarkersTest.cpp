// The marker window on the desktop: its controls, and the questions before its work is lost.

#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "shell/qt/ToolWidget.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class MarkersTest : public WindowTest {
 protected:
  ToolWidget* Show() {
    EXPECT_TRUE(window->Dispatch(40105));
    return Widget();
  }
  ToolWidget* Widget() {
    QApplication::processEvents();
    return window->Dialogs().FindToolWindow("markers");
  }
  /// In the first band, whose rows begin 162 above the drawing's lower edge.
  void ClickBand(int column) {
    QWidget* canvas = Widget()->Canvas();
    QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(column, canvas->height() - 162 + 20));
  }
};

TEST_F(MarkersTest, TheToolInHandIsDownAndTheScrollBarMovesTheWaveform) {
  Open(WriteRamp("a.wav", 8000, 480000));
  ToolWidget* widget = Show();
  ASSERT_NE(widget, nullptr);
  auto* bar = widget->findChild<QScrollBar*>();
  EXPECT_EQ(bar->maximum(), 0);
  widget->Button("加标志")->click();
  EXPECT_TRUE(widget->Button("加标志")->isChecked());
  widget->Button("波形扩展")->click();
  EXPECT_TRUE(widget->Button("加标志")->isChecked());
  ClickBand(120);
  // The waveform has as many columns as the drawing has room for.
  const int columns = widget->Canvas()->width() - 24;
  EXPECT_EQ(Station().markers.set.markerPos[0], 100 * 240000 / columns);
  EXPECT_EQ(bar->maximum(), 240000);
  EXPECT_EQ(bar->pageStep(), 240000);
  bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
  EXPECT_EQ(Station().markers.view.start, 16000);
  widget->Button("删标志")->click();
  EXPECT_FALSE(widget->Button("加标志")->isChecked());
  EXPECT_TRUE(widget->Button("删标志")->isChecked());
}

TEST_F(MarkersTest, ChangedMarkersAreAskedAboutBeforeTheyAreLost) {
  const QString sound = WriteRamp("a.wav", 16000, 48000);
  Open(sound);
  Show()->Button("加标志")->click();
  ClickBand(120);
  const MarkerSet set = Station().markers.set;
  ASSERT_EQ(set.markerCount[0], 1);
  {
    BoxWatcher no("否(&N)");
    window->OpenFile(sound);
    window->Dispatch(40093);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(no.texts.count("标志已经改动，还没有保存。放弃改动，继续吗？"), 3);
    // Going back to the window without reading the file.
    window->Dialogs().CloseToolWindow("markers");
    window->Dispatch(40105);
    EXPECT_EQ(no.texts.size(), 4);
  }
  ASSERT_NE(Widget(), nullptr);
  EXPECT_EQ(Station().markers.set, set);
  {
    BoxWatcher yes("是(&Y)");
    window->Dispatch(40105);
  }
  EXPECT_FALSE(Station().markers.set.HasMarkers());

  Widget()->Button("加标志")->click();
  ClickBand(120);
  Widget()->Button("保存标志")->click();
  BoxWatcher none("否(&N)");
  window->OpenFile(sound);   // saved: nothing to ask
  window->Dispatch(40105);
  EXPECT_EQ(none.texts, QStringList());
  EXPECT_EQ(Station().markers.set, set);
}

}  // namespace
}  // namespace parlowen
