#include "synthesis/TargetDrawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace parlowen {
namespace {

using Result = TargetDrawing::Result;

TEST(TargetDrawing, ARowIsASixtyFourthOfAnOctaveBetween512And64Hertz) {
  struct Row {
    int row;
    double frequency;
    const char* readout;
  };
  for (const Row& c :
       {Row{31, 0, "无效频率区  "}, Row{32, 512, "频率=512Hz "}, Row{96, 256, "频率=256Hz "},
        Row{128, 181.01933598375618, "频率=181Hz "}, Row{200, 82.99773149766462, "频率=082Hz "},
        Row{224, 64, "频率=064Hz "}, Row{225, 0, "无效频率区  "}, Row{-5, 0, "无效频率区  "}}) {
    EXPECT_NEAR(TargetFrequencyOfRow(c.row), c.frequency, 1e-9) << c.row;  // 512·2^((32 − row)/64)
    EXPECT_EQ(TargetReadout(c.row), c.readout);
    if (c.frequency > 0) {
      EXPECT_EQ(RowOfTargetFrequency(c.frequency), c.row);
    }
  }
}

TEST(TargetDrawing, BetweenTwoPointsTheRowIsLinear) {
  TargetCurve target(20, 0.0f);
  TargetDrawing drawing;
  EXPECT_EQ(drawing.AddPoint(target, {2, 160}, 16000), Result::Added);
  EXPECT_EQ(target, TargetCurve(20, 0.0f));  // one point is no curve
  EXPECT_EQ(drawing.AddPoint(target, {10, 96}, 16000), Result::Added);
  // 128 to 256 Hz: an eighth of an octave a frame.
  for (int f = 0; f <= 8; ++f)
    EXPECT_FLOAT_EQ(target[static_cast<std::size_t>(2 + f)], static_cast<float>(125 * std::exp2(-f / 8.0)));
  EXPECT_EQ(target[1], 0.0f);
  EXPECT_EQ(target[11], 0.0f);
  // Left of the last point, above, below and beside the area.
  for (const Point point : {Point{9, 100}, {12, -1}, {12, 256}, {-1, 100}, {20, 100}})
    EXPECT_EQ(drawing.AddPoint(target, point, 16000), Result::Ignored);
  EXPECT_EQ(drawing.points().size(), 2u);
  // A fraction of a row counts; the same frame again moves it.
  drawing.AddPoint(target, {13, 97}, 16000);
  EXPECT_FLOAT_EQ(target[11], static_cast<float>(62.5 * std::exp2(1 / 3.0 / 64)));
  drawing.AddPoint(target, {13, 160}, 16000);
  EXPECT_FLOAT_EQ(target[13], 125.0f);
  // Into the region without frequencies: rows 160, 176, …, 240.
  drawing.AddPoint(target, {18, 240}, 16000);
  EXPECT_GT(target[17], 0.0f);
  EXPECT_EQ(target[18], 0.0f);
}

TEST(TargetDrawing, AStrokeFollowsThePointerAndCountsAsItsTwoEnds) {
  TargetCurve target(300, 0.0f);
  TargetDrawing drawing;
  drawing.DrawTo(target, {5, 96}, 16000);
  EXPECT_TRUE(drawing.points().empty()) << "a stroke begins with a click";
  drawing.AddPoint(target, {10, 96}, 16000);
  for (int x = 11; x <= 250; ++x) drawing.DrawTo(target, {x, x % 2 == 0 ? 96 : 160}, 16000);
  drawing.DrawTo(target, {200, 96}, 16000);  // back: ignored
  for (int x = 11; x <= 250; ++x)
    EXPECT_FLOAT_EQ(target[static_cast<std::size_t>(x)], x % 2 == 0 ? 62.5f : 125.0f);
  EXPECT_EQ(drawing.points(), (std::vector<Point>{{10, 96}, {250, 96}}));
  drawing.AddPoint(target, {260, 160}, 16000);
  drawing.DrawTo(target, {270, 160}, 16000);
  EXPECT_EQ(drawing.points().size(), 4u);
}

TEST(TargetDrawing, FiftyPointsMakeASettingAndUnvoicedFramesLoseThem) {
  TargetCurve target(60, 77.0f);
  std::vector<float> present(60, 100.0f);
  present[3] = 0.49f;
  present[4] = 0.5f;
  present[58] = -1.0f;
  TargetDrawing drawing;
  for (int i = 0; i < kMostTargetPoints; ++i)
    EXPECT_EQ(drawing.AddPoint(target, {i, 160}, 16000), Result::Added);
  EXPECT_EQ(drawing.AddPoint(target, {55, 160}, 16000), Result::Full);
  EXPECT_EQ(target[3], 125.0f);
  drawing.End(target, present);
  EXPECT_EQ(target[3], 0.0f);
  EXPECT_EQ(target[4], 125.0f);
  EXPECT_EQ(target[58], 77.0f);  // of no setting
  EXPECT_TRUE(drawing.points().empty());
  drawing.End(target, present);
  EXPECT_EQ(drawing.AddPoint(target, {0, 96}, 16000), Result::Added);  // a new setting
}

TEST(TargetDrawing, OtherMelodiesFillOnlyVoicedFramesWithPeriodsThatCanBe) {
  const std::vector<float> present = {100, 0, 100, 100, 100, 100, 100};
  // 15 Hz at 16000 Hz are 1066.67 samples.
  const std::vector<float> curve = {80, 80, 0.5f, 1066, 1067, std::numeric_limits<float>::quiet_NaN()};
  EXPECT_EQ(OnVoicedFrames(curve, present, 16000), (TargetCurve{80, 0, 0, 1066, 0, 0, 0}));
  EXPECT_EQ(ScaledTarget(std::vector<float>{100, 0, -1, 90, 1000}, 0.5, 16000),
            (TargetCurve{200, 0, 0, 180, 0}));
}

}  // namespace
}  // namespace parlowen
