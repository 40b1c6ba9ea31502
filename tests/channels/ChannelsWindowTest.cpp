#include "channels/ChannelsWindow.h"

#include <gtest/gtest.h>

#include "channels/ChannelFiles.h"
#include "document/EditCommands.h"
#include "dsp/SignalTables.h"
#include "support/FakeWindow.h"
#include "support/Samples.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;

struct Desk {
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  ChannelsState state;
  TempFolder folder;
  std::string exportFolder = folder.path();
  PlayChannel play;

  Desk() { InitSignalTables(); }
  /// A second of 500 Hz at 16000 Hz, nose 3 to mouth 4; the window is open.
  void Open() {
    Load(Sines(16000, 16000, {{500, 3000}}), Sines(16000, 16000, {{500, 4000}}));
    Show();
  }
  void Load(const std::vector<std::int16_t>& first, const std::vector<std::int16_t>& second) {
    std::copy(first.begin(), first.end(), document.samples.data());
    std::copy(second.begin(), second.end(), document.samples2.data());
    document.twoChannel = !second.empty();
    document.resetForNewSound(static_cast<int>(first.size()), 16000, states);
  }
  void Show() { ShowTwoChannelsCommand(window, {document, states, state, exportFolder, play}); }
  void Press(int number) {
    for (const ToolControl& control : window.tool->Controls())
      if (control.number == number && control.enabled) return window.tool->Press(window, control);
    window.log.push_back("grey");
  }
  void Select(int start, int end) {
    MarkStart(document, states, start);
    MarkEnd(document, states, end);
  }
  double Mean() const { return FiguresOf(state.Curve(document).values).mean; }
};

bool Shows(const Picture& picture, const std::string& part) {
  for (const Mark& mark : picture.marks)
    if (const auto* text = std::get_if<TextMark>(&mark);
        text != nullptr && text->text.find(part) != std::string::npos)
      return true;
  return false;
}

TEST(ChannelsWindow, ClicksMarkTheDocumentsSelection) {
  Desk desk;
  desk.Open();
  // 1024 − 20 columns for 16000 samples; with zoom 2 half of them, from the start that was scrolled to.
  ToolWindow& tool = *desk.window.tool;
  tool.Click(desk.window, {20 + 251, 5}, MouseButton::Left, false);
  tool.Click(desk.window, {20 + 502, 5}, MouseButton::Right, false);
  EXPECT_EQ(desk.document.selectionStart, 4000);
  EXPECT_EQ(desk.document.selectionEnd, 8000);
  EXPECT_TRUE(desk.states.Holds(Need::EditableSelection)) << "with the rules of a selection";
  EXPECT_EQ(desk.state.Curve(desk.document).start, 4000);
}

TEST(ChannelsWindow, ShowsBothChannelsAndTheRatio) {
  Desk desk;
  desk.Open();
  const Picture picture = desk.window.tool->Draw(1024, 640);
  for (const Mark& mark : picture.marks) {
    const auto* line = std::get_if<PolylineMark>(&mark);
    if (line == nullptr) continue;
    for (const Point point : line->points)
      ASSERT_TRUE(point.x >= 20 && point.x < 1024 && point.y >= 0 && point.y < 640);
  }
  EXPECT_NE(desk.window.tool->Hover({522, 0}).find("鼻音能量比 36.0%"), std::string::npos);
  // The window outlives the two channels, and a sound shorter than its columns.
  desk.Load({1, 2, 3}, {4, 5, 6});
  EXPECT_FALSE(Shows(desk.window.tool->Draw(1024, 640), "没有双声道数据！"));
  desk.Load({}, {1});
  desk.window.tool->Draw(1024, 640);
  desk.Load({1, 2, 3}, {});
  EXPECT_TRUE(Shows(desk.window.tool->Draw(25, 10), "没有双声道数据！"));
  for (const int button : {1, 2, 1201, 1202, 1203, 1205, 1206}) desk.Press(button);
  EXPECT_EQ(desk.window.Log(), Texts(7, "grey"));
}

TEST(ChannelsWindow, CalibratesOnTheSelection) {
  Desk desk;
  desk.Open();
  desk.Press(1202);
  EXPECT_EQ(desk.window.Log(), (Texts{"status|请先用鼠标左、右键选定语音段"}));
  desk.Select(1600, 8000);
  desk.Press(1202);
  EXPECT_NEAR(desk.state.settings.gainRatio, 4.0 / 3, 0.001);
  EXPECT_NEAR(desk.Mean(), 50, 0.01);
  SwapChannelsCommand(desk.window, desk.document, desk.states);
  EXPECT_NEAR(desk.Mean(), 100 * 256 / (256 + 81.0), 0.01) << "measured anew: (4·4/3)² to 3²";
  desk.window.Log();
  // The next sound keeps it: it belongs to the microphones. A stretch without sound changes nothing.
  desk.Load(std::vector<std::int16_t>(4000, 0), Sines(4000, 16000, {{500, 4000}}));
  desk.Select(0, 4000);
  desk.Press(1202);
  EXPECT_EQ(desk.window.Log(), (Texts{"none|Parlowen(Tessiran)|校准段内两个声道都应有声音！"}));
  EXPECT_NEAR(desk.state.settings.gainRatio, 4.0 / 3, 0.001);
}

TEST(ChannelsWindow, SavesOpensAndListsTheCurve) {
  Desk desk;
  desk.Open();
  desk.Select(1600, 8000);
  const std::vector<float> values = desk.state.Curve(desk.document).values;
  desk.window.answers = {"file:" + (desk.folder / "a.nas")};
  desk.Press(1203);
  desk.Select(3200, 4800);
  desk.window.answers = {"file:" + (desk.folder / "a.nas")};
  desk.Press(1204);
  EXPECT_EQ(desk.state.Curve(desk.document).values, values);
  desk.window.Log();
  desk.Press(1205);
  EXPECT_EQ(desk.window.Log(), (Texts{"editor|" + desk.folder.path() + "/NasRatio.txt"}));
  EXPECT_EQ(ReadFile(desk.folder / "NasRatio.txt"),
            NasRatioText(desk.state.Curve(desk.document), "a.nas", 16000));
  // A new stretch is measured again.
  desk.Select(3200, 4801);
  EXPECT_EQ(desk.state.Curve(desk.document).start, 3200);
  // Broken, missing, not to be written, cancelled.
  WriteFile(desk.folder / "b.nas", std::string("HEAD"));
  desk.window.answers = {"file:" + (desk.folder / "b.nas"), "file:" + (desk.folder / "c.nas"), "cancel",
                         "file:" + (desk.folder / "no/a.nas"), "cancel"};
  for (const int button : {1204, 1204, 1204, 1203, 1203}) desk.Press(button);
  desk.exportFolder = desk.folder / "no";
  desk.Press(1205);
  const std::string open = "open|打开鼻音能量比数据文件|", save = "save|保存鼻音能量比数据文件|",
                    error = "error|" + desk.window.Caption() + "|";
  EXPECT_EQ(desk.window.Log(),
            (Texts{open, error + "无此鼻音能量比数据文件！", open, error + "无此鼻音能量比数据文件！", open,
                   save, error + "不能建立文件！", save, error + "文件打开错误！"}));
  EXPECT_EQ(desk.state.Curve(desk.document).start, 3200);
}

}  // namespace
}  // namespace parlowen
