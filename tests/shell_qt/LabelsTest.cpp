// The label pane by mouse and keys: a sentence of two syllables.

#include <QApplication>
#include <QLineEdit>
#include <QSplitter>
#include <QTest>
#include <QToolButton>

#include "annotation/LabelPicture.h"
#include "shell/qt/IpaPalette.h"
#include "shell/qt/LabelEditor.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class LabelsTest : public WindowTest {
 protected:
  PaneWidget& Labels() { return window->PaneOf(Pane::Labels); }
  QPoint InBand(int column, int band = 0) {
    return {PaneWidget::kGutter + column, LabelRowTop(band, Labels().height()) + 5};
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    QApplication::processEvents();
  }
  const MarkerSet& Set() { return Station().markers.set; }
};

TEST_F(LabelsTest, ASentenceIsLabelledWithoutLeavingThePanes) {
  Open(SoundsFile("mandarin_mao_four_tones_male_44100.wav"));
  ASSERT_FALSE(Labels().isVisible());
  const int analysis = window->PaneOf(Pane::Analysis).height(), wave = Waveform().height();
  ASSERT_TRUE(window->Dispatch(41052));
  QApplication::processEvents();
  ASSERT_TRUE(Labels().isVisible());
  EXPECT_EQ(window->size(), QSize(1024, 720));
  EXPECT_NEAR(Waveform().height(), wave, 3) << "the analysis pane and the overview give the height";
  EXPECT_LT(window->PaneOf(Pane::Analysis).height(), analysis);
  EXPECT_GE(window->PaneOf(Pane::Analysis).height(), 100);

  // A stretch dragged in the waveform, Enter there.
  Activate();
  Waveform().setFocus();
  QTest::mousePress(&Waveform(), Qt::LeftButton, {}, At(Waveform(), 60));
  QTest::mouseMove(&Waveform(), At(Waveform(), 100));
  QTest::mouseMove(&Waveform(), At(Waveform(), 140));
  QTest::mouseRelease(&Waveform(), Qt::LeftButton, {}, At(Waveform(), 140));
  Key(Qt::Key_Return);
  ASSERT_EQ(Set().markerCount[0], 2);
  // The next boundary with a click and Enter in the pane.
  QTest::mouseClick(&Labels(), Qt::LeftButton, {}, InBand(220));
  Key(Qt::Key_Return);
  ASSERT_EQ(Set().markerCount[0], 3);
  const int second = Set().markerPos[1], third = Set().markerPos[2];

  // A double click; the text, a symbol of the palette, Tab to the next, its text, Enter.
  bool paletteStood = false, nextShown = false;
  QTimer typing;
  typing.setSingleShot(true);
  int step = 0;
  QObject::connect(&typing, &QTimer::timeout, [&] {
    auto* editor = window->findChild<LabelEditor*>();
    ASSERT_NE(editor, nullptr);
    auto* edit = editor->findChild<QLineEdit*>();
    if (step++ == 0) {
      editor->findChild<QToolButton*>()->click();
      for (const auto* palette : window->findChildren<IpaPalette*>())
        paletteStood = paletteStood || palette->isVisible();
      QTest::keyClicks(edit, "ma");
      typing.start(50);
      QTest::keyClick(edit, Qt::Key_Tab);
    } else {
      nextShown = edit->text().isEmpty() && Station().player.playing() == false;
      QTest::keyClicks(edit, "mu");
      QTest::keyClick(edit, Qt::Key_Return);
    }
  });
  typing.start(50);
  QTest::mouseDClick(&Labels(), Qt::LeftButton, {}, InBand(100));
  EXPECT_EQ(step, 2);
  EXPECT_TRUE(paletteStood);
  EXPECT_TRUE(nextShown);
  ASSERT_EQ(Set().labelCount[0], 2);
  EXPECT_EQ(Set().labels[0].text, "ma");
  EXPECT_EQ(Set().labels[1], (MarkerLabel{second, third, "mu"}));
  EXPECT_EQ(Document().selectionStart, second);
  EXPECT_EQ(Document().selectionEnd, third);
  EXPECT_TRUE(window->isWindowModified());

  // Dragging the boundary between them, then the step back.
  QTest::mousePress(&Labels(), Qt::LeftButton, {}, InBand(140));
  for (const int x : {142, 150, 170}) QTest::mouseMove(&Labels(), InBand(x));
  QTest::mouseRelease(&Labels(), Qt::LeftButton, {}, InBand(170));
  EXPECT_EQ(Set().markerPos[1], 150 * Document().samplesPerPixel);
  EXPECT_EQ(Set().labels[0].end, Set().markerPos[1]);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Set().markerPos[1], second);
  // The label, then nothing: both neighbours of the marker must go first.
  QTest::mouseClick(&Labels(), Qt::LeftButton, {}, InBand(180));
  Key(Qt::Key_Delete);
  EXPECT_EQ(Set().labelCount[0], 1);
  Key(Qt::Key_2);
  EXPECT_EQ(Station().markers.view.band, 1);

  {
    BoxWatcher no("取消");
    EXPECT_FALSE(window->close());
    EXPECT_EQ(no.texts, QStringList("标志已经改动，还没有保存。"));
  }
  BoxWatcher away("放弃(&D)");
  auto* splitter = window->findChild<QSplitter*>();
  Q_EMIT splitter->splitterMoved(0, 1);  // as a hand would
  splitter->setSizes({100, 120, 150, 100, 100});
  QApplication::processEvents();
  const QList<int> heights = splitter->sizes();
  EXPECT_TRUE(window->close());
  Restart();
  QApplication::processEvents();
  EXPECT_TRUE(Labels().isVisible()) << "remembered";
  const QList<int> again = window->findChild<QSplitter*>()->sizes();
  EXPECT_EQ(again[4], heights[4]) << "so is its height";
  EXPECT_GT(again[2], again[1]) << "and the others'";
}

}  // namespace
}  // namespace parlowen
