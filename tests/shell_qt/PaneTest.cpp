#include <QApplication>
#include <QTest>

#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000;
constexpr int kColumn = kRate / 100;   // samples under a column at the start scale

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

TEST_F(PaneTest, ClicksInEveryPaneMarkTheSampleOfTheirColumn) {
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform}) {
    PaneWidget& widget = window->PaneOf(pane);
    window->Dispatch(40004);
    QTest::mouseClick(&widget, Qt::LeftButton, {}, At(widget, 120));
    QTest::mouseClick(&widget, Qt::RightButton, {}, At(widget, 220));
    EXPECT_EQ(Document().selectionStart, 100 * kColumn);
    EXPECT_EQ(Document().selectionEnd, 200 * kColumn);
  }
  EXPECT_EQ(Waveform().accessibleName(), "波形窗，选定 1.00–2.00 秒");
  EXPECT_TRUE(window->SelectionShown().startsWith("起 1.000 s │ 1.000 s (1.000/s) │ 止 2.000 s"));
}

TEST_F(PaneTest, AShakyClickIsNoDrag) {
  DragBetween(Waveform(), 120, 120 + QApplication::startDragDistance());
  EXPECT_EQ(Document().selectionStart, 100 * kColumn);
  EXPECT_FALSE(Document().selectionDefined());
}

TEST_F(PaneTest, InAToolADragDoesNotMarkAStretch) {
  Document().activity = activities::kPointChart;
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

TEST_F(PaneTest, TheViewIsAsWideAsThePane) {
  EXPECT_EQ(Document().paneWidth, Waveform().width() - PaneWidget::kGutter);
  window->resize(1300, 760);
  QApplication::processEvents();
  EXPECT_EQ(Document().paneWidth, Waveform().width() - PaneWidget::kGutter);
}

}  // namespace
}  // namespace parlowen
