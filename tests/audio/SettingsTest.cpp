#include "audio/SettingsCommand.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

TEST(ThresholdPercent, TheStepGrowsWithTheValueAndTheBoundIsCheckedBeforeIt) {
  const struct {
    int percent, up, down;
  } cases[] = {
      {5, 15, 5},      {10, 20, 10},     {11, 21, 6},       {60, 70, 55},
      {61, 71, 51},    {100, 110, 90},   {101, 111, 91},    {150, 160, 140},
      {151, 161, 141}, {199, 209, 189},  {200, 220, 180},   {499, 539, 459},
      {500, 550, 450}, {999, 1049, 949}, {1000, 1000, 950}, {1049, 1049, 999},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(StepThresholdPercent(c.percent, +1), c.up) << c.percent;
    EXPECT_EQ(StepThresholdPercent(c.percent, -1), c.down) << c.percent;
  }
}

TEST(RecorderSettings, APercentageIsTheSquareOfTheThreshold) {
  const struct {
    int percent, threshold, shown;
    float gain;
  } cases[] = {{100, 120, 100, 2.0f}, {400, 240, 400, 1.0f},
               {25, 60, 25, 4.0f},    {150, 146, 148, static_cast<float>(2.0 / std::sqrt(1.5))},
               {1, 12, 1, 20.0f},     {0, 12, 1, 20.0f}};  // nothing is divided by zero
  for (const auto& c : cases) {
    RecorderSettings settings;
    settings.AdaptToRoom(RoomFactorOfPercent(c.percent));
    EXPECT_EQ(settings.voiceThreshold, c.threshold) << c.percent;
    EXPECT_EQ(settings.recordGain, c.gain) << c.percent;
    EXPECT_EQ(settings.ThresholdPercent(), c.shown) << c.percent;
  }
}

TEST(Settings, TheyHoldEvenWhereTheFileCannotBeWritten) {
  testing::FakeWindow window;
  CommandStates states;
  SoundDocument document;
  RecorderSettings settings;
  const testing::TempFolder folder;
  window.answers = {"last:25"};
  SettingsCommand(window, document, states, settings, folder.path());
  EXPECT_EQ(window.Log().back(), "error|Parlowen(Tessiran)|文件打开错误");
  EXPECT_EQ(settings.voiceThreshold, 60);
}

}  // namespace
}  // namespace parlowen
