#include "palatography/PalatePicture.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "palatography/MarkerPicture.h"
#include "spectral/Spectrogram.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kNoFrames = "没有腭位数据！";
constexpr UiText kHeadLine = "T=%.3f -- %.3f（秒）   第 %d -- %d 帧，每秒 %s 帧";
constexpr UiText kCurrentLine = "第 %d 帧  %.3f 秒";
constexpr UiText kIndexNames[] = {"总接触", "前", "中", "后", "CA", "CC", "COG", "不对称"};
constexpr UiText kMilliseconds = "ms";
constexpr UiText kNoStatistics = "没有腭位统计数据！";
constexpr UiText kOneRecord = "第 %d 段（共 %d 段）  T=%.3f -- %.3f（秒）  %d 帧";
constexpr UiText kMeanOfRecords = "平均（%d 段，%lld 帧）";
constexpr UiText kMeanColumn = "平均", kDeviationColumn = "标准差", kOtherColumn = "比较",
                 kDifferenceColumn = "差";
constexpr UiText kVariability = "变异";
constexpr UiText kFront = "前", kBack = "后", kLeft = "左", kRight = "右";
constexpr UiText kComparedWith = "与 %s 比较：红色为多，蓝色为少";

constexpr int kMargin = 20;
constexpr int kHeadBaseline = 14;
constexpr int kWaveTop = 20, kWaveFoot = 120;
constexpr int kSpectrumTop = 130, kSpectrumHeight = 128;
constexpr int kCurveTop = 270, kCurveFoot = 370;
constexpr int kAxisRow = 372;
constexpr int kPalatogramTop = 400, kSmallCell = 5, kPalatogramPitch = 48, kLargeRoom = 200;
constexpr int kLargeLeft = 160, kLargeCell = 18;  // columns from the right edge; pixels
constexpr int kClicksAbove = 390;                 // rows: there a click means a time
constexpr int kIndicesLeft = 350, kIndicesTop = 494, kIndicesColumn = 90, kLineHeight = 20;

constexpr int kStatisticsLeft = 60, kStatisticsTop = 60, kStatisticsCell = 36, kTableLeft = 400;
constexpr double kDarkShare = 54;  // %: from there on black is no longer legible
constexpr int kTableTop = 72, kTableLine = 24, kTableColumn = 80;

constexpr double kHighestGravity = 7.5;
/// How a value of each measure is written, and its unit behind it.
constexpr const char* kFormats[] = {"%.1f", "%.1f", "%.1f", "%.1f", "%.3f", "%.3f", "%.2f", "%.2f"};
constexpr bool kIsPercent[] = {true, true, true, true, false, false, false, false};

/// The rows of eight and six cells from a corner; `fillOf` tells an electrode's colour. Neighbours share a line.
template <typename FillOf>
void AddCells(Picture& picture, int left, int top, int size, FillOf fillOf) {
  const auto forCells = [&](auto add) {
    for (int row = 0; row < kPalateRows; ++row)
      for (int column = 0; column < kPalateColumns; ++column)
        if (HasElectrode(row, column)) add(row, column, left + column * size, top + row * size);
  };
  forCells([&](int row, int column, int x, int y) {
    picture.Add(BoxMark{x, y, size, size, fillOf(row, column)});
  });
  forCells([&](int, int column, int x, int y) {
    picture.Add(PolylineMark{{{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}},
                             column < kPalateColumns / 2 ? colours::kPalateLeft : colours::kPalateRight});
  });
}

void AddPalatogram(Picture& picture, const ContactFrame& frame, int left, int top, int size) {
  AddCells(picture, left, top, size, [&](int row, int column) {
    return HasContact(frame, row, column) ? colours::kBlack : colours::kWhite;
  });
}

void AddNote(Picture& picture, const std::string& text) {
  picture.Add(TextMark{picture.width / 2, picture.height / 2, text, colours::kText, 14, Anchor::Middle});
}

