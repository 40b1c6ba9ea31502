// The label pane by mouse and keys: a sentence of two syllables.

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

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
      QTest::keyClicks(edit, "m<u");
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
  EXPECT_EQ(Set().labels[1], (MarkerLabel{second, third, "m<u"}));
  QHelpEvent help(QEvent::ToolTip, InBand(200), Labels().mapToGlobal(InBand(200)));
  QApplication::sendEvent(&Labels(), &help);
  EXPECT_EQ(QToolTip::text(), "<p>标志带 1  0.367–0.612 s  m&lt;u") << "plain, as markup";
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

TEST_F(LabelsTest, ATextThatCannotStayKeepsTheClickOutAndTheEditorSaysWhy) {
  QWidget parent, pane(&parent);
  parent.resize(600, 300);
  pane.setGeometry(10, 20, 500, 260);
  QPushButton elsewhere("x", &parent);
  int pressed = 0;
  QObject::connect(&elsewhere, &QPushButton::clicked, [&] { ++pressed; });
  parent.show();
  FormPlace place;
  InputForm form = OneFieldForm("标注", "文字", "ma", FieldKind::Text);
  form.place = &place;
  form.fields[0].maxGbkBytes = 4;
  const auto ask = [&](int y, Qt::Key key) {
    place = {200, y, 40, 16};
    LabelEditor editor(form, pane, 30, &parent);
    QTimer::singleShot(0, &editor, [&] {
      auto* edit = editor.findChild<QLineEdit*>();
      edit->setText("maaaa");
      const auto* palette = parent.findChild<IpaPalette*>();
      const bool stood = palette->isVisible();
      QTest::keyClick(edit, Qt::Key_F4);
      EXPECT_NE(palette->isVisible(), stood);
      QTest::keyClick(edit, Qt::Key_F4);
      QTest::mouseClick(&elsewhere, Qt::LeftButton);
      const auto* complaint = parent.findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
      EXPECT_TRUE(complaint->isVisible());
      const QRect box = complaint->geometry();
      const QRect over = editor.geometry();
      EXPECT_EQ(box.left(), over.left());
      EXPECT_EQ(y == 100 ? box.top() - over.bottom() : over.top() - box.bottom(), 3) << "two pixels between";
      edit->setText("mama");
      if (key != 0) return QTest::keyClick(edit, key);
      QTest::mouseClick(&elsewhere, Qt::LeftButton);
    });
    return editor.Ask();
  };
  EXPECT_FALSE(ask(100, Qt::Key_Escape));
  EXPECT_EQ(form.fields[0].value, "ma");
  EXPECT_EQ(pressed, 0);
  EXPECT_TRUE(ask(258, {}));
  EXPECT_EQ(form.fields[0].value, "mama");
  EXPECT_EQ(pressed, 1);
}

}  // namespace
}  // namespace parlowen
