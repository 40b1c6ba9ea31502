#include "spectral/SpectrogramCommands.h"

#include "spectral/Spectrogram.h"

namespace parlowen {

void SpectrogramCommand(Window& window, const SoundDocument& document, SpectrogramState& spectrogram,
                        SpectrogramKind kind) {
  spectrogram.kind = kind;
  spectrogram.shades.clear();
  RedrawSpectrogram(document, spectrogram);
  spectrogram.shown = true;
  window.Repaint();
}

void RedrawSpectrogram(const SoundDocument& document, SpectrogramState& spectrogram) {
  const SpectrogramSettings settings = SettingsOf(spectrogram.kind, document.sampleRate);
  spectrogram.frameLength = settings.frameLength;
  spectrogram.contrast = settings.contrast;
  spectrogram.stretch = StretchOf(document);
  spectrogram.matrix = ComputeSpectrogram(document, spectrogram.kind, settings, spectrogram.stretch);
  for (const int direction : spectrogram.shades) DarkenLightenMatrix(spectrogram.matrix, direction);
}

void DarkenLighten(Window& window, SpectrogramState& spectrogram, int direction) {
  if (!spectrogram.shown || spectrogram.kind == SpectrogramKind::Cepstrum) return;
  DarkenLightenMatrix(spectrogram.matrix, direction);
  spectrogram.shades.push_back(direction);
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
