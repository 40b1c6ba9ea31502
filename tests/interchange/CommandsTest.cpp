// The handlers: what they ask, refuse and leave as it was.

#include "interchange/ExchangeCommands.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "document/Desk.h"
#include "interchange/PitchObjects.h"

namespace parlowen {
namespace {

using namespace testing;

struct Exchange : Desk {
  MarkerState markers;
  AnnotationState annotations;
  int shown = 0;
  MarkerDesk desk{document, markers, annotations, [] {}, [this] { ++shown; }};

  Exchange() { Load(Ramp(16000)); }
  Texts ImportGrid(const std::string& bytes) {
    ImportTextGridFile(window, desk, WriteFile(folder / "x.TextGrid", bytes));
    return window.Log();
  }
};

std::string Grid(const std::string& tiers) { return "\"ooTextFile\" \"TextGrid\" 0 1 <exists> " + tiers; }
const std::string kOneTier = "1 \"IntervalTier\" \"a\" 0 1 2 0 0.5 \"音\" 0.5 1 \"\"";

TEST(ExchangeCommands, ARefusedFileChangesNothing) {
  Exchange e;
  e.ImportGrid(Grid(kOneTier));
  e.markers.changed = false;
  const std::pair<std::string, const char*> files[] = {
      {"RIFF", "不是TextGrid文件！"},
      {Grid(kOneTier).substr(0, 60), "TextGrid文件数据错误！"},
      {Grid("0"), "TextGrid文件中没有层！"}};
  for (const auto& [bytes, text] : files)
    EXPECT_EQ(e.ImportGrid(bytes), Texts{std::string("error||") + text});
  ImportTextGridFile(e.window, e.desk, e.folder / "missing");
  EXPECT_EQ(e.window.Log(), Texts{"error||无此TextGrid文件！"});
  e.window.answers = {"file:" + WriteFile(e.folder / "t.txt", std::string("0\t1\ta\nx")),
                      "file:" + WriteFile(e.folder / "u.txt", std::string("\n"))};
  ImportLabelTrackCommand(e.window, e.desk);
  ImportLabelTrackCommand(e.window, e.desk);
  EXPECT_EQ(e.window.Log(), (Texts{"open|导入标签轨|", "error||标签轨文件第2行数据错误！", "open|导入标签轨|",
                                   "error||标签轨文件中没有标签！"}));
  EXPECT_FALSE(e.markers.changed);
  EXPECT_EQ(e.markers.set.labels[0].text, "音");
  EXPECT_EQ(e.shown, 1);
}

TEST(ExchangeCommands, LossesAndGuessedEncodingsAreSaid) {
  Exchange e;
  const std::string tiers =
      "2 \"IntervalTier\" \"a\" 0 1 1 0 1 \"一二三四五六七\" \"TextTier\" \"b\" 0 1 2 0.5 \"\" 5 \"\"";
  EXPECT_EQ(
      e.ImportGrid(ToGbk(Grid(tiers))),
      (Texts{"info|" + e.window.Caption() + "|文件不是Unicode编码，已按GBK读入",
             "status|已读入：标志 1，标注文字 1",
             "warning|" + e.window.Caption() +
                 "|没有读入的声音之外的段和点：1\n截短的文字（标注文字最长12字符，注释字符最长9字符）：1"}));
  EXPECT_EQ(e.markers.set.labels[0].text, "一二三四五六");
}

}  // namespace
}  // namespace parlowen
