// The handlers: what they ask, refuse and leave as it was.

#include "interchange/ExchangeCommands.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "document/Desk.h"

namespace parlowen {
namespace {

using namespace testing;

struct Exchange : Desk {
  MarkerState markers;
  AnnotationState annotations;
  std::string calls;
  MarkerDesk desk{document, markers, annotations, [this] { calls += "read "; }, [this] { calls += "show "; }};

  Exchange() { Load(Ramp(16000)); }
  Texts ImportGrid(const std::string& bytes) {
    ImportTextGridFile(window, desk, WriteFile(folder / "x.TextGrid", bytes));
    return window.Log();
  }
};

std::string Grid(const std::string& tiers) { return "\"ooTextFile\" \"TextGrid\" 0 1 <exists> " + tiers; }
const std::string kOneTier = "1 \"IntervalTier\" \"a\" 0 1 2 0 0.5 \"音\" 0.5 1 \"\"";
const std::string kAnnotations = "1 \"TextTier\" \"音标\" 0 1 1 0.5 \"x\"";

TEST(ExchangeCommands, AnImportTakesThePlaceOfTheSetAndMarksItChanged) {
  Exchange e;
  e.annotations.items = {{"old", 1}};
  EXPECT_EQ(e.ImportGrid(Grid(kOneTier)), Texts{"status|已读入：标志 1，标注文字 1"});
  EXPECT_EQ(e.calls, "show ");
  EXPECT_TRUE(e.markers.changed);
  EXPECT_EQ(e.markers.generation, e.document.soundGeneration);
  EXPECT_EQ(e.markers.set.labels[0].text, "音");
  EXPECT_EQ(e.annotations.items.size(), 1u) << "the file has no tier for them";
  EXPECT_FALSE(e.annotations.changed);

  EXPECT_EQ(e.ImportGrid(Grid(kAnnotations)), Texts{"status|已读入：注释字符 1"});
  EXPECT_EQ(e.annotations.items[0].position, 8000);
  EXPECT_TRUE(e.annotations.changed);
  EXPECT_EQ(e.annotations.generation, e.document.soundGeneration);
  EXPECT_EQ(e.markers.set.markerCount[0], 1) << "and this one none for markers";
}

TEST(ExchangeCommands, LossesAndGuessedEncodingsAreSaid) {
  Exchange e;
  const std::string tiers = "2 \"IntervalTier\" \"a\" 0 1 1 0 1 \"一二三四五六七\" \"TextTier\" \"b\" 0 1 2 0.5 \"\" 5 \"\"";
  EXPECT_EQ(e.ImportGrid(ToGbk(Grid(tiers))),
            (Texts{"info|" + e.window.Caption() + "|文件不是Unicode编码，已按GBK读入", "status|已读入：标志 1，标注文字 1",
                   "warning|" + e.window.Caption() + "|没有读入的声音之外的段和点：1\n截短的文字（标注文字最长12字符，注释字符最长9字符）：1"}));
  EXPECT_EQ(e.markers.set.labels[0].text, "一二三四五六");
}

TEST(ExchangeCommands, MarkersOfAnotherSoundAreNotExported) {
  Exchange e;
  e.ImportGrid(Grid(kOneTier));
  e.calls.clear();
  e.window.answers = {"file:" + (e.folder / "own.TextGrid")};
  ExportTextGridCommand(e.window, e.desk);
  EXPECT_NE(ReadFile(e.folder / "own.TextGrid").find("text = \"音\""), std::string::npos);
  EXPECT_EQ(e.window.Log(), Texts{"save|导出TextGrid文件|" + (e.folder / "sound1.TextGrid")});
  EXPECT_EQ(e.calls, "read ");
  e.Load(Ramp(8000));
  e.window.answers = {"file:" + (e.folder / "empty.TextGrid")};
  ExportTextGridCommand(e.window, e.desk);
  EXPECT_EQ(ReadFile(e.folder / "empty.TextGrid").find("音"), std::string::npos);
  e.window.Log();
  ExportLabelTrackCommand(e.window, e.desk);
  ExportMarkersCsvCommand(e.window, e.desk);
  EXPECT_EQ(e.window.Log(), (Texts{"none|" + e.window.Caption() + "|没有标注文字，不能导出！", "none|" + e.window.Caption() + "|没有标志，不能导出！"}));
}

TEST(ExchangeCommands, ASelectionShorterThanAFrameHasNoFormants) {
  Exchange e;
  ExportFormantCommand(e.window, e.document);
  e.Mark(100, 259);
  ExportFormantsCsvCommand(e.window, e.document);
  EXPECT_EQ(e.window.Log(), (Texts{"status|请先用鼠标左、右键选定语音段", "none|" + e.window.Caption() + "|语音段太短，请重新选定！"}));
  e.Mark(100, 260);
  e.window.answers = {"file:" + (e.folder / "f.csv")};
  ExportFormantsCsvCommand(e.window, e.document);
  EXPECT_NE(ReadFile(e.folder / "f.csv").find("\n0.01625,"), std::string::npos);
}

}  // namespace
}  // namespace parlowen
