#include "shell/CommandTable.h"

#include <gtest/gtest.h>

#include <set>

#include "shell/Station.h"

namespace parlowen {
namespace {

using testing::Station;
using testing::Texts;

TEST(CommandTable, EveryNumberStandsOnceAndItsMenuIsOneStretch) {
  std::set<int> numbers;
  std::vector<std::string> order;
  for (const CommandRow& row : CommandTable()) {
    EXPECT_TRUE(numbers.insert(row.number).second) << row.number;
    EXPECT_EQ(FindCommand(row.number), &row);
    const std::string menu = MenuName(row.menu);
    if (order.empty() || order.back() != menu) order.push_back(menu);
  }
  EXPECT_EQ(numbers.size(), 122u);
  // The submenu of the tones stands inside the menu of the pitch; nothing else comes twice. The submenu of
  // the exchange is the last.
  EXPECT_EQ(order, (Texts{"文件", "录放音", "基频", "声调统计", "基频", "频谱", "元音", "腭位", "双声道",
                          "编辑", "选择与标注", "设置", "区域", "帮助", "扩展", "与其他程序交换"}));
  EXPECT_EQ(FindCommand(0), nullptr);
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

}  // namespace
}  // namespace parlowen
