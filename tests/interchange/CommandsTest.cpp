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
  EXPECT_EQ(e.markers.sound, e.document.Stamp());
  EXPECT_EQ(e.markers.set.labels[0].text, "音");
  EXPECT_EQ(e.annotations.items.size(), 1u) << "the file has no tier for them";
  EXPECT_FALSE(e.annotations.changed);

  EXPECT_EQ(e.ImportGrid(Grid(kAnnotations)), Texts{"status|已读入：注释字符 1"});
  EXPECT_EQ(e.annotations.items[0].position, 8000);
  EXPECT_TRUE(e.annotations.changed);
  EXPECT_EQ(e.annotations.sound, e.document.Stamp());
  EXPECT_EQ(e.markers.set.markerCount[0], 1) << "and this one none for markers";
}

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
  EXPECT_EQ(e.calls, "show ");
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
  EXPECT_EQ(e.window.Log(), (Texts{"none|" + e.window.Caption() + "|没有标注文字，不能导出！",
                                   "none|" + e.window.Caption() + "|没有标志，不能导出！"}));
}

TEST(ExchangeCommands, AFailedWriteIsSaidAndLeavesTheOldFile) {
  Exchange e;
  std::filesystem::create_directory(e.folder / "a.TextGrid");
  e.window.answers = {"file:" + (e.folder / "a.TextGrid"), "file:" + (e.folder / "none/a.csv")};
  ExportTextGridCommand(e.window, e.desk);
  ExportLevelsCsvCommand(e.window, e.document);
  const std::string refusal = "error|文件夹或文件名错误|文件夹或文件名不对，请重选";
  const Texts log = e.window.Log();
  EXPECT_EQ(log[1], refusal);
  EXPECT_EQ(log[3], refusal);
  EXPECT_TRUE(std::filesystem::is_directory(e.folder / "a.TextGrid"));
}

TEST(ExchangeCommands, ASelectionShorterThanAFrameHasNoFormants) {
  Exchange e;
  ExportFormantCommand(e.window, e.document);
  e.Mark(100, 259);
  ExportFormantsCsvCommand(e.window, e.document);
  EXPECT_EQ(e.window.Log(), (Texts{"status|请先用鼠标左、右键选定语音段",
                                   "none|" + e.window.Caption() + "|语音段太短，请重新选定！"}));
  e.Mark(100, 260);
  e.window.answers = {"file:" + (e.folder / "f.csv")};
  ExportFormantsCsvCommand(e.window, e.document);
  EXPECT_NE(ReadFile(e.folder / "f.csv").find("\n0.01625,"), std::string::npos);
}

TEST(ExchangeCommands, APitchTierBecomesATargetOrIsRefused) {
  Exchange e;
  const auto read = [&](const std::string& text) {
    e.window.answers = {"file:" + WriteFile(e.folder / "m.PitchTier", text)};
    return ReadPitchTierTarget(e.window, 16000, 10, 2);
  };
  EXPECT_EQ(read("\"ooTextFile\" \"PitchTier\" 0 1 1 0.5 160"), (TargetCurve{100, 100}));
  EXPECT_EQ(e.window.Log(), Texts{"open|打开PitchTier文件|"});
  const std::pair<const char*, const char*> refused[] = {
      {"x", "不是PitchTier文件！"},
      {"\"ooTextFile\" \"PitchTier\" 0", "PitchTier文件数据错误！"},
      {"\"ooTextFile\" \"PitchTier\" 0 1 0", "PitchTier文件中没有基频点！"}};
  for (const auto& [text, message] : refused) {
    EXPECT_FALSE(read(text));
    EXPECT_EQ(e.window.Log()[1], std::string("error||") + message);
  }
  EXPECT_FALSE(ReadPitchTierTarget(e.window, 16000, 10, 2)) << "cancelled";
}

}  // namespace
}  // namespace parlowen
