#include "audio/SettingsCommand.h"

#include <algorithm>

#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "参数设置";
constexpr UiText kRateNote = "（已调入的声音也改按此频率处理）";
constexpr UiText kShadedPicture = "二维深浅图";
constexpr UiText kSolidPicture = "三维立体图";
constexpr UiText kThresholdLabel = " 开始录音的控制声音强度（10--1000%）";
constexpr int kRateGroup = 0, kPictureGroup = 1;
constexpr int kPercentField = 1000;

FormField RadioButton(std::string label, int group, bool checked) {
  FormField field;
  field.kind = FieldKind::Radio;
  field.label = std::move(label);
  field.group = group;
  field.checked = checked;
  return field;
}

InputForm MakeForm(int sampleRate, const RecorderSettings& settings) {
  InputForm form;
  form.title = kTitle;
  for (const int rate : kRecordingRates)
    form.fields.push_back(RadioButton(std::to_string(rate) + "Hz", kRateGroup, rate == sampleRate));
  FormField note;
  note.kind = FieldKind::Label;
  note.label = kRateNote;
  form.fields.push_back(std::move(note));
  form.fields.push_back(RadioButton(kShadedPicture, kPictureGroup, settings.spectrogramShading != 0));
  form.fields.push_back(RadioButton(kSolidPicture, kPictureGroup, settings.spectrogramShading == 0));
  FormField percent;
  percent.control = kPercentField;
  percent.kind = FieldKind::Number;
  percent.label = kThresholdLabel;
  percent.value = std::to_string(settings.ThresholdPercent());
  percent.step = [](const std::string& value, int direction) {
    InputForm one = OneFieldForm({}, {}, value);
    return std::to_string(StepThresholdPercent(one.CountOf(kPercentField), direction));
  };
  form.fields.push_back(std::move(percent));
  return form;
}

void TakeRate(Window& window, SoundDocument& document, CommandStates& states, int rate) {
  document.TakeRate(rate, states);
  states.onRateChanged(rate);
  states.onSelectionChanged(document.SelectionFacts());
  window.Repaint();
}

}  // namespace

void WriteSettingsFile(Window& window, const RecorderSettings& settings, const std::string& path) {
  if (SaveFile(window, path, settings.FileBytes()) < 0) window.Notify(messages::kCannotOpen, Icon::Error);
}

void SettingsCommand(Window& window, SoundDocument& document, CommandStates& states,
                     RecorderSettings& settings, const std::string& file) {
  InputForm form = MakeForm(document.sampleRate, settings);
  if (!window.AskInput(form)) return;
  const int chosen = form.CheckedIndex(kRateGroup);
  const int rate = chosen >= 0 ? kRecordingRates[static_cast<std::size_t>(chosen)] : document.sampleRate;
  if (rate != document.sampleRate) TakeRate(window, document, states, rate);
  settings.spectrogramShading = form.CheckedIndex(kPictureGroup) == 1 ? 0 : 1;
  settings.AdaptToRoom(RoomFactorOfPercent(form.CountOf(kPercentField)));
  WriteSettingsFile(window, settings, file);
}

}  // namespace parlowen
