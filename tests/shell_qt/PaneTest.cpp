#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QImage>
#include <QMenu>
#include <QTest>

#include "shell/qt/OverviewStrip.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000;
constexpr int kColumn = kRate / 100;  // samples under a column at the start scale

class PaneTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    Open(WriteRamp("ramp.wav", kRate, 20 * kRate));
    ASSERT_EQ(Document().sampleCount, 20 * kRate);
  }
  /// A press, moves and a release of the left button between two columns.
  void DragBetween(PaneWidget& pane, int from, int to) {
    QTest::mousePress(&pane, Qt::LeftButton, {}, At(pane, from));
    QTest::mouseMove(&pane, At(pane, (from + to) / 2));
    QTest::mouseMove(&pane, At(pane, to));
    QTest::mouseRelease(&pane, Qt::LeftButton, {}, At(pane, to));
  }
};

TEST_F(PaneTest, TheSelectionIsSaidInItsLineAndToWhoeverCannotSeeIt) {
  DragBetween(Waveform(), 120, 220);
  QAccessibleInterface* shown = QAccessible::queryAccessibleInterface(&Waveform());
  EXPECT_EQ(shown->role(), QAccessible::Graphic);
  EXPECT_EQ(shown->text(QAccessible::Name), "波形窗，选定 1.00–2.00 秒");
  EXPECT_TRUE(window->SelectionShown().startsWith("起 1.000 s │ 1.000 s (1.000/s) │ 止 2.000 s"));
}

TEST_F(PaneTest, AClickInTheGutterOrTheMarginCountsAsTheFirstColumn) {
  QTest::mouseClick(&Waveform(), Qt::RightButton, {}, At(Waveform(), 220));
  QTest::mouseClick(&Waveform(), Qt::LeftButton, {}, QPoint(10, 20));
  EXPECT_EQ(Document().selectionStart, 0);
  EXPECT_EQ(Document().selectionEnd, 200 * kColumn);
}

TEST_F(PaneTest, ADragThatLeavesThePaneEndsAtItsLastPixel) {
  PaneWidget& pane = Waveform();
  const QPoint outside(pane.width() + 50, 10);
  QTest::mousePress(&pane, Qt::LeftButton, {}, At(pane, 120));
  QTest::mouseMove(&pane, outside);
  QTest::mouseRelease(&pane, Qt::LeftButton, {}, outside);
  EXPECT_EQ(Document().selectionEnd, Station().view.SampleAt(Pane::Waveform, Document().paneWidth - 1));
}

TEST_F(PaneTest, ADragMarksLikeAClickAtEachEndWhicheverWayItGoes) {
  DragBetween(Waveform(), 320, 120);
  EXPECT_EQ(Document().selectionStart, 100 * kColumn);
  EXPECT_EQ(Document().selectionEnd, 300 * kColumn);
}

TEST_F(PaneTest, AShakyClickIsNoDrag) {
  DragBetween(Waveform(), 120, 120 + QApplication::startDragDistance());
  EXPECT_EQ(Document().selectionStart, 100 * kColumn);
  EXPECT_FALSE(Document().selectionDefined());
}

TEST_F(PaneTest, InAToolADragDoesNotMarkAStretch) {
  Document().activity = Activity::PointChart;
  DragBetween(Waveform(), 120, 320);
  EXPECT_FALSE(Document().selectionDefined());
}

TEST_F(PaneTest, AnEdgeIsDraggedButNotPastTheOther) {
  DragBetween(Waveform(), 120, 320);
  DragBetween(Waveform(), 321, 420);
  EXPECT_EQ(Document().selectionStart, 100 * kColumn);
  EXPECT_EQ(Document().selectionEnd, 400 * kColumn);
  DragBetween(Waveform(), 119, 600);
  EXPECT_TRUE(Document().selectionDefined());
  EXPECT_EQ(Document().selectionStart, 399 * kColumn);
  EXPECT_EQ(Document().selectionEnd, 400 * kColumn);
}

TEST_F(PaneTest, TheWheelScrollsATenthANotchAndAddsUpSmallTurns) {
  const int tenth = Document().FullViewLength() / 10;
  TurnWheel(Waveform(), At(Waveform(), 300), -60);
  EXPECT_EQ(Document().viewStart, 0);
  TurnWheel(Waveform(), At(Waveform(), 300), -60);
  EXPECT_EQ(Document().viewStart, tenth);
  TurnWheel(Waveform(), At(Waveform(), 300), -240);
  EXPECT_EQ(Document().viewStart, 3 * tenth);
  TurnWheel(Waveform(), At(Waveform(), 300), 1200);
  EXPECT_EQ(Document().viewStart, 0);
}

TEST_F(PaneTest, CtrlWheelZoomsAndKeepsTheSampleUnderThePointer) {
  const int column = 420;
  const int before = Station().view.SampleAt(Pane::Waveform, column);
  TurnWheel(Waveform(), At(Waveform(), column), 240, Qt::ControlModifier);
  EXPECT_EQ(Document().samplesPerPixel, kColumn / 4);
  EXPECT_NEAR(Station().view.SampleAt(Pane::Waveform, column), before, kColumn / 4);
  TurnWheel(Waveform(), At(Waveform(), column), -120, Qt::ControlModifier);
  EXPECT_EQ(Document().samplesPerPixel, kColumn / 2);
}

