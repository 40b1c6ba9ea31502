// The marker window on the desktop: the questions before its work is lost.

#include <QApplication>
#include <QPushButton>
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

TEST_F(MarkersTest, ChangedMarkersAreAskedAboutBeforeTheyAreLost) {
  const QString sound = WriteRamp("a.wav", 16000, 48000);
  Open(sound);
  Show()->Button("加标志")->click();
  ClickBand(120);
  const MarkerSet set = Station().markers.set;
  ASSERT_EQ(set.markerCount[0], 1);
  {
    BoxWatcher no("取消");
    window->OpenFile(sound);
    window->Dispatch(40093);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(no.texts.count("标志已经改动，还没有保存。"), 3);
  }
  {
    // Going back to the window without reading the file.
    BoxWatcher keep("继续使用(&K)");
    window->Dialogs().CloseToolWindow("markers");
    window->Dispatch(40105);
    EXPECT_EQ(keep.texts.size(), 1);
  }
  ASSERT_NE(Widget(), nullptr);
  EXPECT_EQ(Station().markers.set, set);
  {
    BoxWatcher again("放弃(&D)");
    window->Dispatch(40105);
  }
  EXPECT_FALSE(Station().markers.set.HasMarkers());

  Widget()->Button("加标志")->click();
  ClickBand(120);
  Widget()->Button("保存标志")->click();
  BoxWatcher none("取消");
  window->OpenFile(sound);  // saved: nothing to ask
  window->Dispatch(40105);
  EXPECT_EQ(none.texts, QStringList());
  EXPECT_EQ(Station().markers.set, set);
}

}  // namespace
}  // namespace parlowen
