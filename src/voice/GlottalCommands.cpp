#include "voice/GlottalCommands.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Messages.h"
#include "ui/Text.h"
#include "ui/TextExport.h"
#include "voice/GlottalPicture.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "声门波估计（估计值）";
constexpr UiText kTurn = "反相";
constexpr UiText kPeriodLine =
    "第%d个周期 %.4f秒  F0=%sHz  OQ=%s  QOQ=%s  SQ=%s  NAQ=%s  H1-H2=%sdB  HRF=%sdB";

constexpr int kShowButton = 1501, kTurnButton = 1502, kPlayButton = 1503;
constexpr int kShortest = 50, kLongest = 5000;  // ms
constexpr const char* kFileName = "GlotWave.txt";

constexpr FileText kHeading = "\r\n          声门波估计数据（估计值）\r\n\r\n";
constexpr FileText kStretchLine = "语音段：%.3f--%.3f秒，%d个周期%s\r\n";
constexpr FileText kTurnedOver = "，波形已反相";
constexpr FileText kMean = "平均", kDeviation = "标准差";
constexpr FileText kPerturbations = "基频微扰(jitter)=%s%%，振幅微扰(shimmer)=%s%%\r\n\r\n";
constexpr FileText kColumns =
    "  周期   起点(秒)   F0(Hz)      OQ     QOQ      SQ     NAQ  H1-H2(dB)  HRF(dB)\r\n";

/// A number with decimals, in a field as wide as asked; "--" for what is none.
std::string Number(double value, int decimals, int width = 0) {
  return std::isfinite(value) ? Format("%*.*f", width, decimals, value) : Format("%*s", width, "--");
}

/// The measures in one line, without their name.
std::string MeasuresLine(const GlottalMeasures& m) {
  return Format("F0=%sHz  OQ=%s  QOQ=%s  SQ=%s  NAQ=%s  H1-H2=%sdB  HRF=%sdB\r\n", Number(m.f0, 1).c_str(),
                Number(m.oq, 3).c_str(), Number(m.qoq, 3).c_str(), Number(m.sq, 2).c_str(),
                Number(m.naq, 3).c_str(), Number(m.h1h2, 1).c_str(), Number(m.hrf, 1).c_str());
}

SampleSpan SpanOf(const std::vector<std::int16_t>& samples) {
  return {samples.data(), static_cast<int>(samples.size())};
}

class GlottalWindow : public ToolWindow {
 public:
  explicit GlottalWindow(const GlottalDesk& desk) : desk_(desk) {}

  std::string Name() const override { return "glottal"; }
  std::string Title() const override { return kTitle; }
  std::string Instructions() const override { return kGlottalHint; }
  Point PreferredSize() const override { return {1024, 640}; }
  std::vector<ToolControl> Controls() const override {
    const bool shown = desk_.state.shown;
    return {{kShowButton, messages::kShowData, shown},
            {kTurnButton, kTurn, shown},
            {kPlayButton, messages::kPlay, shown}};
  }
  Picture Draw(int width, int height) const override {
    if (!desk_.state.shown) return {width, height, {}};
    return GlottalPicture(desk_.state.wave, SpanOf(desk_.state.samples), SpanOf(desk_.state.second),
                          desk_.state.chosen, width, height);
  }
  void Resized(int width, int /*height*/) override { width_ = width; }

  void Click(Window& window, Point at, MouseButton button, bool /*shift*/) override {
    if (button != MouseButton::Left || !desk_.state.shown) return;
    const int sample = GlottalSampleAt(desk_.state.wave, at.x, Width());
    const auto& periods = desk_.state.wave.periods;
    const auto hit = std::find_if(periods.begin(), periods.end(), [sample](const GlottalPeriod& period) {
      return sample >= period.start && sample < period.start + period.length;
    });
    if (hit != periods.end()) Choose(window, static_cast<int>(hit - periods.begin()));
  }

  bool Key(Window& window, const std::string& key) override {
    if ((key != "Left" && key != "Right") || !desk_.state.shown) return false;
    const int last = static_cast<int>(desk_.state.wave.periods.size()) - 1;
    const int chosen = desk_.state.chosen;
    Choose(window, key == "Right" ? std::min(chosen + 1, last) : std::max(chosen - 1, 0));
    return true;
  }

  void Press(Window& window, const ToolControl& control) override {
    if (!desk_.state.shown) return;
    if (control.number == kShowButton) ShowData(window);
    if (control.number == kTurnButton) TurnOver(window);
    if (control.number == kPlayButton && desk_.play)
      desk_.play(window, desk_.state.wave.start, std::min(desk_.state.wave.end, desk_.document.sampleCount));
  }

