#include "palatography/PalateWindow.h"

#include <algorithm>
#include <cctype>

#include "base/Format.h"
#include "spectral/ToolTexts.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kWaveformTitle = "波形-腭位图", kSpectrumTitle = "波形-语谱-腭位图",
                 kStatisticsTitle = "腭位统计";
constexpr UiText kStatisticsButton = "统计";
constexpr UiText kRecordsHint = "↑↓：各段";
constexpr UiText kTime = "%.3f 秒  第 %d 帧";
constexpr UiText kElectrode = "第 %d 行  %.1f%%";

constexpr int kPlay = 1601, kStatistics = 1602, kCompare = 1603;

void Play(Window& window, const PalateDesk& desk) {
  const PalateStretch stretch = ShownStretchOf(desk.document);
  if (desk.play) desk.play(window, stretch.start, stretch.end);
}

void PressCommon(Window& window, PalateDesk desk, int number) {
  // The statistics take this window's place: from there on there is only the copy of the desk.
  if (number == kPlay) return Play(window, desk);
  if (number == kStatistics) PalateStatisticsCommand(window, desk);
}

}  // namespace

// --- Frames

PalateWindow::PalateWindow(const PalateDesk& desk, bool withSpectrum)
    : desk_(desk), withSpectrum_(withSpectrum), width_(desk.document.paneWidth) {}

std::string PalateWindow::Title() const { return withSpectrum_ ? kSpectrumTitle : kWaveformTitle; }

std::vector<ToolControl> PalateWindow::Controls() const {
  const bool frames = FaultOf(desk_.palate, desk_.document) == ContactFault::None;
  return {{kPlay, messages::kPlay, frames}, {kStatistics, kStatisticsButton, true}};
}

Picture PalateWindow::Draw(int width, int height) const {
  return PalatePicture(desk_.document, desk_.palate, desk_.view, withSpectrum_ ? &spectrum_ : nullptr, width,
                       height);
}

void PalateWindow::Click(Window& window, Point at, MouseButton button, bool) {
  const PalateLayout layout(desk_.document, TimingOf(desk_.palate, desk_.document), width_);
  const int frame = layout.FrameAt(at);
  if (button != MouseButton::Left || frame < 0) return;
  desk_.view.current = frame;
  window.Repaint();
}

bool PalateWindow::Key(Window& window, const std::string& key) {
  PalateView& view = desk_.view;
  const ContactSpan shown = ShownFramesOf(TimingOf(desk_.palate, desk_.document), desk_.document);
  const bool any = shown.Count() > 0;
  if (key == "D" || key == "d") {
    view.showTotal = !view.showTotal;
  } else if (key == "Z" || key == "z") {
    view.showGravity = !view.showGravity;
  } else if (key == "Left" || key == "Right") {
    if (any) view.current = std::clamp(view.current + (key == "Left" ? -1 : 1), shown.first, shown.last);
  } else if (key == "Home" || key == "End") {
    if (any) view.current = key == "Home" ? shown.first : shown.last;
  } else {
    return false;
  }
  window.Repaint();
  return true;
}

void PalateWindow::Press(Window& window, const ToolControl& control) {
  PressCommon(window, desk_, control.number);
}

std::string PalateWindow::Hover(Point at) const {
  const PalateLayout layout(desk_.document, TimingOf(desk_.palate, desk_.document), width_);
  const int frame = layout.FrameAt(at);
  if (frame < 0) return {};
  const double sample = PalateLayout::MeansTime(at) ? layout.SampleAt(at.x) : layout.timing.Start(frame);
  std::string line = Format(kTime.Get(), sample / layout.timing.sampleRate, frame);
  for (const std::string& index :
       IndexLines(MeasureContact(FramesOf(desk_.palate, desk_.document)[static_cast<std::size_t>(frame)])))
    line += "  " + index;
  return line;
}

std::string PalateWindow::Text() const {
  const ContactTiming timing = TimingOf(desk_.palate, desk_.document);
  const ContactSpan shown = ShownFramesOf(timing, desk_.document);
  std::string text;
  for (int frame = shown.first; frame <= shown.last; ++frame) {
    text += Format("%d\t%.4f", frame, timing.Start(frame) / timing.sampleRate);
    const ContactIndices indices =
        MeasureContact(FramesOf(desk_.palate, desk_.document)[static_cast<std::size_t>(frame)]);
    for (std::size_t i = 0; i < kContactIndices; ++i) text += "\t" + IndexText(i, indices[i]);
    text += "\n";
  }
  return text;
}

std::string PalateWindow::Instructions() const { return kPalateHint; }

void PalateWindow::Closed(Window& window) {
  desk_.view.framesOpen = false;
  EndActivity(window, desk_.document, Activity::Palate);
}

// --- Statistics

std::string PalateStatisticsWindow::Title() const { return kStatisticsTitle; }

std::vector<ToolControl> PalateStatisticsWindow::Controls() const {
  return {{kPlay, messages::kPlay, true},
          {kStatistics, kStatisticsButton, true},
          {kCompare, messages::kCompare, !desk_.view.statistics.records.empty()}};
}

Picture PalateStatisticsWindow::Draw(int width, int height) const {
  return PalateStatisticsPicture(desk_.view.statistics, width, height);
}

bool PalateStatisticsWindow::Key(Window& window, const std::string& key) {
  PalateStatistics& statistics = desk_.view.statistics;
  if (!statistics.ofFile || (key != "Up" && key != "Down")) return false;
  statistics.shown =
      std::clamp(statistics.shown + (key == "Up" ? -1 : 1), 0, static_cast<int>(statistics.records.size()));
  window.Repaint();
  return true;
}

void PalateStatisticsWindow::Press(Window& window, const ToolControl& control) {
  if (control.number == kCompare) return ComparePalateStatistics(window, desk_.view.statistics);
  PressCommon(window, desk_, control.number);
}

std::string PalateStatisticsWindow::Hover(Point at) const {
  const int electrode = ElectrodeUnder(at);
  const PalateStatistics& statistics = desk_.view.statistics;
  if (electrode < 0 || statistics.records.empty()) return {};
  return Format(kElectrode.Get(), electrode < 6 ? 1 : (electrode + 2) / 8 + 1,
                statistics.Shown().percent[static_cast<std::size_t>(electrode)]);
}

std::string PalateStatisticsWindow::Text() const {
  const PalateStatistics& statistics = desk_.view.statistics;
  if (statistics.records.empty()) return {};
  const ContactStatistics shown = statistics.Shown();
  std::string text = StatisticsTitle(statistics) + "\n";
  for (std::size_t i = 0; i < kContactIndices; ++i)
    text +=
        IndexName(i) + "\t" + IndexText(i, shown.mean[i]) + "\t" + IndexText(i, shown.deviation[i]) + "\n";
  for (int row = 0; row < kPalateRows; ++row) {
    for (int column = 0; column < kPalateColumns; ++column)
      text += (column == 0 ? "" : "\t") +
              (HasElectrode(row, column)
                   ? Format("%.1f", shown.percent[static_cast<std::size_t>(ElectrodeAt(row, column))])
                   : std::string());
    text += "\n";
  }
  return text;
}

std::string PalateStatisticsWindow::Instructions() const {
  return desk_.view.statistics.ofFile ? std::string(kRecordsHint) : std::string();
}

void PalateStatisticsWindow::Closed(Window& window) { EndActivity(window, desk_.document, Activity::Palate); }

}  // namespace parlowen
