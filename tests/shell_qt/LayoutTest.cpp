#include <QApplication>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include "shell/qt/ElidedLabel.h"
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
}

}  // namespace
}  // namespace parlowen