void AddWaveform(Picture& picture, const SoundDocument& document, const PalateLayout& layout) {
  const SampleScale scale{layout.stretch.start, std::max(1, layout.stretch.end - layout.stretch.start),
                          std::max(1, layout.width - 2 * kMargin), kMargin};
  const SampleSpan samples = document.Samples();
  const auto points = WavePoints(
      kMargin, layout.width - kMargin, samples.count, [&](int x) { return scale.SampleAt(x); },
      [&](std::int64_t from, std::int64_t end) {
        const auto [low, high] = std::minmax_element(samples.data + from, samples.data + end);
        return std::pair<double, double>(*low, *high);
      });
  double peak = 0;
  for (const CurvePoint& point : points) peak = std::max(peak, std::abs(point.value));
  const double range = WaveRange(TruncateToInt32(peak));
  const int middle = (kWaveTop + kWaveFoot) / 2;
  picture.Add(LineMark{{kMargin, middle}, {layout.width - kMargin, middle}, colours::kGrid});
  AddCurve(picture, points, {-range, range, kWaveFoot, kWaveTop}, colours::kWave);
}

void AddSpectrum(Picture& picture, const SpectrogramMatrix& matrix, int sampleRate) {
  if (matrix.columns < 1) return;
  GreyImageMark image{
      kMargin, kSpectrumTop, matrix.columns, kSpectrumHeight, matrix.columns, kSpectrogramRows, {}};
  image.pixels.resize(static_cast<std::size_t>(matrix.columns) * kSpectrogramRows);
  for (int column = 0; column < matrix.columns; ++column)
    for (int row = 0; row < kSpectrogramRows; ++row)
      image.pixels[static_cast<std::size_t>(kSpectrogramRows - 1 - row) *
                       static_cast<std::size_t>(matrix.columns) +
                   static_cast<std::size_t>(column)] =
          static_cast<std::uint8_t>(std::min<int>(matrix.Column(column)[row], 255));
  picture.Add(std::move(image));
  const PlotScale rows{0, sampleRate / 2000.0, kSpectrumTop + kSpectrumHeight, kSpectrumTop};
  AddLevelAxis(picture, TicksEvery(rows, sampleRate > 20000 ? 4 : 2),
               {kMargin, kMargin + matrix.columns - 1, kMargin - 4, Anchor::Right, GridLines::Dotted});
}

void AddMeasures(Picture& picture, std::span<const ContactFrame> frames, const PalateLayout& layout,
                 const PalateView& view) {
  const struct {
    ContactIndex index;
    double largest;
    Colour colour;
    bool shown;
  } curves[] = {{kTotalContact, 100, colours::kTotalContact, view.showTotal},
                {kGravityCentre, kHighestGravity, colours::kGravityCentre, view.showGravity},
                {kAnteriority, 1, colours::kAnteriority, true},
                {kCentrality, 1, colours::kCentrality, true}};
  const PlotScale rows{0, 1, kCurveFoot, kCurveTop};
  AddLevelAxis(picture, TicksEvery(rows, 0.5, 1),
               {kMargin, layout.width - kMargin, kMargin - 2, Anchor::Right, GridLines::Dotted});
  BrokenLine lines[std::size(curves)];
  for (int frame = layout.frames.first; frame <= layout.frames.last; ++frame) {
    const ContactIndices indices = MeasureContact(frames[static_cast<std::size_t>(frame)]);
    const int x = layout.ColumnOf(layout.timing.Start(frame));
    for (std::size_t i = 0; i < std::size(curves); ++i) {
      const double value = indices[curves[i].index] / curves[i].largest;
      if (std::isnan(value)) {
        lines[i].Break();
      } else {
        lines[i].To({x, rows.PixelOf(value)});
      }
    }
  }
  int x = kMargin + 4;
  for (std::size_t i = 0; i < std::size(curves); ++i) {
    if (!curves[i].shown) continue;
    AddCurve(picture, lines[i], curves[i].colour, 1);
    picture.Add(TextMark{x, kCurveTop - 1, IndexName(curves[i].index), curves[i].colour, 11});
    x += 54;
  }
}

