#include "prosody/Durations.h"

#include <gtest/gtest.h>

#include "base/Gbk.h"

namespace parlowen {
namespace {

TEST(Durations, LengthsAreTenthsOfAMillisecondInSixteenBits) {
  const struct {
    int samples, rate, stored;
  } cases[] = {
      {16000, 16000, 10000},
      {1, 384000, 0},
      {104856, 16000, 65535},
      {104858, 16000, 0},     // 65536.25 tenths
      {112000, 16000, 4464},  // 7 s = 70000 = 65536 + 4464
      {214748, 16000, 134217 - 2 * 65536},
      {214749, 16000, 65536 * 3 - 134217},  // 2147490000 wraps to −2147477296; / 16000 = −134217
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
  EXPECT_EQ(
      DurationReport(groups),
      ToGbk(
          "\r\n          音长统计数据\r\n"
          "\r\n          第1组：组名：'一二三'\r\n\r\n数据(ms)：  100.0  200.0  300.0  400.0  500.0  600.0\r\n            700.0"
          "\r\n平均值=  400.0ms,  标准差= 200.0ms\r\n"
          "\r\n          第2组：组名：'neg'\r\n\r\n数据(ms)： -123.4\r\n平均值= -123.4ms,  标准差=   0.0ms\r\n"
          "\r\n          第3组：组名：''\r\n\r\n数据(ms)： 6553.5    0.0    0.1    0.2    0.3    0.4\r\n          "
          "\r\n平均值= 1092.4ms,  标准差=2442.3ms\r\n"));
}

}  // namespace
}  // namespace parlowen
