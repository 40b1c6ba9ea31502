#include "audio/SettingsCommand.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Little;
using testing::ReadFile;

/// Answers the form field by field.
class FormWindow : public testing::FakeWindow {
 public:
  std::function<bool(InputForm&)> fill;
  bool AskInput(InputForm& form) override { return fill(form); }
};

struct Panel {
  FormWindow window;
  CommandStates states;
  SoundDocument document;
  RecorderSettings settings;
  testing::TempFolder folder;
  std::string File() const { return folder / "Thresh.dat"; }
  void Run(const std::function<bool(InputForm&)>& fill) {
    window.fill = fill;
    SettingsCommand(window, document, states, settings, File());
  }
};

void Choose(InputForm& form, const std::string& label) {
  int group = -1;
  for (const FormField& field : form.fields)
    if (field.label == label) group = field.group;
  for (FormField& field : form.fields)
    if (field.kind == FieldKind::Radio && field.group == group) field.checked = field.label == label;
}

FormField& Percent(InputForm& form) { return form.fields.back(); }

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

TEST(Settings, OkTakesTheChoicesAndWritesSixBytes) {
  Panel panel;
  panel.document.resetForNewSound(0, 11025, panel.states);
  panel.document.pitchPresent = true;
  panel.Run([](InputForm& form) {
    EXPECT_EQ(form.CheckedIndex(0), 1);
    EXPECT_EQ(form.CheckedIndex(1), 0);
    Choose(form, "22050Hz");
    Choose(form, "三维立体图");
    Percent(form).value = "400";
    return true;
  });
  EXPECT_EQ(panel.document.sampleRate, 22050);
  EXPECT_FALSE(panel.document.pitchPresent) << "its frames are no longer 10 ms";
  EXPECT_EQ(panel.settings.spectrogramShading, 0);
  EXPECT_EQ(ReadFile(panel.File()), Little(0x3F800000, 4) + Little(240, 2));
  EXPECT_TRUE(panel.window.Log().empty());
}

TEST(Settings, TheyHoldEvenWhereTheFileCannotBeWritten) {
  Panel panel;
  panel.document.resetForNewSound(0, 11025, panel.states);
  std::filesystem::create_directory(panel.File());
  panel.Run([](InputForm& form) {
    Percent(form).value = "25";
    return true;
  });
  EXPECT_EQ(panel.window.Log(), testing::Texts{"error|Parlowen(Tessiran)|文件打开错误"});
  EXPECT_EQ(panel.settings.voiceThreshold, 60);
}

}  // namespace
}  // namespace parlowen
