#include "vowel/VowelGroups.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "vowel/VowelChart.h"

namespace parlowen {
namespace {

TEST(VowelGroups, TheReportIsTheseBytes) {
  const std::vector<ValueGroup> groups = {
      {ToGbk("前元音"), false, {280, 2300, 300, 2200, 290, 2250, 310, 2350, 320, 2400}},
      {"a", false, {1000, 1200}},
      {ToGbk("后u"), false, {330, 700, 370, 740}},
  };
  auto summaries = SummariesOfVowels(groups);
  ASSERT_TRUE(PlaceGroups(summaries));
  // Means 300 and 2300 with deviations √200 = 14.14 and √5000 = 70.71; 350 and 720 with 20 and 20. B(300) =
  // 3.13, B(350) = 3.61, B(720) = 6.69, B(1000) = 8.51, B(1200) = 9.61, B(2300) = 13.83. V1 of u: 320 +
  // 200·(3.607 − 3.126)/(8.511 − 3.126) = 337.9; V2 of a: 900 − 200·(9.608 − 6.689)/(13.834 − 6.689) = 818.3.
  const std::string text =
      "\r\n          元音统计数据\r\n"
      "\r\n          第1组：组名：前元音\r\n\r\n数据(Hz)："
      "     280    2300         300    2200         290    2250         310    2350    \r\n          "
      "     320    2400    "
      "\r\n平均F1值=  300.0Hz(Bark=  3.13),  标准差= 14.14Hz\r\n"
      "\r\n平均F2值= 2300.0Hz(Bark= 13.83),  标准差= 70.71Hz\r\n"
      "\r\n          第2组：组名：a\r\n\r\n数据(Hz)：    1000    1200    "
      "\r\n平均F1值= 1000.0Hz(Bark=  8.51),  标准差=  0.00Hz\r\n"
      "\r\n平均F2值= 1200.0Hz(Bark=  9.61),  标准差=  0.00Hz\r\n"
      "\r\n          第3组：组名：后u\r\n\r\n数据(Hz)：     330     700         370     740    "
      "\r\n平均F1值=  350.0Hz(Bark=  3.61),  标准差= 20.00Hz\r\n"
      "\r\n平均F2值=  720.0Hz(Bark=  6.69),  标准差= 20.00Hz\r\n";
  const std::string relative =
      "\r\n各组平均 F1,F2 频率的相对 Bark 值 V1,V2(百分比)：\r\n"
      "  (V1i=(B1i-B1min)/(B1max-B1min), V2i=(B2i-B2min)/(B2max-B2min), B代表 Bark 值)"
      "\r\n  组名：前元音:  V1 值：  0,    V2 值：100"
      "\r\n  组名：     a:  V1 值：100,    V2 值： 41"
      "\r\n  组名：   后u:  V1 值：  8,    V2 值：  0";
  EXPECT_EQ(FromGbk(VowelReport(groups, summaries, true)), text + relative);
  EXPECT_EQ(FromGbk(VowelReport(groups, summaries, false)), text);
}

std::vector<VowelGroup> Means(std::vector<std::pair<float, float>> means) {
  std::vector<VowelGroup> groups;
  for (const auto& [f1, f2] : means) {
    groups.emplace_back().mean1 = f1;
    groups.back().mean2 = f2;
  }
  return groups;
}

TEST(VowelGroups, LessThanTwoBarkIsNoPlot) {
  auto none = Means({});
  EXPECT_FALSE(PlaceGroups(none));
  auto one = Means({{300, 900}});
  EXPECT_FALSE(PlaceGroups(one));
  // Two Bark above 300 Hz are 650·sinh((B(300) + 2)/7) = 519.66 Hz.
  auto close = Means({{300, 900}, {519, 2400}}), far = Means({{300, 900}, {520, 2400}});
  EXPECT_LT(Bark(519) - Bark(300), 2.0);
  EXPECT_FALSE(PlaceGroups(close));
  EXPECT_TRUE(PlaceGroups(far));
  auto close2 = Means({{300, 900}, {800, 1000}});
  EXPECT_FALSE(PlaceGroups(close2));
}

}  // namespace
}  // namespace parlowen
