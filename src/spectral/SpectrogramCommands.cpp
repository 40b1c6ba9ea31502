#include "spectral/SpectrogramCommands.h"

#include "spectral/Spectrogram.h"

namespace parlowen {
namespace {

void ComputePicture(const SoundDocument& document, SpectrogramState& spectrogram, const SpectrogramStretch& stretch) {
  const SpectrogramSettings settings = SettingsOf(spectrogram.kind, document.sampleRate);
  spectrogram.frameLength = settings.frameLength;
  spectrogram.contrast = settings.contrast;
  spectrogram.stretch = stretch;
  spectrogram.matrix = ComputeSpectrogram(document, spectrogram.kind, settings, stretch);
}

}  // namespace

void SpectrogramCommand(Window& window, const SoundDocument& document, SpectrogramState& spectrogram,
                        SpectrogramKind kind) {
  spectrogram.kind = kind;
  spectrogram.shades.clear();
  ComputePicture(document, spectrogram, StretchOf(document));
  spectrogram.shown = true;
  window.Repaint();
}

void RedrawSpectrogram(const SoundDocument& document, SpectrogramState& spectrogram) {
  ComputePicture(document, spectrogram, spectrogram.stretch.followsView ? ViewStretchOf(document) : StretchOf(document));
  for (const int direction : spectrogram.shades) DarkenLightenMatrix(spectrogram.matrix, direction);
}

void DarkenLighten(Window& window, SpectrogramState& spectrogram, int direction) {
  if (!spectrogram.shown || spectrogram.kind == SpectrogramKind::Cepstrum) return;
  DarkenLightenMatrix(spectrogram.matrix, direction);
  spectrogram.shades.push_back(direction);
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
