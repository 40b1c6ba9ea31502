#include "pitch/PitchPicture.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "ui/Plot.h"

namespace parlowen {
namespace {

constexpr Colour kContour = colours::kCurve[0], kHarmonic = colours::kCurve[1], kComb = colours::kCurve[2];
constexpr int kToothLength = 10;
constexpr int kFinestComb = 3;  // pixels between teeth

/// Samples of quefrency a row.
int SamplesPerRow(int sampleRate) { return sampleRate > 22050 ? 2 : 1; }

/// A line a voiced run, at `harmonic` times the pitch.
void AddContour(Picture& picture, const SoundDocument& document, RepairRows rows, int harmonic, Colour colour,
                const std::function<int(int)>& columnOf, int shown) {
  BrokenLine line;
  for (int frame = 0; frame < document.ContourLength(); ++frame) {
    const int x = columnOf(SampleOfFrame(frame, document.sampleRate));
    if (x >= picture.width) break;
    const float period = document.pitch[static_cast<std::size_t>(frame)];
    const double frequency = period > 0 ? harmonic * document.sampleRate / static_cast<double>(period) : 0.0;
    if (x < 0 || frequency <= 0 || frequency >= document.sampleRate / 2.0)
      line.Break();
    else
      line.To({x, RowOfFrequency(rows, frequency, picture.height, document.sampleRate, shown)});
  }
  AddCurve(picture, line, colour);
}

void AddComb(Picture& picture, const SoundDocument& document, const PitchRepair& repair,
             const std::function<int(int)>& columnOf, int shown) {
  const int frame = repair.pointer->frame;
  if (frame < 0 || frame >= document.ContourLength()) return;
  const float period = document.pitch[static_cast<std::size_t>(frame)];
  const double pitch = period > 0 ? document.sampleRate / static_cast<double>(period)
                                  : repair.pointer->frequency / repair.harmonic;
  if (!(pitch > 0)) return;
  const bool quefrencies = repair.rows == RepairRows::Quefrencies;
  const auto rowOf = [&](int k) {
    return RowOfFrequency(repair.rows, quefrencies ? pitch / k : pitch * k, picture.height,
                          document.sampleRate, shown);
  };
  if (rowOf(1) - rowOf(2) < kFinestComb) return;
  const int x = columnOf(SampleOfFrame(frame, document.sampleRate));
  for (int k = 1; rowOf(k) >= 0; ++k)
    picture.Add(LineMark{
        {x - kToothLength, rowOf(k)}, {x + kToothLength, rowOf(k)}, kComb, k == repair.harmonic ? 3 : 1});
}

}  // namespace

double FrequencyAtRow(RepairRows rows, int y, int height, int sampleRate, int shown) {
  // What a row stands for lies in its middle, not at its foot: half a row less.
  const double row = (height - y - 0.5) * shown / std::max(1, height) - 0.5;
  if (!(row > 0)) return 0;
  return rows == RepairRows::Frequencies ? row * sampleRate / 512.0
                                         : sampleRate / (row * SamplesPerRow(sampleRate));
}

int RowOfFrequency(RepairRows rows, double frequency, int height, int sampleRate, int shown) {
  const double row = rows == RepairRows::Frequencies ? frequency * 512.0 / std::max(1, sampleRate)
                                                     : sampleRate / frequency / SamplesPerRow(sampleRate);
  return height - 1 - TruncateToInt32((row + 0.5) * height / std::max(1, shown));
}

Picture PitchRepairPicture(const SoundDocument& document, const PitchRepair& repair,
                           const std::function<int(int)>& columnOf, int width, int height, int shown) {
  Picture picture{width, height, {}};
  if (repair.marked.last >= repair.marked.first) {
    const int from = columnOf(SampleOfFrame(repair.marked.first, document.sampleRate));
    const int to = columnOf(SampleOfFrame(repair.marked.last + 1, document.sampleRate));
    picture.Add(BoxMark{from, 0, std::max(1, to - from), height, colours::kMarked, 0.25});
  }
  if (repair.harmonic > 1)
    AddContour(picture, document, repair.rows, repair.harmonic, kHarmonic, columnOf, shown);
  AddContour(picture, document, repair.rows, 1, kContour, columnOf, shown);
  if (repair.pointer) AddComb(picture, document, repair, columnOf, shown);
  return picture;
}

}  // namespace parlowen
