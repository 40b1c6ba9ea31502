#include "spectral/SpectrogramPicture.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "spectral/Cepstrum.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kHorizonColumns = 1280, kHorizonStart = 700;
constexpr int kRidgeLeft = 20, kRidgeFoot = 20;  // where the first frame begins, from the left and from below
constexpr int kColumnsPerRow = 3, kShiftRight = 2, kShiftUp = 1;
constexpr double kRowsPerDecibel = 0.8;

constexpr UiText kWaveTimes = "波形 : T=%.2f -- %.2f（秒）";
constexpr UiText kNoRidges = "本谱图没有立体图";
constexpr UiText kShowsRidges = "语谱显示: 立体图", kShowsGreys = "语谱显示: 语谱图";
/// In the order of SpectrogramKind.
constexpr UiText kTitles[] = {"宽带", "窄带", "LPC 谱", "同态谱", "倒谱", "共振峰", "滤波器法"};

UiText KindTitle(SpectrogramKind kind) { return kTitles[static_cast<int>(kind)]; }

/// Every column of the pane takes the picture's column whose samples lie under it.
GreyImageMark ImageOf(const SpectrogramState& spectrogram, const SampleScale& pane, int width, int height,
                      int rows) {
  const SpectrogramMatrix& matrix = spectrogram.matrix;
  std::vector<int> shown;  // columns of the matrix
  int left = pane.left;
  for (int x = pane.left; x < width; ++x) {
    const int column = ColumnUnder(spectrogram, pane, x);
    if (column >= 0) shown.push_back(column);
    if (shown.empty()) left = x + 1;
  }
  const int columns = static_cast<int>(shown.size());
  GreyImageMark image{left, 0, columns, height, columns, rows, {}, true};
  const auto rowCount = static_cast<std::size_t>(rows);
  image.pixels.resize(shown.size() * rowCount);
  for (std::size_t x = 0; x < shown.size(); ++x) {
    const std::uint16_t* greys = matrix.Column(shown[x]);
    for (std::size_t row = 0; row < rowCount; ++row)
      image.pixels[(rowCount - 1 - row) * shown.size() + x] =
          static_cast<std::uint8_t>(std::min<int>(greys[row], 255));
  }
  return image;
}

/// Quefrency of a cepstrum row in milliseconds.
double RowMilliseconds(int row, int sampleRate) {
  return row * (sampleRate >= kSteppedCepstrumRate ? 2 : 1) * 1000.0 / std::max(1, sampleRate);
}

/// Hz between two lines of a grid that reaches up to `top`.
int GridStepHz(int top) { return top > 10000 ? 2000 : top > 2500 ? 1000 : 500; }

void AddFormants(Picture& picture, const SpectrogramState& spectrogram, const SampleScale& pane, int rows) {
  for (const FormantDot& dot : spectrogram.formants) {
    const int x = pane.ColumnOf(spectrogram.stretch.ColumnStart(dot.column));
    if (x < pane.left || x >= picture.width || dot.row >= rows) continue;
    const int y = picture.height - 1 - (2 * dot.row + 1) * picture.height / (2 * rows);
    picture.Add(BoxMark{x, y - 1, 2, 2, colours::kFormant});
  }
}

/// The visible parts of one frame's line, one point a row of the spectrum and one at each end of a part.
class RidgeLine {
 public:
  RidgeLine(Picture& picture, std::vector<int>& horizon, int width)
      : picture_(picture), horizon_(horizon), width_(std::min(width, kHorizonColumns)) {}

  void Begin(int x, int y) {
    from_ = {x, y};
    Visit(from_, true, false);
  }
  /// On to the next point; the ground, where nothing sounds, hides what is behind it but is not drawn.
  void To(int x, int y, bool ground) {
    for (int column = from_.x + 1; column <= x; ++column)
      Visit({column, from_.y + (y - from_.y) * (column - from_.x) / (x - from_.x)}, column == x, ground);
    from_ = {x, y};
  }
  void End() {
    if (part_.points.size() > 1) picture_.Add(part_);
    part_.points.clear();
  }

 private:
  void Visit(Point at, bool corner, bool ground) {
    const bool inside = at.x >= 0 && at.x < width_;
    const bool seen = inside && at.y < horizon_[static_cast<std::size_t>(at.x)];
    if (seen) horizon_[static_cast<std::size_t>(at.x)] = at.y;
    if (seen && !ground) {
      if (corner || part_.points.empty()) part_.points.push_back(at);
      last_ = at;
    } else {
      if (!part_.points.empty() && part_.points.back() != last_) part_.points.push_back(last_);
      End();
    }
  }

  Picture& picture_;
  std::vector<int>& horizon_;
  const int width_;
  PolylineMark part_{{}, colours::kRidge};
  Point from_, last_;
};

}  // namespace

