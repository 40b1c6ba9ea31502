#include "annotation/MarkerWindow.h"

#include <gtest/gtest.h>

#include "annotation/MarkerFile.h"
#include "document/Desk.h"

namespace parlowen {
namespace {

using namespace testing;

struct MarkerDesk : Desk {
  MarkerState state;
  PlayStretch play = [](Window&, int, int) {};

  /// 100000 samples at 8000 Hz: 100 a column.
  void Load(const char* name = "a.wav") {
    Take(Ramp(100000), 8000);
    document.filePath = *name == 0 ? "" : folder / name;
    window.SetCaption("Parlowen(Tessiran) -- " + document.filePath);
  }
  void Open() { OpenMarkerWindow(window, document, state, play); }
  void Press(int number) { window.tool->Press(window, {number, ""}); }
  void Click(int column, int row) {
    const Point origin = window.tool->ClickOrigin();
    window.tool->Click(window, {column + origin.x, row + origin.y}, MouseButton::Left, false);
  }
  std::string Caption() const { return window.Caption(); }
  std::vector<int> Markers(int band) const {
    return {state.set.Markers(band).begin(), state.set.Markers(band).end()};
  }
};
using Ints = std::vector<int>;

TEST(MarkerWindow, SavesOnlyMarkersOfASoundThatIsAWavFile) {
  MarkerDesk desk;
  desk.Load("");
  desk.Open();
  desk.Press(1050);
  desk.Click(120, 150);  // the last band alone is enough
  for (const char* name : {"", "two.nsp", "one.wav.bak", "ONE.WAV"}) {
    desk.document.filePath = *name == 0 ? "" : desk.folder / name;  // a recording has none
    desk.window.SetCaption("Parlowen(Tessiran) -- " + desk.document.filePath);
    desk.window.Log();
    desk.Press(1);
    const bool saved = name == std::string("ONE.WAV");
    EXPECT_EQ(desk.window.Log(),
              Texts{saved ? "status|标志数据已保存为 " + (desk.folder / "ONE.lbl")
                          : "none|" + desk.Caption() + "|请先把录音保存为文件，再保存标志数据"});
    EXPECT_EQ(desk.state.changed, !saved);
  }
  EXPECT_EQ(ReadFile(desk.folder / "ONE.lbl").size(), kMarkerFileBytes);
}

TEST(MarkerWindow, AFailedSaveLeavesTheOldFile) {
  MarkerDesk desk;
  desk.Load("folder.1/a.wav");  // the name is cut in the folder's
  desk.Open();
  desk.Press(1050);
  desk.Click(120, 10);
  std::filesystem::create_directory(desk.folder / "folder.lbl");
  desk.window.Log();
  desk.Press(1);
  EXPECT_EQ(desk.window.Log(), Texts({"error|" + desk.window.Caption() + "|不能建立文件！"}));
  EXPECT_TRUE(desk.state.changed);
  std::filesystem::remove(desk.folder / "folder.lbl");
  desk.Press(1);
  EXPECT_EQ(desk.folder.Names(), std::vector<std::string>({"folder.lbl"}));
}

TEST(MarkerWindow, ReadsTheFileLeniently) {
  MarkerDesk desk;
  MarkerSet set;
  set.markerCount[0] = 2;
  set.markerPos[0] = 7000;
  set.markerPos[1] = 200000;
  const auto bytes = MarkerBytesOf(set);
  WriteFile(desk.folder / "a.lbl", bytes);
  desk.Load();
  desk.Open();
  EXPECT_EQ(desk.Markers(0), Ints({7000, 100000}));
  EXPECT_EQ(desk.window.Log(),
            Texts({"status|标志文件中有位置超出声音或次序不对，已更正：" + (desk.folder / "a.lbl")}));
  EXPECT_EQ(ReadFile(desk.folder / "a.lbl"), std::string(bytes.begin(), bytes.end()));

  WriteFile(desk.folder / "a.lbl", std::string(2577, '\0'));
  desk.Open();
  EXPECT_EQ(desk.window.Log(), Texts({"status|标志文件已损坏，没有读入：" + (desk.folder / "a.lbl")}));
  EXPECT_FALSE(desk.state.set.HasMarkers());
  std::filesystem::remove(desk.folder / "a.lbl");
  desk.Open();
  EXPECT_EQ(desk.window.Log(), Texts());
}

TEST(MarkerWindow, OfASoundThatIsGoneNothingIsLeftUnlessTheyAreShown) {
  MarkerDesk desk;
  MarkerSet set;
  set.markerCount[0] = 1;
  set.markerPos[0] = 7000;
  WriteFile(desk.folder / "a.lbl", MarkerBytesOf(set));
  for (const bool pane : {false, true}) {
    desk.Load();
    ShowLabelPane(desk.window, desk.document, desk.state, pane);
    EnsureMarkersRead(desk.document, desk.state);
    EXPECT_EQ(desk.state.set, set);
    desk.state.changed = true;
    desk.Load();  // the same file again
    DropOldMarkers(desk.window, desk.document, desk.state);
    EXPECT_EQ(desk.state.set, pane ? set : MarkerSet{});
    EXPECT_FALSE(desk.state.changed);
  }
}

TEST(MarkerWindow, NeighbouringLabelsDoNotCoverEachOther) {
  MarkerDesk desk;
  desk.Load();
  desk.Open();
  desk.Press(1050);
  for (const int column : {30, 300, 345, 1010}) desk.Click(column, 10);
  desk.Press(1052);
  desk.window.answers.assign(6, "ok:一二三四五六");
  for (const int column : {300, 345, 1010, 25, 320, 320}) desk.Click(column, 10);
  constexpr int kWidth = 72;  // of six hanzi
  std::vector<Point> places;
  for (const Mark& mark : desk.window.tool->Draw(1100, 520).marks)
    if (const auto* text = std::get_if<TextMark>(&mark); text != nullptr && text->face == Face::Ipa)
      places.push_back({text->x - (text->anchor == Anchor::Left    ? 0
                                   : text->anchor == Anchor::Right ? kWidth
                                                                   : kWidth / 2),
                        text->y});
  ASSERT_EQ(places.size(), 6u);
  EXPECT_EQ(places[1].y, places[0].y + 12) << "the second of two close points stands under the first";
  EXPECT_EQ(places[4].y, places[3].y);
  for (const Point& place : places) {
    EXPECT_GE(place.x, 20);
    EXPECT_LE(place.x + kWidth, 1020);
  }
}

TEST(MarkerWindow, TheDesktopCountsWithItsOwnWidthAScriptWithAThousand) {
  MarkerDesk desk;
  desk.Load();
  desk.Open();
  desk.window.tool->Draw(500, 640);  // a picture changes nothing
  desk.Press(1050);
  desk.Click(120, 10);
  desk.window.tool->Resized(524, 300);
  desk.Click(120, 50);
  EXPECT_EQ(desk.Markers(0), Ints({10000}));
  EXPECT_EQ(desk.Markers(1), Ints({20000}));
}

}  // namespace
}  // namespace parlowen