TEST_F(PaneTest, TheViewIsAsWideAsThePane) {
  EXPECT_EQ(Document().paneWidth, Waveform().width() - PaneWidget::kGutter);
  window->resize(1300, 760);
  QApplication::processEvents();
  EXPECT_EQ(Document().paneWidth, Waveform().width() - PaneWidget::kGutter);
}

TEST_F(PaneTest, TheOverviewCentresAtAClickAndFollowsADrag) {
  auto* strip = window->findChild<OverviewStrip*>();
  ASSERT_NE(strip, nullptr);
  const int width = strip->width() - PaneWidget::kGutter;
  const auto at = [&](double share) {
    return QPoint(PaneWidget::kGutter + static_cast<int>(width * share), strip->height() / 2);
  };
  const int perPixel = Document().sampleCount / width + 1;
  QTest::mouseClick(strip, Qt::LeftButton, {}, at(0.6));
  const int centred = Document().viewStart;
  EXPECT_NEAR(centred + Document().FullViewLength() / 2, 0.6 * Document().sampleCount, 2 * perPixel);
  QTest::mousePress(strip, Qt::LeftButton, {}, at(0.55));
  QTest::mouseMove(strip, at(0.45));
  QTest::mouseRelease(strip, Qt::LeftButton, {}, at(0.45));
  const int dragged = Document().viewStart;
  EXPECT_NEAR(dragged, centred - 0.1 * Document().sampleCount, 3 * perPixel);
  TurnWheel(*strip, at(0.5), -240);
  EXPECT_EQ(Document().viewStart, dragged + 2 * (Document().FullViewLength() / 10));
}

TEST_F(PaneTest, ThePointerIsReadInAllPanesAndItsLineCanBeCopied) {
  PaneWidget& pitch = window->PaneOf(Pane::Pitch);
  const QImage before = Waveform().grab().toImage();
  QTest::mouseMove(&pitch, At(pitch, 120));
  EXPECT_TRUE(window->HoverShown().contains("样点 16000")) << window->HoverShown().toStdString();
  const QImage after = Waveform().grab().toImage();
  const QPoint line = At(Waveform(), 120) * after.devicePixelRatio();
  EXPECT_NE(before.pixel(line.x(), 5), after.pixel(line.x(), 5));
  EXPECT_EQ(before.pixel(line.x() + 3, 5), after.pixel(line.x() + 3, 5));

  QTest::keyClick(&Waveform(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  const QStringList fields = QApplication::clipboard()->text().split('\t');
  ASSERT_GE(fields.size(), 4);
  EXPECT_EQ(fields[0], "1.000 s");
  EXPECT_EQ(fields[1], "样点 16000");
}

TEST_F(PaneTest, ADraggedRegionIsCopiedAsABitmap) {
  ASSERT_TRUE(window->Dispatch(40010));
  EXPECT_FALSE(window->Dispatch(40015));
  QTest::mousePress(&Waveform(), Qt::LeftButton, {}, QPoint(PaneWidget::kGutter + 100, 10));
  QTest::mouseMove(&Waveform(), QPoint(PaneWidget::kGutter + 180, 40));
  QTest::mouseRelease(&Waveform(), Qt::LeftButton, {}, QPoint(PaneWidget::kGutter + 180, 40));
  EXPECT_EQ(Document().activity, Activity::RegionChosen);
  EXPECT_FALSE(Document().selectionDefined());
  ASSERT_TRUE(window->Dispatch(40015));
  // 81 by 31 pixels less the frame around them.
  EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(79, 29));
  QTest::keyClick(&Waveform(), Qt::Key_Escape);
  EXPECT_FALSE(window->ActionOf(40015)->isEnabled());
}

TEST_F(PaneTest, ThePanesMenuComesByKeyboardAndNotByAPlainRightClick) {
  int opened = 0;
  QTimer closer;
  QObject::connect(&closer, &QTimer::timeout, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return;
    ++opened;
    EXPECT_EQ(menu->actions().constFirst()->text(), "复制为图片(&C)");
    menu->close();
  });
  closer.start(5);
  QContextMenuEvent byMouse(QContextMenuEvent::Mouse, {200, 20}, Waveform().mapToGlobal(QPoint(200, 20)));
  QApplication::sendEvent(&Waveform(), &byMouse);
  EXPECT_EQ(opened, 0);
  QContextMenuEvent byControl(QContextMenuEvent::Mouse, {200, 20}, Waveform().mapToGlobal(QPoint(200, 20)),
                              Qt::ControlModifier);
  QApplication::sendEvent(&Waveform(), &byControl);
  EXPECT_EQ(opened, 1);
  QTest::mouseClick(&Waveform(), Qt::RightButton, Qt::ControlModifier, At(Waveform(), 200));
  EXPECT_LT(Document().selectionEnd, 0);
  QTest::keyClick(&Waveform(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(opened, 2);
  QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(&Waveform(), &byKey);
  EXPECT_EQ(opened, 3);
}

TEST_F(PaneTest, TheFrameWindowFollowsAClick) {
  Open(SoundsFile("english_male_sentence_16000.wav"));
  Station().Select(3000, 6000);
  ASSERT_TRUE(window->Dispatch(212));
  Activate();
  QTest::mouseClick(&Waveform(), Qt::LeftButton, {}, At(Waveform(), 400));
  EXPECT_NE(Document().selectionStart, 3000);
  EXPECT_EQ(Station().frames.shownStart, Document().selectionStart);
}

}  // namespace
}  // namespace parlowen