void AddPalatograms(Picture& picture, std::span<const ContactFrame> frames, const PalateLayout& layout,
                    int current) {
  const int step = layout.PalatogramStep();
  for (int i = 0; step > 0 && layout.frames.first + i * step <= layout.frames.last; ++i) {
    const int frame = layout.frames.first + i * step, left = kMargin + i * kPalatogramPitch;
    if (frame == current)
      picture.Add(
          BoxMark{left - 3, kPalatogramTop - 3, 8 * kSmallCell + 6, 8 * kSmallCell + 6, colours::kSelection});
    AddPalatogram(picture, frames[static_cast<std::size_t>(frame)], left, kPalatogramTop, kSmallCell);
    const double ms = (layout.timing.Start(frame) - layout.stretch.start) * 1000 / layout.timing.sampleRate;
    picture.Add(TextMark{left + 4 * kSmallCell, kPalatogramTop + 8 * kSmallCell + 13, Format("%.0f", ms),
                         colours::kText, 10, Anchor::Middle, Face::Figures});
  }
  if (step > 0)
    picture.Add(TextMark{kMargin - 2, kPalatogramTop + 8 * kSmallCell + 13, kMilliseconds, colours::kText, 10,
                         Anchor::Right});
}

std::string OneIndex(const ContactIndices& indices, std::size_t index) {
  return IndexName(index) + " " + IndexText(index, indices[index]);
}

void AddCurrent(Picture& picture, const ContactFrame& frame, int number, const PalateLayout& layout) {
  AddPalatogram(picture, frame, layout.width - kLargeLeft, kPalatogramTop, kLargeCell);
  const int left = layout.width - kIndicesLeft;
  picture.Add(
      TextMark{left, kIndicesTop - kLineHeight,
               Format(kCurrentLine.Get(), number, layout.timing.Start(number) / layout.timing.sampleRate),
               colours::kText, 12});
  const ContactIndices indices = MeasureContact(frame);
  for (std::size_t i = 0; i < kContactIndices; ++i)
    picture.Add(TextMark{left + static_cast<int>(i / 4) * kIndicesColumn,
                         kIndicesTop + static_cast<int>(i % 4) * kLineHeight, OneIndex(indices, i),
                         colours::kText, 12});
}

/// The colour of a share in percent, black for all, or of a difference of shares.
Colour ShareColour(double percent) {
  const auto grey = static_cast<Colour>(std::clamp(255 - TruncateToInt32(2.55 * percent), 0, 255));
  return grey << 16 | grey << 8 | grey;
}
Colour DifferenceColour(double difference) {
  const auto rest =
      static_cast<Colour>(std::clamp(255 - TruncateToInt32(2.55 * std::abs(difference)), 0, 255));
  return difference > 0 ? 0xFF0000 | rest << 8 | rest : rest << 16 | rest << 8 | 0x0000FF;
}

}  // namespace

PalateLayout::PalateLayout(const SoundDocument& document, const ContactTiming& frameTiming, int pictureWidth)
    : stretch(ShownStretchOf(document)),
      timing(frameTiming),
      frames(ShownFramesOf(frameTiming, document)),
      width(pictureWidth) {}

int PalateLayout::ColumnOf(double sample) const {
  const double length = std::max(1, stretch.end - stretch.start);
  return kMargin + TruncateToInt32((sample - stretch.start) * (width - 2 * kMargin) / length);
}

int PalateLayout::SampleAt(int x) const {
  const std::int64_t column = std::max(x, kMargin) - kMargin;
  const std::int64_t length = stretch.end - stretch.start;
  const std::int64_t sample = stretch.start + column * length / std::max(1, width - 2 * kMargin);
  return static_cast<int>(
      std::clamp<std::int64_t>(sample, stretch.start, std::max(stretch.start, stretch.end - 1)));
}

int PalateLayout::FrameAt(Point at) const {
  if (frames.Count() < 1) return -1;
  if (MeansTime(at)) return std::clamp(timing.FrameAt(SampleAt(at.x)), frames.first, frames.last);
  const int place = (at.x - kMargin) / kPalatogramPitch, step = PalatogramStep();
  const bool onCells = at.x >= kMargin && (at.x - kMargin) % kPalatogramPitch < 8 * kSmallCell &&
                       at.y >= kPalatogramTop && at.y < kPalatogramTop + 8 * kSmallCell;
  if (!onCells || step < 1 || place > (frames.last - frames.first) / step) return -1;
  return frames.first + place * step;
}

bool PalateLayout::MeansTime(Point at) { return at.y < kClicksAbove; }

int PalateLayout::PalatogramStep() const {
  const int places = (width - kLargeRoom) / kPalatogramPitch;
  return places < 1 ? 0 : (frames.Count() + places - 1) / places;
}

