#include "spectral/SpectrumWindow.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "document/WavePyramid.h"
#include "spectral/FrequencyCeiling.h"
#include "spectral/SpectralPlot.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrogramPicture.h"
#include "spectral/ToolTexts.h"
#include "ui/Figure.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kHint = "对正在画的谱图，F 键显示共振峰, D/L键: 加深／淡化谱图（对倒谱和立体图无效）";
constexpr UiText kBothTitle = "谱图窗口", kAloneTitle = "单谱图窗口";
constexpr int kHintHeight = 24, kWaveShare = 4;  // the waveform has a quarter of the height
constexpr int kFullScale = 32768;

Picture WavePicture(const SoundDocument& document, const SampleScale& columns, int width, int height) {
  Picture picture{width, height, {}};
  const SampleSpan samples = document.Samples();
  const PlotScale rows{0, kFullScale, height / 2, 1};
  picture.Add(LineMark{{0, rows.from}, {width - 1, rows.from}, colours::kGrid});
  const auto points = WavePoints(
      columns.left, width, samples.count, [&](int x) { return columns.SampleAt(x); }, ExtremesFrom(samples));
  AddCurve(picture, points, rows, colours::kWave);
  return picture;
}

class SpectrumWindow : public ToolWindow {
 public:
  SpectrumWindow(SoundDocument& document, SpectrogramState& spectrogram, bool withWaveform)
      : document_(document), spectrogram_(spectrogram), withWaveform_(withWaveform) {}
  std::string Name() const override { return "spectrum"; }
  bool ScalesWithWindow() const override { return false; }
  std::string Title() const override { return withWaveform_ ? kBothTitle : kAloneTitle; }
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
  constexpr FigureStyle kStyle;
  const int hint = withWaveform ? kHintHeight : 0;
  // What the figure takes beside and above the spectrum is known before anything is drawn.
  std::vector<FigurePane> panes(withWaveform ? 2 : 1);
  FigurePane& spectrum = panes.back();
  spectrum.caption = SpectrogramCaption(spectrogram, document.sampleRate);
  spectrum.axis.emplace();
  if (withWaveform) panes.front().picture.height = height / kWaveShare;
  const Picture bare = ComposeFigure(panes, kStyle);
  const int inner = std::max(1, width - bare.WholeWidth());
  const int pictureHeight = std::max(1, height - bare.WholeHeight() - hint);
  // The stretch fills the window, also one that lies under the panes of the main window.
  const SpectrogramStretch& stretch = spectrogram.stretch;
  const SampleScale columns{stretch.start, std::max(1, stretch.end - stretch.start), inner, 0};
  if (withWaveform)
    panes.front().picture = WavePicture(document, columns, inner, panes.front().picture.height);
  const int rows = ShownRows(document, spectrogram);
  spectrum.picture =
      SpectrogramPicture(spectrogram, document.sampleRate, columns, inner, pictureHeight, rows);
  spectrum.ticks = SpectrogramGrid(spectrogram, document.sampleRate, pictureHeight, rows);
  const PlotScale seconds = PlotScale::Seconds(columns, document.sampleRate, inner);
  if (spectrogram.ridges.empty()) {
    *spectrum.axis = {seconds, RoundTicks(seconds, kTimeLabelRoom), kTimeUnit, {}};
  } else {
    *spectrum.axis = {{0, 1, 0, inner}, RidgeTicks(document.sampleRate), {}, {}};
  }
  const Picture figure = ComposeFigure(panes, kStyle);
  picture.AddAt(figure, figure.around.left, figure.around.top);
  if (withWaveform) AddLine(picture, figure.around.left, height - 7, kHint);
  return picture;
}

void ShowSpectrumCommand(Window& window, SoundDocument& document, SpectrogramState& spectrogram,
                         bool withWaveform) {
  window.OpenToolWindow(std::make_unique<SpectrumWindow>(document, spectrogram, withWaveform));
  document.BeginTool(Activity::Spectrum);
  window.Repaint();
}

}  // namespace parlowen