std::vector<std::string> SpectrogramCaption(const SpectrogramState& spectrogram, int sampleRate) {
  const SpectrogramStretch& stretch = spectrogram.stretch;
  const double rate = std::max(1, sampleRate);
  std::vector<std::string> pieces = {spectrogram.ridges.empty() ? kShowsGreys : kShowsRidges,
                                     KindTitle(spectrogram.kind),
                                     Format(kWaveTimes.Get(), stretch.start / rate, stretch.end / rate)};
  if (spectrogram.kind == SpectrogramKind::FilterBank) pieces.push_back(kNoRidges);
  return pieces;
}

std::vector<Tick> RidgeTicks(int sampleRate) {
  std::vector<Tick> ticks;
  const int step = GridStepHz(sampleRate / 2);
  for (int frequency = step; frequency < sampleRate / 2; frequency += step)
    ticks.push_back(
        {kRidgeLeft + kColumnsPerRow * static_cast<int>(std::int64_t{frequency} * 512 / sampleRate),
         static_cast<double>(frequency), Format("%d kHz", frequency / 1000)});
  return ticks;
}

Picture RidgePicture(const SpectrogramState& spectrogram, int width, int height) {
  Picture picture{width, height, {}};
  std::vector<int> horizon(kHorizonColumns, std::max(kHorizonStart, height));
  for (std::size_t i = 0; i < spectrogram.ridges.size(); ++i) {
    const int frame = static_cast<int>(i);
    const int left = kRidgeLeft + kShiftRight * frame, foot = height - kRidgeFoot - kShiftUp * frame;
    RidgeLine line(picture, horizon, width);
    int before = 0;
    for (int row = 0; row < kSpectrogramRows; ++row) {
      const int rise =
          TruncateToInt32(kRowsPerDecibel * spectrogram.ridges[i][static_cast<std::size_t>(row)]);
      if (row == 0)
        line.Begin(left, foot - rise);
      else
        line.To(left + kColumnsPerRow * row, foot - rise, rise == 0 && before == 0);
      before = rise;
    }
    line.End();
  }
  return picture;
}

std::vector<Tick> SpectrogramGrid(const SpectrogramState& spectrogram, int sampleRate, int height, int rows) {
  std::vector<Tick> lines;
  if (sampleRate <= 0 || !spectrogram.ridges.empty()) return lines;
  // What a row of the matrix stands for lies in its middle.
  const auto add = [&](double row, int value, const std::string& label) {
    const int y = std::max(0, height - 1 - TruncateToInt32((row + 0.5) * height / rows));
    lines.push_back({y, static_cast<double>(value), label});
  };
  if (spectrogram.kind == SpectrogramKind::Cepstrum) {
    const double perRow = RowMilliseconds(1, sampleRate);
    const int step = perRow * rows > 20 ? 5 : 2;
    for (int ms = step; ms < perRow * rows; ms += step) add(ms / perRow, ms, Format("%d ms", ms));
    return lines;
  }
  const std::int64_t top = std::int64_t{rows} * sampleRate;  // 512 times the frequency at the upper edge
  const int step = GridStepHz(static_cast<int>(top / 512));
  for (int frequency = step; std::int64_t{frequency} * 512 < top; frequency += step)
    add(frequency * 512.0 / sampleRate, frequency,
        frequency % 1000 == 0 ? Format("%d kHz", frequency / 1000) : Format("%d Hz", frequency));
  return lines;
}

std::string SpectrogramRowText(const SpectrogramState& spectrogram, int row, int sampleRate) {
  if (spectrogram.kind == SpectrogramKind::Cepstrum)
    return Format("%.2f ms", RowMilliseconds(row, sampleRate));
  return Format("%.0f Hz", row * sampleRate / 512.0);
}

int ColumnUnder(const SpectrogramState& spectrogram, const SampleScale& pane, int x) {
  const int column = spectrogram.stretch.columns.ColumnOf(pane.SampleAt(x));
  return x >= pane.left && column >= 0 && column < spectrogram.matrix.columns ? column : -1;
}

Picture SpectrogramPicture(const SpectrogramState& spectrogram, int sampleRate, const SampleScale& pane,
                           int width, int height, int rows) {
  if (!spectrogram.ridges.empty()) return RidgePicture(spectrogram, width, height);
  Picture picture{width, height, {}};
  GreyImageMark image = ImageOf(spectrogram, pane, width, height, rows);
  if (image.columns > 0) picture.Add(std::move(image));
  AddFormants(picture, spectrogram, pane, rows);
  for (const Tick& line : SpectrogramGrid(spectrogram, sampleRate, height, rows))
    picture.Add(LineMark{
        {pane.left, line.at}, {width - 1, line.at}, colours::kSpectrogramGrid, 1, LineStyle::Dotted});
  return picture;
}

}  // namespace parlowen
