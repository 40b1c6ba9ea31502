#include <QProgressDialog>
#include <QTest>
#include <cmath>

#include "pitch/PitchPicture.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000;
constexpr int kPeriod = 128;  // samples: 125 Hz

class RepairTest : public WindowTest {
 protected:
  /// A train of pulses with a decay, so that every harmonic is there.
  QString WritePulses(const char* name, int seconds) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < seconds * kRate; ++i)
      samples.push_back(static_cast<std::int16_t>(9000.0 * std::exp(-(i % kPeriod) / 12.0) *
                                                  std::cos((i % kPeriod) * 0.3)));
    return WriteSound(name, kRate, std::move(samples));
  }
  void StartRepair() {
    Open(WritePulses("pulses.wav", 3));
    ASSERT_TRUE(window->Dispatch(220));
    Station().Select(kRate / 2, 2 * kRate);
    ASSERT_TRUE(window->Dispatch(40042));
    ASSERT_EQ(Document().activity, Activity::PitchRepair);
  }
  PaneWidget& Analysis() { return window->PaneOf(Pane::Analysis); }
  PitchRepair& Repair() { return Station().pitch.repair; }
  int FrameAt(int column) { return FrameOfSample(Station().view.SampleAt(Pane::Analysis, column), kRate); }
  void RightDrag(int from, int to) {
    QTest::mousePress(&Analysis(), Qt::RightButton, {}, At(Analysis(), from));
    QTest::mouseMove(&Analysis(), At(Analysis(), (from + to) / 2));
    QTest::mouseMove(&Analysis(), At(Analysis(), to));
    QTest::mouseRelease(&Analysis(), Qt::RightButton, {}, At(Analysis(), to));
  }
};

TEST_F(RepairTest, ARightDragMarksFramesAndLeavesTheSelection) {
  StartRepair();
  const int start = Document().selectionStart, end = Document().selectionEnd;
  RightDrag(600, 300);
  EXPECT_EQ(Repair().marked.first, FrameAt(300));
  EXPECT_EQ(Repair().marked.last, FrameAt(600));
  EXPECT_FALSE(Repair().markStart);  // the drag is whole: the next click begins anew
  EXPECT_EQ(Document().selectionStart, start);
  EXPECT_EQ(Document().selectionEnd, end);
}

TEST_F(RepairTest, ALongAnalysisThatIsCancelledLeavesTheContourAsItWas) {
  Open(WritePulses("long.wav", 95));
  const PitchContour before = Document().pitch;
  window->Dialogs().quietMilliseconds = 0;  // the analysis may take less than the half second
  int shown = 0;
  BoxWatcher watcher([&](QWidget& widget) {
    auto* progress = qobject_cast<QProgressDialog*>(&widget);
    ASSERT_NE(progress, nullptr);
    ++shown;
    progress->cancel();
  });
  ASSERT_TRUE(window->Dispatch(40005));
  EXPECT_EQ(shown, 1);
  EXPECT_FALSE(Document().pitchPresent);
  EXPECT_EQ(Document().pitch, before);
  EXPECT_EQ(window->findChild<QProgressDialog*>(), nullptr);
}

}  // namespace
}  // namespace parlowen
