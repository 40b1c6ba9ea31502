#include "spectral/SpectrumWindow.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "base/Format.h"
#include "spectral/SpectralPlot.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrogramPicture.h"
#include "spectral/ToolTexts.h"

namespace parlowen {
namespace {

constexpr const char* kHint = "对正在画的谱图，F 键显示共振峰, D/L键: 加深／淡化谱图（对倒谱和立体图无效）";
constexpr int kHintHeight = 24, kWaveShare = 4;  // the waveform has a quarter of the height
constexpr int kLabelWidth = 50;
constexpr Colour kWave = 0x1F3F77;

/// First sample under a column of the picture.
std::int64_t SampleAt(const SpectrogramStretch& stretch, int sampleRate, int x, int width) {
  if (stretch.followsView) return stretch.ColumnStart(x - stretch.firstX, sampleRate);
  return stretch.start + std::int64_t{x} * (stretch.end - stretch.start) / stretch.Width(width);
}

Picture WavePicture(const SoundDocument& document, const SpectrogramStretch& stretch, int width, int height) {
  Picture picture{width, height, {}};
  const SampleSpan samples = document.Samples();
  const int middle = height / 2;
  picture.Add(LineMark{{0, middle}, {width - 1, middle}, colours::kGrid});
  PolylineMark wave{{}, kWave};
  const int last = stretch.followsView ? width : stretch.Width(width);
  for (int x = stretch.firstX; x < last; ++x) {
    const auto from =
        std::clamp<std::int64_t>(SampleAt(stretch, document.sampleRate, x, width), 0, samples.count);
    const auto to =
        std::clamp<std::int64_t>(SampleAt(stretch, document.sampleRate, x + 1, width), from, samples.count);
    int low = samples.At(from), high = low;
    for (std::int64_t n = from; n < to; ++n) {
      low = std::min<int>(low, samples.data[n]);
      high = std::max<int>(high, samples.data[n]);
    }
    if (from >= samples.count) break;
    wave.points.push_back({x, middle - high * (middle - 1) / 32768});
    wave.points.push_back({x, middle - low * (middle - 1) / 32768});
  }
  if (wave.points.size() > 1) picture.Add(std::move(wave));
  return picture;
}

class SpectrumWindow : public ToolWindow {
 public:
  SpectrumWindow(SoundDocument& document, SpectrogramState& spectrogram, bool withWaveform)
      : document_(document), spectrogram_(spectrogram), withWaveform_(withWaveform) {}
  std::string Name() const override { return "spectrum"; }
  std::string Title() const override { return withWaveform_ ? "谱图窗口" : "单谱图窗口"; }
  Picture Draw(int width, int height) const override {
    return SpectrumWindowPicture(document_, spectrogram_, withWaveform_, width, height);
  }
  bool Key(Window& window, const std::string& key) override {
    const char letter =
        key.size() == 1 ? static_cast<char>(std::toupper(static_cast<unsigned char>(key[0]))) : '\0';
    if (letter == 'D' || letter == 'L') {
      DarkenLighten(window, spectrogram_, letter == 'D' ? +1 : -1);
    } else if (letter == 'F') {
      ToggleFormants(window, document_, spectrogram_);
    } else {
      return false;
    }
    return true;
  }
  void Closed(Window& window) override { EndActivity(window, document_, Activity::Spectrum); }

 private:
  SoundDocument& document_;
  SpectrogramState& spectrogram_;
  const bool withWaveform_;
};

}  // namespace

Picture SpectrumWindowPicture(const SoundDocument& document, const SpectrogramState& spectrogram,
                              bool withWaveform, int width, int height) {
  Picture picture{width, height, {}};
  if (!spectrogram.shown) return picture;
  const int inner = std::max(1, width - kLabelWidth);
  const int waveHeight = withWaveform ? height / kWaveShare : 0;
  const int pictureHeight = height - waveHeight - (withWaveform ? kHintHeight : 0);
  if (withWaveform) {
    picture.AddAt(WavePicture(document, spectrogram.stretch, inner, waveHeight), kLabelWidth, 0);
    AddLine(picture, kLabelWidth, height - 7, kHint);
  }
  picture.AddAt(SpectrogramPicture(spectrogram, document.sampleRate, inner, pictureHeight), kLabelWidth,
                waveHeight);
  for (const SpectrogramGridLine& line : SpectrogramGrid(spectrogram, document.sampleRate, pictureHeight))
    picture.Add(TextMark{kLabelWidth - 6, waveHeight + line.y + 4, line.label, colours::kText, 10,
                         Anchor::Right, Face::Figures});
  return picture;
}

void ShowSpectrumCommand(Window& window, SoundDocument& document, SpectrogramState& spectrogram,
                         bool withWaveform) {
  window.OpenToolWindow(std::make_unique<SpectrumWindow>(document, spectrogram, withWaveform));
  document.activity = Activity::Spectrum;
  window.Repaint();
}

}  // namespace parlowen
