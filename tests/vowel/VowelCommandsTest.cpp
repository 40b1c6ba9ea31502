#include "vowel/VowelCommands.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Bytes.h"
#include "support/Child.h"
#include "support/TempFolder.h"
#include "vowel/FormantFile.h"
#include "vowel/SegmentChart.h"
#include "vowel/VowelChartFile.h"
#include "vowel/VowelGroupCommands.h"
#include "vowel/Vowels.h"

namespace parlowen {
namespace {

using testing::kVowels;
using testing::MiddleOf;
using testing::ReadFile;
using testing::TempFolder;
using testing::Texts;
using testing::WriteFile;

std::string Notice(const char* text, const char* caption = nullptr, const char* icon = "none") {
  return std::string(icon) + "|" + (caption != nullptr ? caption : "Parlowen(Tessiran)") + "|" + text;
}

const std::string kFull = Notice("点数已满，不能再加入!", nullptr, "error");
const std::string kCoordinates = "ask|Parlowen(Tessiran)|使用频率坐标(yes)? 或 Bark 相对坐标（No)？";
const std::string kDeleteOrModify = "ask|删除或修改|删除(Yes)?修改(No)？";
const std::string kSplit = "ask|分解F1？|分解F1为两个(yes)?";
const std::string kMerge = "ask|修改方法|合并F1,F2(yes)?删除F1(No)";

class VowelCommands : public ::testing::Test, protected testing::VowelStation {
 protected:
  VowelCommands() { window.SetCaption("Parlowen(Tessiran)"); }

