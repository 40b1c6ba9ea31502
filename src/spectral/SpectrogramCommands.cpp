#include "spectral/SpectrogramCommands.h"

#include "document/ViewScale.h"
#include "spectral/FilterBank.h"
#include "spectral/Spectrogram.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTooLong = "所选段太长！";

bool IsTooLong(const SpectrogramStretch& stretch) {
  return stretch.end - stretch.start > kLongestFilterBankStretch;
}

/// Everything of the picture but kind, view, contrast and shades.
void ComputePicture(const SoundDocument& document, SpectrogramState& spectrogram,
                    const SpectrogramStretch& stretch, bool threeDimensional, LpcAnalyser* analyser) {
  const SpectrogramKind kind = spectrogram.kind;
  SpectrogramSettings settings = SettingsOf(kind, document.sampleRate);
  settings.contrast = spectrogram.contrast;
  spectrogram.frameLength = settings.frameLength;
  spectrogram.stretch = threeDimensional ? RidgeStretchOf(stretch, document.sampleRate) : stretch;
  spectrogram.ridges.clear();
  if (threeDimensional)
    spectrogram.ridges = ComputeRidges(document, kind, settings, spectrogram.stretch, analyser);
  spectrogram.matrix = ComputeSpectrogram(document, kind, settings, spectrogram.stretch, analyser);
  spectrogram.formants.clear();
  if (spectrogram.formantsShown)
    spectrogram.formants =
        ComputeFormantDots(document, spectrogram.stretch, spectrogram.matrix.columns, analyser);
}

}  // namespace

bool SpectrogramCommand(Window& window, const SoundDocument& document, SpectrogramState& spectrogram,
                        SpectrogramKind kind, const SpectrogramOptions& options) {
  const bool filterBank = kind == SpectrogramKind::FilterBank;
  const SpectrogramStretch stretch =
      filterBank ? FilterBankStretchOf(document, !document.selectionDefined()) : StretchOf(document);
  if (filterBank && IsTooLong(stretch)) return window.Refuse(kTooLong);
  const LoudestFrame loudest = FindLoudestFrame(document, stretch.levelStart, stretch.levelEnd);
  spectrogram.kind = kind;
  spectrogram.contrast = SettingsOf(kind, document.sampleRate, loudest.level).contrast;
  spectrogram.shades.clear();
  spectrogram.formantsShown = false;
  const bool threeDimensional = options.threeDimensional && !filterBank && kind != SpectrogramKind::Cepstrum;
  ComputePicture(document, spectrogram, stretch, threeDimensional, options.analyser);
  spectrogram.shown = true;
  spectrogram.sound = document.Stamp();
  window.Repaint();
  return true;
}

void RedrawSpectrogram(const SoundDocument& document, SpectrogramState& spectrogram) {
  const bool threeDimensional = !spectrogram.ridges.empty();
  const bool ofView = spectrogram.stretch.followsView || !document.selectionDefined();
  SpectrogramStretch stretch = ofView ? ViewStretchOf(document) : StretchOf(document);
  if (spectrogram.kind == SpectrogramKind::FilterBank) {
    stretch = FilterBankStretchOf(document, ofView);
    if (IsTooLong(stretch)) {
      spectrogram.Clear();
      return;
    }
  }
  ComputePicture(document, spectrogram, stretch, threeDimensional, nullptr);
  for (const int direction : spectrogram.shades) DarkenLightenMatrix(spectrogram.matrix, direction);
}

void FollowView(const SoundDocument& document, SpectrogramState& spectrogram) {
  if (!spectrogram.shown || !spectrogram.stretch.followsView) return;
  if (spectrogram.kind == SpectrogramKind::FilterBank && IsTooLong(FilterBankStretchOf(document, true)))
    spectrogram.stretch.view = TimeScaleOf(document);
  else
    RedrawSpectrogram(document, spectrogram);
}

void DrawOfView(const SoundDocument& document, SpectrogramState& spectrogram) {
  if (!spectrogram.shown || spectrogram.stretch.followsView) return;
  if (spectrogram.kind == SpectrogramKind::FilterBank && IsTooLong(FilterBankStretchOf(document, true)))
    return;
  spectrogram.stretch.followsView = true;
  RedrawSpectrogram(document, spectrogram);
}

void DarkenLighten(Window& window, SpectrogramState& spectrogram, int direction) {
  if (!spectrogram.CanBeShaded()) return;
  DarkenLightenMatrix(spectrogram.matrix, direction);
  spectrogram.shades.push_back(direction);
  window.Repaint(Pane::Analysis);
}

void ToggleFormants(Window& window, const SoundDocument& document, SpectrogramState& spectrogram) {
  if (!spectrogram.CanBeShaded()) return;
  spectrogram.formantsShown = !spectrogram.formantsShown;
  spectrogram.formants.clear();
  if (spectrogram.formantsShown)
    spectrogram.formants = ComputeFormantDots(document, spectrogram.stretch, spectrogram.matrix.columns);
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
