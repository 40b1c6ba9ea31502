#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QRawFont>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>

#include "shell/qt/ElidedLabel.h"
#include "shell/qt/OverviewStrip.h"
#include "shell/qt/TimeAxisStrip.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class LayoutTest : public WindowTest {};

TEST_F(LayoutTest, EverythingHasItsPlaceAt1024By720) {
  Open(SoundsFile("mandarin_mao_four_tones_male_44100.wav"));
  Station().Select(10000, 120000);
  ASSERT_TRUE(window->Dispatch(170));
  QApplication::processEvents();
  ASSERT_EQ(window->size(), QSize(1024, 720)) << "something asks for more room";

  std::vector<QWidget*> parts = {window->menuBar(), window->findChild<QToolBar*>(), window->findChild<TimeAxisStrip*>(),
                                 window->findChild<OverviewStrip*>()};
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform}) parts.push_back(&window->PaneOf(pane));
  for (auto* label : window->findChildren<ElidedLabel*>()) parts.push_back(label);
  std::vector<QRect> places;
  for (QWidget* part : parts) {
    ASSERT_NE(part, nullptr);
    const QRect place(part->mapTo(window.get(), QPoint()), part->size());
    EXPECT_TRUE(window->rect().contains(place));
    for (const QRect& other : places) EXPECT_FALSE(place.intersects(other)) << place.y() << " and " << other.y();
    places.push_back(place);
  }
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_GE(window->PaneOf(pane).height(), 100);
}

TEST_F(LayoutTest, NoTextIsCutAt1024By720) {
  Open(SoundsFile("mandarin_mao_four_tones_male_44100.wav"));
  Station().Select(10000, 120000);
  ASSERT_TRUE(window->Dispatch(170));
  for (auto* label : window->findChildren<ElidedLabel*>()) {
    EXPECT_EQ(label->text(), label->Text());
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

TEST_F(LayoutTest, APaneCannotBeMadeLowerThanAHundredPixels) {
  auto* splitter = window->findChild<QSplitter*>();
  window->resize(1024, 900);
  QApplication::processEvents();
  splitter->setSizes({1, 1, 1000, 1});
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_GE(window->PaneOf(pane).height(), 100);
}

TEST_F(LayoutTest, TheHeightsAreAsOneToOneAndAHalfToThree) {
  window->resize(1400, 1100);
  QApplication::processEvents();
  const double unit = window->PaneOf(Pane::Amplitude).height();
  EXPECT_NEAR(window->PaneOf(Pane::Pitch).height() / unit, 1.5, 0.1);
  EXPECT_NEAR(window->PaneOf(Pane::Analysis).height() / unit, 3.0, 0.2);
  EXPECT_NEAR(window->PaneOf(Pane::Waveform).height() / unit, 1.5, 0.1);
}

TEST(FontTest, TheInterfaceFontHasTheCharactersOfTheLabels) {
  QFont font;
  font.setFamilies({"Noto Sans CJK SC", "WenQuanYi Micro Hei", "DejaVu Sans"});
  const QRawFont raw = QRawFont::fromFont(font, QFontDatabase::SimplifiedChinese);
  QString characters = "起止秒幅度能量窗";
  for (const CommandRow& row : CommandTable()) characters += QString(row.label);
  for (const QChar character : characters) EXPECT_TRUE(raw.supportsCharacter(character)) << QString(character).toStdString();
}

}  // namespace
}  // namespace parlowen
