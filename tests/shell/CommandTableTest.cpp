#include "shell/CommandTable.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "shell/HelpPages.h"
#include "shell/Station.h"

namespace parlowen {
namespace {

using testing::Ramp;
using testing::Station;
using testing::Texts;

TEST(CommandTable, EveryNumberStandsOnceAndItsMenuIsOneStretch) {
  std::set<int> numbers;
  std::vector<std::string> order;
  std::map<std::string, std::pair<int, int>> ends;
  for (const CommandRow& row : CommandTable()) {
    EXPECT_TRUE(numbers.insert(row.number).second) << row.number;
    EXPECT_EQ(FindCommand(row.number), &row);
    const std::string menu = MenuName(row.menu);
    if (order.empty() || order.back() != menu) order.push_back(menu);
    if (!ends.contains(menu)) ends[menu].first = row.number;
    ends[menu].second = row.number;
  }
  EXPECT_EQ(numbers.size(), 122u);
  // The submenu of the tones stands inside the menu of the pitch; nothing else comes twice. The submenu of the exchange is the last.
  EXPECT_EQ(order, (Texts{"文件", "录放音", "基频", "声调统计", "基频", "频谱", "元音", "腭位", "双声道", "编辑", "选择与标注", "设置", "区域", "帮助", "扩展", "与其他程序交换"}));
  const std::map<std::string, std::pair<int, int>> expected = {
      {"文件", {110, 140}},       {"录放音", {272, 40081}},       {"基频", {220, 40076}},   {"声调统计", {40029, 40037}}, {"频谱", {170, 40109}},
      {"元音", {40056, 40064}},   {"腭位", {40060, 40080}},       {"双声道", {40112, 40111}}, {"编辑", {40001, 40102}},     {"选择与标注", {40026, 40117}},
      {"设置", {215, 40104}},     {"区域", {40010, 40015}},       {"帮助", {270, 40008}},       {"扩展", {41010, 41011}}, {"与其他程序交换", {41020, 41035}}};
  EXPECT_EQ(ends, expected);
  EXPECT_EQ(FindCommand(0), nullptr);
}

/// Everything of a document that a command could change.
std::string StateOf(const Workstation& w) {
  const SoundDocument& d = w.document;
  std::string state = std::to_string(d.samplesVersion) + "/" + std::to_string(d.soundGeneration) + d.filePath + d.nextDigitPath;
  for (const int value : {d.sampleCount, d.sampleRate, int{d.twoChannel}, d.selectionStart, d.selectionEnd, d.viewStart, d.viewLength, d.samplesPerPixel,
                          d.undoKind, d.activity, d.insertPoint, int{d.pasteReady}, int{d.pitchPresent}, int{w.spectrogram.shown}})
    state += "," + std::to_string(value);
  for (const int command : w.states.Enabled()) state += " " + std::to_string(command);
  return state;
}

TEST(CommandTable, WhatIsNotThereYetSaysSoAndChangesNothing) {
  int checked = 0;
  for (const CommandRow& row : CommandTable()) {
    if (row.run != nullptr) continue;
    SCOPED_TRACE(row.number);
    Station s;
    s.Load(Ramp(4000), 16000, testing::PitchTail(std::vector<float>(27, 100.0f)));
    s.w.Select(100, 3000);
    s.w.states.enableCommand(row.number);
    const std::string before = StateOf(s.w);
    EXPECT_TRUE(s.w.dispatchCommand(row.number));
    EXPECT_EQ(s.window.Log(), Texts{"none|" + s.window.Caption() + "|本功能尚未完成"});
    EXPECT_EQ(StateOf(s.w), before);
    ++checked;
  }
  EXPECT_GT(checked, 0) << "once everything is there, this test goes";
}

TEST(CommandTable, AGreyedOrUnknownCommandIsNotDispatched) {
  Station s;
  for (const CommandRow& row : CommandTable()) {
    if (s.w.states.IsEnabled(row.number)) continue;
    EXPECT_FALSE(s.w.dispatchCommand(row.number));
  }
  EXPECT_FALSE(s.w.dispatchCommand(41));
  s.w.Key("Space");
  s.w.Key("F6");
  EXPECT_EQ(s.window.Log(), Texts{});
}

TEST(CommandTable, HelpOpensThePageOfTheToolOrSaysThatThereIsNone) {
  Station s;
  s.w.Key("F1");
  EXPECT_EQ(s.window.Log(), Texts{"error|Parlowen(Tessiran)|不能调入帮助"});
  std::filesystem::create_directories(s.folder / "help/zh");
  testing::WriteFile(s.folder / "help/zh/index.html", std::string("x"));
  testing::WriteFile(s.folder / "help/zh/region.html", std::string("x"));
  s.w.dispatchCommand(270);
  EXPECT_EQ(s.window.Log(), Texts{"editor|" + (s.folder / "help/zh/index.html")});
  s.Load(Ramp(10));
  s.w.dispatchCommand(40010);
  s.window.Log();
  s.w.Key("F1");
  EXPECT_EQ(s.window.Log(), Texts{"editor|" + (s.folder / "help/zh/region.html")});
  s.w.dispatchCommand(140);
  EXPECT_EQ(s.window.Log(), Texts{"quit"});
}

}  // namespace
}  // namespace parlowen