  std::string Text() const override {
    return desk_.state.shown ? FromGbk(GlottalWaveText(desk_.state.wave)) : "";
  }
  void Closed(Window& window) override {
    desk_.document.EndTool(Activity::GlottalWave);
    window.Repaint();
  }

 private:
  int Width() const { return width_ > 0 ? width_ : desk_.document.paneWidth; }

  void Choose(Window& window, int index) {
    desk_.state.chosen = index;
    const GlottalPeriod& period = desk_.state.wave.periods[static_cast<std::size_t>(index)];
    const GlottalMeasures& m = period.measures;
    window.ShowStatus(Format(
        kPeriodLine.Get(), index + 1, static_cast<double>(period.start) / desk_.state.wave.sampleRate,
        Number(m.f0, 1).c_str(), Number(m.oq, 3).c_str(), Number(m.qoq, 3).c_str(), Number(m.sq, 2).c_str(),
        Number(m.naq, 3).c_str(), Number(m.h1h2, 1).c_str(), Number(m.hrf, 1).c_str()));
    window.Repaint();
  }

  void ShowData(Window& window) {
    if (WriteTextExport(window, desk_.exportFolder, kFileName, GlottalWaveText(desk_.state.wave)) < 0) return;
    ShowTextExport(window, desk_.exportFolder, kFileName);
  }

  void TurnOver(Window& window) {
    GlottalState& state = desk_.state;
    if (EstimateGlottalWave(SpanOf(state.samples), state.wave.sampleRate, state.stretch, !state.turned,
                            state.wave) < 0)
      return window.Notify(messages::kNoPitchInStretch);
    state.turned = !state.turned;
    state.chosen = -1;
    window.Repaint();
  }

  GlottalDesk desk_;
  int width_ = 0;  ///< of the drawing in the desktop; a script's clicks count with the panes' width
};

}  // namespace

bool GlottalWaveCommand(Window& window, const GlottalDesk& desk) {
  SoundDocument& document = desk.document;
  if (!document.selectionDefined()) {
    window.ShowStatus(messages::kMarkFirst);
    return false;
  }
  if (!document.pitchPresent) return window.Refuse(messages::kNoContour);
  const std::int64_t milliseconds = std::int64_t{document.SelectionLength()} * 1000;
  if (milliseconds < std::int64_t{kShortest} * document.sampleRate ||
      milliseconds > std::int64_t{kLongest} * document.sampleRate)
    return window.Refuse(messages::kWrongLength);
  const std::span<const float> contour(document.pitch.data(),
                                       static_cast<std::size_t>(document.ContourLength()));
  const auto stretch =
      LongestVoicedStretch(contour, document.selectionStart, document.selectionEnd, document.sampleRate);
  GlottalWave wave;
  if (!stretch || EstimateGlottalWave(document.Samples(), document.sampleRate, *stretch, false, wave) < 0)
    return window.Refuse(messages::kNoPitchInStretch);
  const auto copyOf = [&](const SampleBuffer& channel) {
    return std::vector<std::int16_t>(channel.data(), channel.data() + document.sampleCount);
  };
  GlottalState made{true, *stretch, false,           std::move(wave), copyOf(document.samples),
                    {},   -1,       document.Stamp()};
  if (document.twoChannel) made.second = copyOf(document.samples2);
  desk.state = std::move(made);
  window.OpenToolWindow(std::make_unique<GlottalWindow>(desk));
  document.BeginTool(Activity::GlottalWave);
  return true;
}

std::string GlottalWaveText(const GlottalWave& wave) {
  const double rate = wave.sampleRate;
  std::string text = kHeading;
  text += Format(kStretchLine, wave.start / rate, wave.end / rate, static_cast<int>(wave.periods.size()),
                 wave.inverted ? kTurnedOver : "");
  // The names' fields are ten bytes of GBK wide: two a character.
  text += std::string(kMean) + std::string(6, ' ') + MeasuresLine(wave.mean);
  text += std::string(kDeviation) + std::string(4, ' ') + MeasuresLine(wave.sd);
  text += Format(kPerturbations, Number(wave.jitter, 2).c_str(), Number(wave.shimmer, 2).c_str());
  text += kColumns;
  int index = 0;
  for (const GlottalPeriod& period : wave.periods) {
    const GlottalMeasures& m = period.measures;
    text += Format("%6d%11.4f", ++index, period.start / rate) + Number(m.f0, 1, 9) + Number(m.oq, 3, 8) +
            Number(m.qoq, 3, 8) + Number(m.sq, 2, 8) + Number(m.naq, 3, 8) + Number(m.h1h2, 1, 11) +
            Number(m.hrf, 1, 9) + "\r\n";
  }
  return ToGbk(text);
}

}  // namespace parlowen
