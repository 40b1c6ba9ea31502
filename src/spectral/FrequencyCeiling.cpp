#include "spectral/FrequencyCeiling.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/Format.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "显示频率上限", kAll = "全部", kHertz = "%dHz";
constexpr UiText kNowAll = "显示频率上限：全部", kNow = "显示频率上限：%d Hz";

std::string LabelOf(int ceiling) { return ceiling == 0 ? kAll.Get() : Format(kHertz.Get(), ceiling); }

void Take(Window& window, SpectrogramState& spectrogram, int ceiling) {
  spectrogram.ceiling = ceiling;
  window.Repaint();
}

}  // namespace

int ShownRows(const SoundDocument& document, const SpectrogramState& spectrogram) {
  const bool repair = document.activity == Activity::PitchRepair;
  const int ceiling = repair ? kRepairCeiling : spectrogram.ceiling;
  if (ceiling <= 0 || document.sampleRate <= 0 || spectrogram.kind == SpectrogramKind::Cepstrum ||
      !spectrogram.ridges.empty())
    return kSpectrogramRows;
  return static_cast<int>(
      std::min<std::int64_t>(kSpectrogramRows, std::int64_t{ceiling} * 512 / document.sampleRate + 1));
}

void ChooseCeiling(Window& window, SpectrogramState& spectrogram) {
  InputForm form;
  form.title = kTitle;
  for (const int ceiling : kCeilings) {
    FormField field;
    field.kind = FieldKind::Radio;
    field.label = LabelOf(ceiling);
    field.checked = ceiling == spectrogram.ceiling;
    form.fields.push_back(field);
  }
  if (!window.AskInput(form)) return;
  const int chosen = form.CheckedIndex();
  if (chosen >= 0) Take(window, spectrogram, kCeilings[chosen]);
}

bool NextCeiling(Window& window, SpectrogramState& spectrogram) {
  if (!spectrogram.shown) return false;
  const auto* present = std::find(std::begin(kCeilings), std::end(kCeilings), spectrogram.ceiling);
  const auto next = (present - std::begin(kCeilings) + 1) % std::ssize(kCeilings);
  Take(window, spectrogram, kCeilings[next]);
  window.ShowStatus(kCeilings[next] == 0 ? std::string(kNowAll) : Format(kNow.Get(), kCeilings[next]));
  return true;
}

}  // namespace parlowen