const SpectrogramMatrix& WideBandStrip::Columns(const SoundDocument& document, const PalateStretch& stretch,
                                                int columns) {
  const bool same = stretch_.start == stretch.start && stretch_.end == stretch.end && columns_ == columns &&
                    sampleRate_ == document.sampleRate && version_ == document.samplesVersion &&
                    sound_ == document.Stamp();
  if (same) return matrix_;
  stretch_ = stretch;
  columns_ = columns;
  sampleRate_ = document.sampleRate;
  version_ = document.samplesVersion;
  sound_ = document.Stamp();
  matrix_ = ComputeSpreadSpectrogram(document, SpectrogramKind::WideBand,
                                     SettingsOf(SpectrogramKind::WideBand, sampleRate_), stretch.start,
                                     stretch.end, columns);
  return matrix_;
}

Picture PalatePicture(const SoundDocument& document, const PalateState& palate, const PalateView& view,
                      WideBandStrip* spectrum, int width, int height) {
  Picture picture{width, height, {}};
  const ContactTiming timing = TimingOf(palate, document);
  const std::span<const ContactFrame> frames = FramesOf(palate, document);
  if (frames.empty()) {
    AddNote(picture, FaultOf(palate, document) == ContactFault::Edited ? kPalateEdited : kNoFrames);
    return picture;
  }
  const PalateLayout layout(document, timing, width);
  const double rate = timing.sampleRate;
  picture.Add(TextMark{kMargin, kHeadBaseline,
                       Format(kHeadLine.Get(), layout.stretch.start / rate, layout.stretch.end / rate,
                              layout.frames.first, layout.frames.last, Format("%.6g", timing.rate).c_str()),
                       colours::kText, 12});
  AddWaveform(picture, document, layout);
  Picture markers{width, kWaveFoot - kWaveTop, {}};
  AddEpgMarkers(markers, palate, document, kMargin, [&](int sample) {
    return sample < layout.stretch.start || sample > layout.stretch.end ? -1 : layout.ColumnOf(sample);
  });
  picture.AddAt(markers, 0, kWaveTop);
  if (spectrum != nullptr)
    AddSpectrum(picture, spectrum->Columns(document, layout.stretch, std::max(1, width - 2 * kMargin)),
                timing.sampleRate);
  AddMeasures(picture, frames, layout, view);
  const PlotScale seconds{layout.stretch.start / rate, layout.stretch.end / rate, kMargin, width - kMargin};
  PlotStyle small;
  small.text = 9;
  AddColumnAxis(picture, seconds, RoundTicks(seconds, kTimeLabelRoom), kAxisRow, small);
  AddPalatograms(picture, frames, layout, view.current);
  if (!layout.frames.Holds(view.current)) return picture;
  AddCurrent(picture, frames[static_cast<std::size_t>(view.current)], view.current, layout);
  const int x = layout.ColumnOf(timing.Start(view.current));
  const int foot = spectrum != nullptr ? kSpectrumTop + kSpectrumHeight : kWaveFoot;
  picture.Add(LineMark{{x, kWaveTop}, {x, foot}, colours::kPalateFrame});
  picture.Add(LineMark{{x, kCurveTop}, {x, kCurveFoot}, colours::kPalateFrame});
  return picture;
}

