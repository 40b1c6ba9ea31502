#include "interchange/AnalysisTables.h"

#include <algorithm>

#include "base/Format.h"
#include "document/LevelMeasures.h"
#include "interchange/CsvTable.h"
#include "interchange/FrameGrid.h"

namespace parlowen {

std::string PitchCsv(const SoundDocument& document, PitchRange range) {
  const PitchBounds bounds = BoundsOf(range);
  CsvTable table = MakeCsvTable(
      OriginOf(document, Format("pitch range %d-%d Hz, frames of 10 ms", bounds.lowest, bounds.highest)));
  table.AddRow({"time_s", "f0_Hz", "semitones", "period_samples"});
  const FrameSpan frames = FramesToExport(document);
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    const float period = document.pitch[static_cast<std::size_t>(frame)];
    const double frequency = FrequencyOf(period, document.sampleRate);
    const bool voiced = frequency > 0;
    table.AddRow({CsvNumber(TimeOfFrame(frame)), CsvNumberOrNone(frequency),
                  voiced ? CsvNumber(SemitonesOf(frequency)) : "", voiced ? ShortestNumber(period) : ""});
  }
  return table.text();
}

std::string LevelsCsv(const SoundDocument& document) {
  CsvTable table = MakeCsvTable(OriginOf(
      document, "frames of 10 ms from start_s on; peak: largest |x|; level: 10 log10 of the mean square"));
  table.AddRow({"time_s", "start_s", "peak", "level_dB"});
  const FrameSpan frames = FramesToExport(document);
  const int rate = document.sampleRate;
  const LevelCurve levels = MakeLevelCurve(document.Samples(), rate, 100, 0, frames.last + 1);
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    const int start = SampleOfFrame(frame, rate), length = std::max(1, rate / 100);
    table.AddRow({CsvNumber(TimeOfFrame(frame)), CsvNumber(SecondsOf(start, rate)),
                  std::to_string(PeakAmplitude(document.Samples(), start, start + length)),
                  CsvNumber(levels.values[static_cast<std::size_t>(frame)])});
  }
  return table.text();
}

std::string FormantsCsv(const SoundDocument& document, const VowelTrack& track) {
  CsvTable table = MakeCsvTable(OriginOf(document, "LPC order 16, frames of 20 ms every 10 ms"));
  std::vector<std::string> cells = {"time_s"};
  for (int i = 1; i <= kMostFormants; ++i) {
    cells.push_back(Format("F%d_Hz", i));
    cells.push_back(Format("B%d_Hz", i));
  }
  table.AddRow(cells);
  for (std::size_t k = 0; k < track.frames.size(); ++k) {
    const FormantFrame& frame = track.frames[k];
    cells = {CsvNumber(TimeOfFrameAt(track.start + static_cast<int>(k) * track.step, document.sampleRate))};
    for (std::size_t i = 0; i < kMostFormants; ++i) {
      const bool found = static_cast<int>(i) < frame.count;
      cells.push_back(found ? CsvNumber(frame.frequency[i]) : "");
      cells.push_back(found ? CsvNumber(frame.bandwidth[i]) : "");
    }
    table.AddRow(cells);
  }
  return table.text();
}

std::string LtaCsv(const LtaState& lta) {
  CsvTable table = MakeCsvTable({lta.soundPath, lta.sampleRate, lta.start, lta.end,
                                 Format("%d frames of 512 samples every 2.5 ms", lta.frames)});
  std::vector<std::string> cells = {"frequency_Hz", "level_dB"};
  if (lta.hasPrevious) cells.push_back("previous_dB");
  if (lta.difference) cells.push_back("difference_dB");
  table.AddRow(cells);
  // Levels are kept on the doubled scale.
  for (std::size_t k = 0; k < kLtaBins; ++k) {
    cells = {CsvNumber(static_cast<double>(k) * lta.sampleRate / 512.0), CsvNumber(lta.levels[k] / 2)};
    if (lta.hasPrevious) cells.push_back(CsvNumber(lta.previous[k] / 2));
    if (lta.difference) cells.push_back(CsvNumber(lta.difference->curve[k] / 2));
    table.AddRow(cells);
  }
  return table.text();
}

std::string GlottalCsv(const GlottalWave& wave, const std::string& soundPath) {
  CsvTable table =
      MakeCsvTable({soundPath, wave.sampleRate, wave.start, wave.end,
                    Format("closed-phase weighted prediction, polarity %s, jitter %s %%, shimmer %s %%",
                           wave.inverted ? "turned over" : "as recorded", CsvNumber(wave.jitter).c_str(),
                           CsvNumber(wave.shimmer).c_str())});
  table.AddRow({"start", "n", "f0", "oq", "qoq", "sq", "naq", "h1h2", "hrf"});
  for (const GlottalPeriod& period : wave.periods) {
    std::vector<std::string> cells = {std::to_string(period.start), std::to_string(period.length)};
    for (const auto measure : kGlottalMeasures) cells.push_back(CsvNumber(period.measures.*measure));
    table.AddRow(cells);
  }
  return table.text();
}

std::string PalateCsv(const PalateState& palate, const SoundDocument& document) {
  const ContactTiming timing = TimingOf(palate, document);
  CsvTable table = MakeCsvTable(
      OriginOf(document, ShortestNumber(timing.rate) + " frames a second; total, front, middle, back in %"));
  std::vector<std::string> cells = {"frame", "time_s"};
  for (int row = 1; row <= kPalateRows; ++row) cells.push_back(Format("row%d", row));
  for (const char* name : {"total", "front", "middle", "back", "ca", "cc", "cog", "asymmetry"})
    cells.push_back(name);
  table.AddRow(cells);
  const std::span<const ContactFrame> frames = FramesOf(palate, document);
  const ContactSpan shown = ShownFramesOf(timing, document);
  for (int i = shown.first; i <= shown.last; ++i) {
    const ContactFrame& frame = frames[static_cast<std::size_t>(i)];
    cells = {std::to_string(i), CsvNumber(timing.Start(i) / timing.sampleRate)};
    for (const std::uint8_t row : frame) cells.push_back(std::to_string(row));
    for (const double index : MeasureContact(frame)) cells.push_back(CsvNumber(index));
    table.AddRow(cells);
  }
  return table.text();
}

}  // namespace parlowen
