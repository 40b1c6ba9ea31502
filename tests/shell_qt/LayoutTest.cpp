#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QSplitter>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include "shell/qt/ElidedLabel.h"
#include "shell/qt/FormDialog.h"
#include "shell/qt/IpaPalette.h"
#include "shell/qt/OverviewStrip.h"
#include "shell/qt/TimeAxisStrip.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class LayoutTest : public WindowTest {};

TEST_F(LayoutTest, EverythingHasItsPlaceAndNoTextIsCutAt1024By720) {
  Open(SoundsFile("mandarin_mao_four_tones_male_44100.wav"));
  Station().Select(10000, 120000);
  ASSERT_TRUE(window->Dispatch(170));
  QApplication::processEvents();
  ASSERT_EQ(window->size(), QSize(1024, 720)) << "something asks for more room";

  std::vector<QWidget*> parts = {window->menuBar(), window->findChild<QToolBar*>(),
                                 window->findChild<TimeAxisStrip*>(), window->findChild<OverviewStrip*>()};
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
    parts.push_back(&window->PaneOf(pane));
  for (auto* label : window->findChildren<ElidedLabel*>()) parts.push_back(label);
  std::vector<QRect> places;
  for (QWidget* part : parts) {
    ASSERT_NE(part, nullptr);
    const QRect place(part->mapTo(window.get(), QPoint()), part->size());
    EXPECT_TRUE(window->rect().contains(place));
    for (const QRect& other : places)
      EXPECT_FALSE(place.intersects(other)) << place.y() << " and " << other.y();
    places.push_back(place);
  }
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_GE(window->PaneOf(pane).height(), 100);

  for (auto* label : window->findChildren<ElidedLabel*>()) {
    EXPECT_EQ(label->text().toStdString(), label->Text().toStdString());
    EXPECT_GE(label->height(), label->fontMetrics().height());
  }
  for (auto* button : window->findChild<QToolBar*>()->findChildren<QToolButton*>()) {
    if (button->text().isEmpty()) {
      EXPECT_FALSE(button->isVisible()) << "the tool bar does not fit";
    } else {
      EXPECT_GE(button->width(), button->sizeHint().width());
    }
  }
  const QMenuBar* menus = window->menuBar();
  for (QAction* action : menus->actions()) {
    const QRect place = menus->actionGeometry(action);
    EXPECT_FALSE(place.isEmpty()) << action->text().toStdString();
    EXPECT_LE(place.right(), menus->width());
  }
  // Labels and the bar about the rate leave room for a title bar.
  ASSERT_TRUE(window->Dispatch(41052));
  QApplication::processEvents();
  EXPECT_LE(window->minimumSizeHint().height(), 690);
  EXPECT_GE(window->PaneOf(Pane::Labels).height(), 90);
}

TEST_F(LayoutTest, TheChartTakesThePlaceOfTheThreeLowerPanesAndGivesItBack) {
  Open(SoundsFile("english_male_sentence_16000.wav"));
  PaneWidget& chart = window->PaneOf(Pane::Chart);
  auto* splitter = window->findChild<QSplitter*>();
  Q_EMIT splitter->splitterMoved(0, 1);  // as a hand would
  splitter->setSizes({90, 150, 150, 130});
  const QList<int> before = splitter->sizes();
  const QPoint below = Waveform().mapTo(window.get(), QPoint(0, Waveform().height() - 1));
  ASSERT_FALSE(chart.isVisible());
  {
    // Yes, in the notice OK: frequency coordinates.
    BoxWatcher watcher([](QWidget& box) {
      for (const char* text : {"是(&Y)", "确定"})
        for (auto* button : box.findChildren<QAbstractButton*>())
          if (button->text() == text) return button->click();
    });
    ASSERT_TRUE(window->Dispatch(40057));
  }
  Activate();
  QApplication::processEvents();
  EXPECT_EQ(window->size(), QSize(1024, 720));
  for (const Pane pane : {Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_FALSE(window->PaneOf(pane).isVisible());
  EXPECT_FALSE(window->findChild<TimeAxisStrip*>()->isVisible());
  EXPECT_TRUE(window->PaneOf(Pane::Amplitude).isVisible());
  EXPECT_TRUE(chart.isVisible());
  EXPECT_TRUE(chart.hasFocus());
  EXPECT_GE(chart.mapTo(window.get(), QPoint(0, chart.height() - 1)).y(), below.y());
  EXPECT_EQ(chart.PaneSize().width(), Document().paneWidth);
  // The corners of the group plot, the lowest fixed marks, are in rows up to 520.
  EXPECT_GE(chart.RowsToBottom(), 530);
  QTest::keyClick(&chart, Qt::Key_Escape);
  Activate();
  QApplication::processEvents();
  EXPECT_FALSE(chart.isVisible());
  EXPECT_TRUE(Waveform().hasFocus());
  EXPECT_EQ(splitter->sizes(), before);
}

TEST_F(LayoutTest, ThePaletteInsertsAtTheCursor) {
  FormField field;
  field.control = 1028;
  field.phonetic = true;
  field.value = "ab";
  InputForm form{"插入字符", {field}};
  FormDialog dialog(form, window.get());
  dialog.show();
  auto* palette = dialog.findChild<IpaPalette*>();
  ASSERT_NE(palette, nullptr);
  dialog.Edit(1028)->setCursorPosition(1);
  auto* all = qobject_cast<QListWidget*>(palette->widget(1));
  palette->setCurrentIndex(1);
  QApplication::processEvents();
  QTest::mouseClick(all->viewport(), Qt::LeftButton, Qt::NoModifier,
                    all->visualItemRect(all->item(51)).center());
  EXPECT_EQ(dialog.Edit(1028)->text(), "aɿb");
  auto* common = qobject_cast<QListWidget*>(palette->widget(0));
  palette->setCurrentIndex(0);
  common->setCurrentItem(common->findItems("tɕʰ", Qt::MatchExactly).value(0));
  ASSERT_NE(common->currentItem(), nullptr);
  QTest::keyClick(common, Qt::Key_Return);
  EXPECT_EQ(dialog.Edit(1028)->text(), "aɿtɕʰb");
  EXPECT_TRUE(dialog.isVisible()) << "Enter belongs to the symbol";
  form.fields[0].phonetic = false;
  EXPECT_EQ(FormDialog(form, window.get()).findChild<IpaPalette*>(), nullptr);
}

}  // namespace
}  // namespace parlowen