  void Answer(std::deque<std::string> answers) { window.answers = std::move(answers); }
  void Open(bool hertz = true) {
    Answer({hertz ? "yes" : "no", "ok:120"});
    PointChartCommand(window, document, states, vowels);
    window.answers.clear();
    window.log.clear();
  }
  void ClickAt(int sample) { ClickVowel(window, document, states, vowels, sample); }
  Texts Undo(std::deque<std::string> answers) {
    Answer(std::move(answers));
    UndoPointCommand(window, document, states, vowels);
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  Texts Type(std::deque<std::string> answers) {
    Answer(std::move(answers));
    TypePointCommand(window, document, states, vowels);
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  const VowelPoint& Last() const { return vowels.chart.points[static_cast<std::size_t>(vowels.chart.count - 1)]; }

  TempFolder folder;
};

TEST_F(VowelCommands, ChartsAreRefusedAbove16000Hz) {
  Select(0, 5000);
  for (const int rate : {16000, 16001}) {
    document.sampleRate = rate;
    document.activity = activities::kWaveform;
    Answer({"yes"});
    PointChartCommand(window, document, states, vowels);
    EXPECT_EQ(document.activity == activities::kPointChart, rate == 16000);
    Answer({"yes"});
    document.activity = activities::kWaveform;
    SegmentChartCommand(window, document, states, vowels);
    EXPECT_EQ(document.activity == activities::kSegmentChart, rate == 16000);
    if (rate > 16000) { EXPECT_EQ(window.log.back(), Notice("本功能采样频率不能超过16000Hz！", "频率太高")); }
  }
}

TEST_F(VowelCommands, ClicksCollectVowels) {
  Answer({"yes"});
  PointChartCommand(window, document, states, vowels);
  EXPECT_EQ(window.Log(), (Texts{Notice("在幅度/能量图中单击某点，在元音音位图中插入该点数据", "音位图插入"), kCoordinates}));
  EXPECT_FALSE(states.IsEnabled(40059) || states.IsEnabled(40072));
  EXPECT_TRUE(states.IsEnabled(40085));
  for (int v = 0; v < 9; ++v) ClickAt(MiddleOf(v));
  ASSERT_EQ(vowels.chart.count, 9);
  for (int v = 0; v < 9; ++v) EXPECT_NEAR(vowels.chart.points[static_cast<std::size_t>(v)].f2, kVowels[v].f2, 70) << kVowels[v].name;
  EXPECT_TRUE(states.IsEnabled(40059) && states.IsEnabled(40072));
  ClickAt(6700);   // silence between two vowels
  ClickAt(document.sampleCount);
  EXPECT_EQ(vowels.chart.count, 9);
  EXPECT_TRUE(window.Log().empty()) << "what is no vowel is dropped without a word";
}

TEST_F(VowelCommands, The199thClickIsStoredAndThe200thRefused) {
  Open();
  for (int i = 0; i < 198; ++i) vowels.chart.Add(300, 1000, 0);
  ClickAt(MiddleOf(0));
  EXPECT_EQ(vowels.chart.count, 199);
  EXPECT_TRUE(window.Log().empty());
  ClickAt(MiddleOf(0));
  EXPECT_EQ(window.Log(), Texts{kFull});
  EXPECT_EQ(vowels.chart.count, 199);
  EXPECT_EQ(Type({"set:1000=300,1008=1000"}).size(), 1u) << "a typed point may be the 200th";
  EXPECT_EQ(vowels.chart.count, 200);
  EXPECT_EQ(Type({}), Texts{kFull});
  const VowelPoint before = vowels.chart.points[198];
  Undo({"no", "no", "yes"});
  EXPECT_EQ(vowels.chart.count, 200) << "a full chart can still be corrected";
  EXPECT_EQ(vowels.chart.points[198], before);
}

TEST_F(VowelCommands, TheLimitsOfATypedPoint) {
  const struct {
    int f1, f2;
    bool accepted;
  } cases[] = {{150, 420, true},   {149, 420, false},  {150, 419, false},  {1500, 4000, true}, {1501, 4000, false},
               {1500, 4001, false}, {1000, 1001, true}, {1000, 1000, false}, {1001, 1000, false}};
  for (const auto& c : cases) EXPECT_EQ(MayBeTyped(c.f1, c.f2), c.accepted) << c.f1 << ' ' << c.f2;

  EXPECT_EQ(Type({}), Texts{Notice("只能在画单点的元音图时使用！")});
  Open();
  vowels.chart.shape = shapes::kDiamond;
  EXPECT_EQ(Type({"set:1000=1501,1008=2000", "set:1000=283,1008=2350"}),
            (Texts{"input|人工加入元音图的一点|,", Notice("输入的 F1,F2 值错误"), "input|人工加入元音图的一点|1501,2000"}));
  EXPECT_EQ(Last(), (VowelPoint{76, 240, 0, shapes::kDiamond, 283, 2350, 0}));
  Type({"set:1000=1501,1008=2000", "cancel"});
  EXPECT_EQ(vowels.chart.count, 1);
  document.activity = activities::kGroupPlot;
  Type({"set:1000=283,1008=2350"});
  EXPECT_EQ(vowels.chart.count, 2);
}

TEST_F(VowelCommands, TheLastPointIsTakenAwayOrCorrected) {
  Open();
  ClickAt(MiddleOf(0));
  ClickAt(MiddleOf(0));
  const VowelPoint a = Last();
  EXPECT_EQ(Undo({"no", "yes"}), (Texts{kDeleteOrModify, kSplit}));
  EXPECT_EQ(vowels.chart.count, 2);
  EXPECT_FLOAT_EQ(Last().f1, 0.9f * a.f1);
  EXPECT_FLOAT_EQ(Last().f2, 1.4f * a.f1);
  EXPECT_EQ(Last().f3, a.f2);
  EXPECT_EQ(Undo({"no", "no", "yes"}), (Texts{kDeleteOrModify, kSplit, kMerge}));
  EXPECT_GT(Last().f1, a.f1) << "measured again, not the corrected point once more";
  EXPECT_LT(Last().f1, a.f2);
  EXPECT_EQ(Last().f2, a.f3);
  Undo({"no", "no", "no"});
  EXPECT_EQ(Last().f1, a.f2);
  EXPECT_EQ(Last().f2, a.f3);
  EXPECT_EQ(Undo({"yes"}), Texts{kDeleteOrModify});
  EXPECT_EQ(vowels.chart.count, 1);
  Undo({"yes"});
  EXPECT_EQ(vowels.chart.count, 0);
  EXPECT_FALSE(states.IsEnabled(40059) || states.IsEnabled(40072));
}

TEST_F(VowelCommands, WithoutAClickInThisSoundNothingIsMeasured) {
  Open();
  Type({"set:1000=300,1008=1000"});
  EXPECT_EQ(Undo({"no"}), Texts{kDeleteOrModify});
  EXPECT_EQ(vowels.chart.count, 1);
  ClickAt(MiddleOf(1));
  ++document.soundGeneration;
  EXPECT_EQ(Undo({"no"}), Texts{kDeleteOrModify});
  EXPECT_EQ(vowels.chart.count, 2);
}

TEST_F(VowelCommands, TheCoordinatesAreAskedOnceAnOpening) {
  Open(false);
  EXPECT_TRUE(vowels.chart.barkMode);
  EXPECT_EQ(vowels.chart.referenceF0, 120);
  Type({"set:1000=283,1008=2350"});
  EXPECT_EQ(Last().x, 54);
  Answer({"no"});
  PointChartCommand(window, document, states, vowels);
  EXPECT_EQ(window.Log().back(), kCoordinates) << "the reference pitch is known";
  ClearChartCommand(window, document, states, vowels);
  EXPECT_TRUE(window.Log().empty());
  EXPECT_TRUE(vowels.chart.barkMode);
  Type({"set:1000=283,1008=2350"});
  Open(true);
  EXPECT_EQ(Last().x, 76) << "points move with the coordinates";
}

TEST_F(VowelCommands, ACancelledReferencePitchStaysZeroAndIsAskedAgain) {
  Answer({"no", "cancel"});
  PointChartCommand(window, document, states, vowels);
  EXPECT_EQ(window.Log().back(), "input|输入某说话人的参考音高值|参考音高(Hz)");
  EXPECT_EQ(vowels.chart.referenceF0, 0);
  vowels.chart.Add(650, 2000, 0);
  EXPECT_EQ(Last().y, 486);
  Answer({"no", "ok:70000"});
  PointChartCommand(window, document, states, vowels);
  EXPECT_EQ(vowels.chart.referenceF0, 4464) << "the low 16 bits";
  EXPECT_LT(Last().y, 486);
}

TEST_F(VowelCommands, AChartGoesToItsFileAndBack) {
  Open(false);
  const std::string path = folder / "a.vch";
  Answer({"file:" + path});
  SaveChartCommand(window, vowels);
  EXPECT_TRUE(folder.Names().empty()) << "no points, no file";
  window.log.clear();
  for (int v = 0; v < 3; ++v) ClickAt(MiddleOf(v));
  Answer({"file:" + path});
  SaveChartCommand(window, vowels);
  EXPECT_EQ(window.Log(), Texts{"save|保存元音图数据文件|"});
  EXPECT_FALSE(vowels.unsaved);
  EXPECT_EQ(ReadFile(path).size(), 6u + 48);

  const VowelPoint saved = Last();
  vowels.chart = {};
  document.activity = activities::kWaveform;
  Answer({"file:" + path});
  OpenChartCommand(window, document, states, vowels);
  EXPECT_EQ(window.Log(), Texts{"open|打开元音图数据文件|"}) << "no question after a load";
  EXPECT_EQ(document.activity, activities::kPointChart);
  EXPECT_TRUE(vowels.chart.barkMode);
  EXPECT_EQ(vowels.chart.referenceF0, 120);
  EXPECT_EQ(vowels.chart.count, 3);
  EXPECT_EQ(Last().x, saved.x);
  EXPECT_EQ(Last().f1, saved.f1);
  EXPECT_TRUE(states.IsEnabled(40059));

  EXPECT_FALSE(vowels.unsaved);
  Undo({"yes"});
  EXPECT_TRUE(vowels.unsaved);
  const std::string old = ReadFile(path);
  EXPECT_EQ(testing::WithFileSizeLimit(20, [&] {
    Answer({"file:" + path});
    SaveChartCommand(window, vowels);
    return window.log.back() == Notice("不能建立文件！", nullptr, "error") && vowels.unsaved ? 0 : 1;
  }), 0);
  EXPECT_EQ(ReadFile(path), old);
}

TEST_F(VowelCommands, ARefusedChartFileLeavesTheChart) {
  Open();
  ClickAt(MiddleOf(0));
  const auto points = vowels.chart.points;
  const std::string refused = Notice("无此元音图数据文件！", nullptr, "error");
  document.activity = activities::kWaveform;
  for (const std::string& path : {folder / "none.vch", WriteFile(folder / "bad.vch", std::string("\x05\x00xx", 4)), folder.path()}) {
    Answer({"file:" + path});
    OpenChartCommand(window, document, states, vowels);
    EXPECT_EQ(window.Log().back(), refused);
    Answer({"file:" + path});
    ListChartCommand(window, document, states, vowels, folder.path());
    EXPECT_EQ(window.Log().back(), refused);
  }
  const std::string good = WriteFile(folder / "good.vch", std::string(2, '\0'));
  Answer({"file:" + good});
  ListChartCommand(window, document, states, vowels, folder / "none");
  EXPECT_EQ(window.Log().back(), Notice("文件打开错误！", nullptr, "error"));
  EXPECT_EQ(vowels.chart.count, 1);
  EXPECT_EQ(vowels.chart.points, points);
  EXPECT_EQ(document.activity, activities::kWaveform);
  Answer({"file:" + good});
  ListChartCommand(window, document, states, vowels, folder.path());
  EXPECT_EQ(window.Log().back(), "editor|" + folder / "VchDt.txt");
  EXPECT_EQ(vowels.chart.count, 0) << "the listed chart is the present one";
  EXPECT_EQ(document.activity, activities::kWaveform);
}

TEST_F(VowelCommands, TheSegmentChartLastsWhileItsWindowIsOpen) {
  Answer({});
  AverageVowelsCommand(window, document, vowels);
  EXPECT_EQ(window.Log(), Texts{Notice("不在元音图状态，不能调入！")});
  Select(0, 7000);
  for (int i = 0; i < 2; ++i) {   // the second closes the first
    Answer({"yes"});
    SegmentChartCommand(window, document, states, vowels);
    EXPECT_EQ(window.Log(), (Texts{"ask|Parlowen(Tessiran)|用直线连接各点（Yes/No)？", "window|vowels"}));
    EXPECT_EQ(document.activity, activities::kSegmentChart);
  }
  EXPECT_TRUE(states.IsEnabled(40085));
  EXPECT_EQ(vowels.chart.count, 0) << "nothing is stored";
  const std::size_t marks = window.tool->Draw(1024, 640).marks.size();
  Answer({"choose:4"});
  AverageVowelsCommand(window, document, vowels);
  EXPECT_EQ(vowels.segmentAverages, std::vector<int>{4});
  EXPECT_EQ(window.tool->Draw(1024, 640).marks.size(), marks + 30);
  document.samples[100] = 30000;
  document.ClearSelection();
  EXPECT_EQ(window.tool->Draw(1024, 640).marks.size(), marks + 30) << "the chart is that of the moment it was opened";
  const ChartPlace place = FrequencyPlace(760, 1280, 2500, kSegmentAxes);
  EXPECT_NE(window.tool->Hover({place.x, place.y}), "");
  window.tool->Closed(window);
  EXPECT_EQ(document.activity, activities::kWaveform);
}

TEST_F(VowelCommands, FormantsAreSavedInBlocks) {
  const std::string path = folder / "f.fmt";
  const auto save = [&](std::deque<std::string> answers) {
    Answer(std::move(answers));
    SaveFormantsCommand(window, document);
    return window.Log();
  };
  Select(1000, 1199);
  EXPECT_TRUE(save({}).empty()) << "199 samples";
  Select(1000, 1200);
  EXPECT_EQ(save({"file:" + path, "no"}), (Texts{"save|保存共振峰数据文件|", "ask|从头更新数据？|从头开始（Yes)?在已有数据中添加（No)？"}));
  Select(MiddleOf(0) - 1000, MiddleOf(0) + 1000);
  save({"file:" + path, "no"});
  const std::string bytes = ReadFile(path);
  ASSERT_EQ(bytes.size(), 2 * 12u + (1 + 12) * 48);
  const auto blocks = ReadFormantFile({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  ASSERT_TRUE(blocks);
  EXPECT_EQ(blocks->at(1).start, MiddleOf(0) - 1000);
  for (const auto& frame : blocks->at(1).frames) {
    EXPECT_NEAR(frame[0], kVowels[0].f1, 70);
    EXPECT_NEAR(frame[2], kVowels[0].f2, 70);
  }
  Answer({"file:" + path});
  ListFormantsCommand(window, document, folder.path());
  EXPECT_EQ(window.Log().back(), "editor|" + folder / "Formant.txt");
  save({"file:" + path, "yes"});
  EXPECT_EQ(ReadFile(path).size(), 12u + 12 * 48);

  EXPECT_EQ(save({"file:" + folder / "none/f.fmt", "yes"}).back(), Notice("不能建立文件！", nullptr, "error"));
  EXPECT_EQ(save({"file:" + folder / "none/f.fmt", "no"}).back(), Notice("文件不存在！", nullptr, "error"));
  const auto list = [&](const std::string& name) {
    Answer({"file:" + name});
    ListFormantsCommand(window, document, folder.path());
    return window.Log().back();
  };
  EXPECT_EQ(list(folder / "none.fmt"), Notice("无共振峰数据文件！", nullptr, "error"));
  const std::string text = ReadFile(folder / "Formant.txt");
  EXPECT_EQ(list(WriteFile(folder / "bad.fmt", std::string("RIFF"))), Notice("共振峰数据文件错误！", nullptr, "error"));
  EXPECT_EQ(ReadFile(folder / "Formant.txt"), text);
}

TEST_F(VowelCommands, The47thPointOfAGroupIsStoredAndThe48thRefused) {
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log(), Texts{Notice("必须在向元音图加入单个元音点的状态下使用", "没有元音点")});
  Open();
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().size(), 1u) << "no points yet";
  ClickAt(MiddleOf(0));
  vowels.chart.points[0].f1 = 781.9f;
  const std::string path = folder / "g.vls";
  Answer({"file:" + path, "ok:啊一普"});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log(), (Texts{"open|打开元音统计数据文件|", "input|输入统计组名|输入组名（最长6字符）"})) << "no question of a sign";
  for (int i = 1; i < 47; ++i) {
    Answer({"yes"});
    AddPointToGroupCommand(window, document, vowels);
  }
  window.log.clear();
  std::string file = ReadFile(path);
  ASSERT_EQ(file.size(), 200u);
  EXPECT_EQ(file[10], 47);
  EXPECT_EQ(static_cast<std::uint8_t>(file[12]) | file[13] << 8, 781) << "truncated";
  Answer({"yes"});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().back(), Notice("数据太多，不能再加入！"));
  Answer({"no", "file:" + path, "no", "ok:啊一普"});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().back(), Notice("数据太多，不能再加入！"));
  EXPECT_EQ(ReadFile(path), file);
  WriteFile(path, file + "x");
  Answer({"file:" + path});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().back(), Notice("元音统计文件错误！", nullptr, "error"));
}

