// What painting comes to, and where everything lies at several sizes of the window.
#include <QApplication>
#include <QPainter>

#include "base/Format.h"
#include "shell/qt/LevelMeter.h"
#include "shell/qt/PicturePainter.h"
#include "shell/qt/ToolWidget.h"
#include "shell_qt/Doubles.h"
#include "shell_qt/PaintRecord.h"
#include "support/Kept.h"

namespace parlowen {
namespace {

const std::string kHere = PARLOWEN_SOURCE_DIR "/tests/shell_qt/";

TEST(PaintTest, EveryKindOfMark) {
  Picture picture{90, 60, {}};
  picture.around = {5, 4, 3, 2};
  const BoxMark other{0, 0, 1, 1};  // whose edges are not smooth
  for (const LineStyle style : {LineStyle::Solid, LineStyle::Dashed, LineStyle::Dotted}) {
    picture.Add(LineMark{{2, 3}, {2, 24}, 0x010203, 1, style});
    picture.Add(LineMark{{30, 7}, {11, 7}, 0x040506, 2, style});
    picture.Add(LineMark{{1, 9}, {20, 30}, 0x070809, 3, style});
    picture.Add(other);
    picture.Add(PolylineMark{{{1, 2}, {10, 20}, {30, 5}}, 0x0A0B0C, 2, style});
  }
  picture.Add(PolylineMark{{{1, 2}}});
  picture.Add(other);
  picture.Add(PolygonMark{{{40, 2}, {50, 20}, {45, 30}}, 0x0D0E0F, 0.5});
  picture.Add(BoxMark{50, 10, 6, 4, 0x101112, 0.25, true, 0x131415});
  picture.Add(BoxMark{60, 10, 6, 4, 0x161718, 0, true, 0x191A1B});
  picture.Add(BoxMark{70, 10, 1, 0, 0x1C1D1E, 1, true});
  picture.Add(OvalMark{60, 20, 8, 5, 0x1F2021, true, 0x222324});
  picture.Add(OvalMark{60, 30, 8, 5});
  picture.Add(ClipMark{20, 20, 40, 30});
  for (const Anchor anchor : {Anchor::Left, Anchor::Middle, Anchor::Right})
    picture.Add(TextMark{40, 40, "a声", 0x252627, 11, anchor, Face::Figures});
  picture.Add(ClipMark{22, 22, 38, 28});
  picture.Add(GreyImageMark{20, 25, 12, 9, 2, 2, {0, 80, 160, 255}, false});
  picture.Add(GreyImageMark{20, 25, 12, 9, 2, 2, {0, 80, 160, 255}, true});
  picture.Add(GreyImageMark{20, 25, 12, 9, 2, 3, {0, 80, 160, 255}, false});
  picture.Add(ClipMark{});
  picture.Add(ColourImageMark{70, 40, 4, 2, 2, 1, {1, 2, 3, 250, 251, 252}});
  std::string painted;
  for (const double scale : {1.0, 1.5}) {
    PaintRecord record({200, 100});
    QPainter painter(&record);
    painter.scale(scale, scale);
    PaintPicture(painter, picture);
    painter.drawPoint(0, 0);  // with what the picture leaves behind
    painter.end();
    painted += record.Text() + "\n";
  }
  ExpectPainted(kHere + "marks.painted", painted);
}

TEST(PaintTest, TheMeterFromSilenceToClipping) {
  LevelMeter meter(nullptr);
  meter.resize(220, 16);
  std::string painted;
  for (const BlockLevels& levels :
       {BlockLevels{}, {0, 0, 31}, {0, 0, 16422}, {0, 0, 16423}, {0, 0, 32768, true}, {}}) {
    meter.SetLevels(levels);
    painted += meter.accessibleDescription().toStdString() + "\n" + PaintedBy(meter);
  }
  int blocks = 1;
  for (; meter.ShowsClipping() && blocks < 100; ++blocks) meter.SetLevels({});
  EXPECT_EQ(blocks, 20);
  ExpectPainted(kHere + "meter.painted", painted);
}

class PlacesTest : public WindowTest {};

TEST_F(PlacesTest, AtSeveralSizes) {
  Open(SoundsFile("english_male_sentence_16000.wav"));
  Station().Select(3000, 9000);
  ASSERT_TRUE(window->Dispatch(170));
  std::string places;
  const auto see = [&](const char* what) {
    for (const QSize size : {QSize(1024, 720), QSize(1280, 800), QSize(1920, 1080)}) {
      window->resize(size);
      for (int i = 0; i < 3; ++i) QApplication::processEvents();
      places += Format("%s %d %d\n", what, window->width(), window->height()) + PlacesIn(*window);
    }
  };
  see("panes");
  ASSERT_TRUE(window->Dispatch(41052));
  see("panes and labels");
  ASSERT_TRUE(window->Dispatch(41052));
  see("panes again");
  {
    BoxWatcher watcher("是(&Y)");
    ASSERT_TRUE(window->Dispatch(40056));
  }
  ToolWidget* tool = window->Dialogs().FindToolWindow("vowels");
  ASSERT_NE(tool, nullptr);
  for (const QSize size : {QSize(100, 100), QSize(1000, 700), QSize(1700, 900)}) {
    tool->resize(size);
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
    places += Format("tool %d %d\n", tool->width(), tool->height()) + PlacesIn(*tool) +
              testing::SizeAndDigest(PaintedBy(*tool->Canvas())) + "\n";
  }
  ExpectPainted(kHere + "places.painted", places);
}

}  // namespace
}  // namespace parlowen