Picture PalateStatisticsPicture(const PalateStatistics& statistics, int width, int height) {
  Picture picture{width, height, {}};
  if (statistics.records.empty()) {
    AddNote(picture, kNoStatistics);
    return picture;
  }
  const ContactStatistics shown = statistics.Shown();
  const auto& other = statistics.other;
  picture.Add(TextMark{kStatisticsLeft, 24, StatisticsTitle(statistics), colours::kText, 13});
  if (other)
    picture.Add(TextMark{kTableLeft, 42, Format(kComparedWith.Get(), statistics.otherName.c_str()),
                         colours::kText, 12});
  const int side = 8 * kStatisticsCell, middle = kStatisticsLeft + side / 2;
  const auto valueAt = [&](int row, int column) {
    const auto electrode = static_cast<std::size_t>(ElectrodeAt(row, column));
    return shown.percent[electrode] - (other ? other->percent[electrode] : 0);
  };
  AddCells(picture, kStatisticsLeft, kStatisticsTop, kStatisticsCell, [&](int row, int column) {
    return other ? DifferenceColour(valueAt(row, column)) : ShareColour(valueAt(row, column));
  });
  for (int row = 0; row < kPalateRows; ++row)
    for (int column = 0; column < kPalateColumns; ++column) {
      if (!HasElectrode(row, column)) continue;
      const double value = valueAt(row, column);
      // Black or white, whichever stands out more.
      const bool dark = other ? value < -kDarkShare : value > kDarkShare;
      picture.Add(TextMark{kStatisticsLeft + column * kStatisticsCell + kStatisticsCell / 2,
                           kStatisticsTop + row * kStatisticsCell + kStatisticsCell / 2 + 4,
                           Format("%.0f", value), dark ? colours::kWhite : colours::kBlack, 11,
                           Anchor::Middle, Face::Figures});
    }
  picture.Add(TextMark{middle, kStatisticsTop - 6, kFront, colours::kText, 12, Anchor::Middle});
  picture.Add(TextMark{middle, kStatisticsTop + side + 16, kBack, colours::kText, 12, Anchor::Middle});
  picture.Add(TextMark{kStatisticsLeft - 8, kStatisticsTop + side / 2, kLeft, colours::kPalateLeft, 12,
                       Anchor::Right});
  picture.Add(
      TextMark{kStatisticsLeft + side + 8, kStatisticsTop + side / 2, kRight, colours::kPalateRight, 12});

  const auto cell = [&](int column, int line, const std::string& text) {
    picture.Add(TextMark{kTableLeft + 130 + column * kTableColumn, kTableTop + line * kTableLine, text,
                         colours::kText, 12, Anchor::Right});
  };
  cell(0, 0, kMeanColumn);
  cell(1, 0, kDeviationColumn);
  if (other) {
    cell(2, 0, kOtherColumn);
    cell(3, 0, kDifferenceColumn);
  }
  const int right = kTableLeft + 130 + (other ? 3 : 1) * kTableColumn;
  picture.Add(LineMark{{kTableLeft, kTableTop + 7}, {right, kTableTop + 7}, colours::kGrid});
  for (std::size_t i = 0; i <= kContactIndices; ++i) {
    const int line = static_cast<int>(i) + 1;
    const bool variability = i == kContactIndices;
    const std::string name = variability ? std::string(kVariability) : IndexName(i);
    picture.Add(TextMark{kTableLeft, kTableTop + line * kTableLine, name, colours::kText, 12});
    const auto valueOf = [&](const ContactStatistics& s) { return variability ? s.variability : s.mean[i]; };
    const auto text = [&](double value) {
      return IndexText(variability ? std::size_t{kTotalContact} : i, value);
    };
    cell(0, line, text(valueOf(shown)));
    if (!variability) cell(1, line, text(shown.deviation[i]));
    if (!other) continue;
    cell(2, line, text(valueOf(*other)));
    cell(3, line, text(valueOf(shown) - valueOf(*other)));
  }
  return picture;
}

int ElectrodeUnder(Point at) {
  const int x = at.x - kStatisticsLeft, y = at.y - kStatisticsTop;
  if (x < 0 || y < 0) return -1;
  const int column = x / kStatisticsCell, row = y / kStatisticsCell;
  return column < kPalateColumns && row < kPalateRows && HasElectrode(row, column) ? ElectrodeAt(row, column)
                                                                                   : -1;
}

std::vector<std::string> IndexLines(const ContactIndices& indices) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < kContactIndices; ++i) lines.push_back(OneIndex(indices, i));
  return lines;
}

std::string IndexName(std::size_t index) { return kIndexNames[index]; }

std::string IndexText(std::size_t index, double value) {
  if (std::isnan(value)) return "--";
  return Format(kFormats[index], value) + (kIsPercent[index] ? "%" : "");
}

std::string StatisticsTitle(const PalateStatistics& statistics) {
  if (statistics.records.empty()) return {};
  const auto count = static_cast<int>(statistics.records.size());
  const std::string name = statistics.name.empty() ? "" : statistics.name + "  ";
  if (statistics.ShowsMean())
    return name + Format(kMeanOfRecords.Get(), count, static_cast<long long>(statistics.ShownFrames()));
  const int number = statistics.ofFile ? statistics.shown : 1;
  const PalateRecord& record = statistics.records[static_cast<std::size_t>(number - 1)];
  const double rate = record.sampleRate;
  return name +
         Format(kOneRecord.Get(), number, count, record.start / rate, record.end / rate, record.frames);
}

}  // namespace parlowen