TEST_F(VowelCommands, GroupsTooCloseAreListedButNotPlotted) {
  const auto show = [&](std::deque<std::string> answers) {
    Answer(std::move(answers));
    ShowVowelGroupsCommand(window, document, states, vowels, folder.path());
    return window.Log();
  };
  EXPECT_EQ(show({}), Texts{Notice("请在逐点加入元音图的情况下使用！", "不在此状态下使用")});
  Open();
  const std::string path = folder / "g.vls", editor = "editor|" + folder / "VwlPoints.txt";
  EXPECT_EQ(show({"file:" + path}).back(), Notice("无此元音统计数据文件！", nullptr, "error"));
  EXPECT_TRUE(folder.Names().empty());

  std::vector<std::uint8_t> file(2);
  const std::uint16_t low[] = {300, 900}, high[] = {400, 2400};
  AppendGroup(kVowelLayout, file, "u", false, low);
  AppendGroup(kVowelLayout, file, "i", false, high);
  WriteFile(path, file);
  EXPECT_EQ(show({"file:" + path, "yes"}), (Texts{"open|打开元音统计数据文件|", "ask|是否显示组名？|标出组名吗？",
                                                  Notice("数据太少，不能作图", "数据不充分"), editor}));
  EXPECT_EQ(document.activity, activities::kPointChart);
  const std::string text = ReadFile(folder / "VwlPoints.txt");
  EXPECT_FALSE(text.empty());
  EXPECT_EQ(text.find("V1i"), std::string::npos);
}

}  // namespace
}  // namespace parlowen
