#include "shell/PitchSpan.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/Format.h"
#include "ui/InputForm.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "基频显示范围";
constexpr UiText kSpeaker = "自动（按说话人）", kFixed = "64–512 Hz", kOwn = "自定：";
constexpr UiText kLowest = "下限（Hz）", kHighest = "上限（Hz）";
constexpr UiText kWrong = "请输入 %d–%d Hz，上限至少是下限的 1.25 倍";
constexpr int kLowestField = 1000, kHighestField = 1001;
constexpr double kReference = 64.0, kOctave = 12.0, kMargin = 2.0;  // Hz, semitones

double SemitonesOf(double frequency) { return kOctave * std::log2(frequency / kReference); }
double FrequencyOf(double semitones) { return kReference * std::exp2(semitones / kOctave); }

FormField Radio(UiText label, bool checked) {
  FormField field;
  field.kind = FieldKind::Radio;
  field.label = label;
  field.checked = checked;
  return field;
}

FormField Limit(int control, UiText label, double value) {
  FormField field;
  field.control = control;
  field.kind = FieldKind::Number;
  field.label = label;
  field.value = Format("%.0f", value);
  return field;
}

}  // namespace

PitchSpan ShownPitchSpan(const PitchSpanChoice& choice, const SoundDocument& document) {
  if (choice.kind == PitchSpanChoice::Kind::Own) return choice.own;
  if (choice.kind == PitchSpanChoice::Kind::Fixed || !document.pitchPresent || document.sampleRate <= 0)
    return {};
  std::vector<double> tones;
  for (int frame = 0; frame < document.ContourLength(); ++frame) {
    const double period = static_cast<double>(document.pitch[static_cast<std::size_t>(frame)]);
    if (period > 0) tones.push_back(SemitonesOf(document.sampleRate / period));
  }
  if (tones.empty()) return {};
  const auto quantile = [&](std::size_t percent) {
    const auto at = tones.begin() + static_cast<std::ptrdiff_t>((tones.size() - 1) * percent / 100);
    std::nth_element(tones.begin(), at, tones.end());
    return *at;
  };
  double low = std::floor(quantile(2) - kMargin), high = std::ceil(quantile(98) + kMargin);
  const double missing = std::max(0.0, kOctave - (high - low));
  low -= std::floor(missing / 2);
  high += std::ceil(missing / 2);
  return {FrequencyOf(low), FrequencyOf(high)};
}

bool AskPitchSpan(Window& window, PitchSpanChoice& choice) {
  using Kind = PitchSpanChoice::Kind;
  InputForm form;
  form.title = kTitle;
  form.fields = {Radio(kSpeaker, choice.kind == Kind::Speaker), Radio(kFixed, choice.kind == Kind::Fixed),
                 Radio(kOwn, choice.kind == Kind::Own), Limit(kLowestField, kLowest, choice.own.lowest),
                 Limit(kHighestField, kHighest, choice.own.highest)};
  while (window.AskInput(form)) {
    const auto kind = static_cast<Kind>(std::max(0, form.CheckedIndex()));
    const int low = form.CountOf(kLowestField), high = form.CountOf(kHighestField);
    if (kind == Kind::Own &&
        (low < kLowestPitchLimit || high > kHighestPitchLimit || high < low * kLeastPitchRatio)) {
      window.Notify(Format(kWrong.Get(), kLowestPitchLimit, kHighestPitchLimit));
      continue;
    }
    choice.kind = kind;
    if (kind == Kind::Own) choice.own = {static_cast<double>(low), static_cast<double>(high)};
    return true;
  }
  return false;
}

}  // namespace parlowen
