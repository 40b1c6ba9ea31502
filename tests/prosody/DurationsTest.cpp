#include "prosody/Durations.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "prosody/DurationChart.h"
#include "support/FakeWindow.h"

namespace parlowen {
namespace {

TEST(Durations, LengthsAreTenthsOfAMillisecondInSixteenBits) {
  const struct {
    int samples, rate, stored;
  } cases[] = {
      {16000, 16000, 10000},
      {1, 384000, 0},
      {104856, 16000, 65535},
      {104858, 16000, 0},          // 65536.25 tenths
      {112000, 16000, 4464},       // 7 s = 70000 = 65536 + 4464
      {214748, 16000, 134217 - 2 * 65536},
      {214749, 16000, 65536 * 3 - 134217},   // 2147490000 wraps to −2147477296; / 16000 = −134217
      {11025, 11025, 10000},
  };
  for (const auto& c : cases) EXPECT_EQ(DurationOf(c.samples, c.rate), c.stored) << c.samples;
}

TEST(Durations, TheReportIsTheseBytes) {
  const std::vector<ValueGroup> groups = {
      {ToGbk("一二三"), false, {1000, 2000, 3000, 4000, 5000, 6000, 7000}},
      {"neg", true, {1234}},
      {"", false, {65535, 0, 1, 2, 3, 4}},
  };
  // Means 400 and 1092.4; deviations 200 = 100·√((9+4+1)·2/7) and √(Σv²/6 − m²) by hand.
  EXPECT_EQ(DurationReport(groups),
            ToGbk("\r\n          音长统计数据\r\n"
                  "\r\n          第1组：组名：'一二三'\r\n\r\n数据(ms)：  100.0  200.0  300.0  400.0  500.0  600.0\r\n            700.0"
                  "\r\n平均值=  400.0ms,  标准差= 200.0ms\r\n"
                  "\r\n          第2组：组名：'neg'\r\n\r\n数据(ms)： -123.4\r\n平均值= -123.4ms,  标准差=   0.0ms\r\n"
                  "\r\n          第3组：组名：''\r\n\r\n数据(ms)： 6553.5    0.0    0.1    0.2    0.3    0.4\r\n          "
                  "\r\n平均值= 1092.4ms,  标准差=2442.3ms\r\n"));
}

/// The upper and lower edge of every bar's outline.
std::vector<std::pair<int, int>> Bars(const Picture& picture) {
  std::vector<std::pair<int, int>> bars;
  for (const Mark& mark : picture.marks)
    if (const auto* line = std::get_if<PolylineMark>(&mark); line != nullptr && line->points[0].x > 30)
      bars.push_back({line->points[0].y, line->points[2].y});
  return bars;
}

TEST(Durations, BarsAreScaledByTheLargestMean) {
  const auto picture = [](std::vector<double> means) {
    std::vector<DurationGroup> groups;
    for (const double mean : means) groups.push_back({"g", 1, mean, 0});
    return Bars(DurationPicture(groups, 0, 1024, 400));
  };
  using Edges = std::vector<std::pair<int, int>>;
  // 100/3.12 = 32.05; 399.9/3.12 = 128.2; the base line is row 205.
  EXPECT_EQ(picture({100, 399.9}), (Edges{{205 - 32 - 1, 205}, {205 - 128 - 1, 205}}));
  // From 400 on a pixel stands for twice as much: 400/6.24 = 64.1.
  EXPECT_EQ(picture({100, 400}), (Edges{{205 - 16 - 1, 205}, {205 - 64 - 1, 205}}));
  // Negative means end 20 rows below the base line at most; the scale stays 1.
  EXPECT_EQ(picture({-10, -2000}), (Edges{{205, 205 + 3 - 1}, {205, 225}}));
}

TEST(Durations, MoreBarsThanFitAreScrolled) {
  std::vector<DurationGroup> groups(31);
  for (int g = 0; g < 31; ++g) groups[static_cast<std::size_t>(g)] = {std::to_string(g + 1), 1, 100, 0};
  DurationChart chart(groups);
  testing::FakeWindow window;
  const auto hasName = [&](const std::string& name) {
    const Picture picture = chart.Draw(1024, 400);   // 24 bars
    return std::any_of(picture.marks.begin(), picture.marks.end(), [&](const Mark& mark) {
      const auto* text = std::get_if<TextMark>(&mark);
      return text != nullptr && text->y > 250 && text->text == name;
    });
  };
  EXPECT_TRUE(hasName("24"));
  EXPECT_FALSE(hasName("25"));
  EXPECT_TRUE(chart.Key(window, "Right"));
  EXPECT_TRUE(hasName("25"));
  EXPECT_FALSE(hasName("1"));
  chart.Scroll(window, 1000);
  EXPECT_TRUE(hasName("31"));
  EXPECT_TRUE(hasName("8"));
  EXPECT_FALSE(hasName("7"));
  EXPECT_NE(chart.Hover({30 + 5, 100}).find("第8组"), std::string::npos);
  chart.Scroll(window, -1000);
  EXPECT_TRUE(hasName("1"));
  EXPECT_EQ(chart.Hover({29, 100}), "");
}

}  // namespace
}  // namespace parlowen
