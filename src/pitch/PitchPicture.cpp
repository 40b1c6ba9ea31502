#include "pitch/PitchPicture.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

constexpr double kRows = 256.0;
constexpr Colour kContour = 0xC00000, kHarmonic = 0x0060D0, kComb = 0x008040, kMarked = 0xE0A000;
constexpr int kToothLength = 10;
constexpr double kFinestComb = 4.0;   // pixels between teeth

/// A line a voiced run, at `harmonic` times the pitch.
void AddContour(Picture& picture, const SoundDocument& document, int harmonic, Colour colour,
                const std::function<int(int)>& columnOf) {
  PolylineMark piece{{}, colour, 2};
  const auto finish = [&] {
    if (piece.points.size() == 1) picture.Add(BoxMark{piece.points[0].x, piece.points[0].y - 1, 2, 2, colour});
    if (piece.points.size() > 1) picture.Add(piece);
    piece.points.clear();
  };
  for (int frame = 0; frame < document.ContourLength(); ++frame) {
    const int x = columnOf(SampleOfFrame(frame, document.sampleRate));
    if (x >= picture.width) break;
    const float period = document.pitch[static_cast<std::size_t>(frame)];
    const double frequency = period > 0 ? harmonic * document.sampleRate / static_cast<double>(period) : 0.0;
    if (x < 0 || frequency <= 0 || frequency >= document.sampleRate / 2.0) {
      finish();
      continue;
    }
    piece.points.push_back({x, RowOfFrequency(frequency, picture.height, document.sampleRate)});
  }
  finish();
}

void AddComb(Picture& picture, const SoundDocument& document, const PitchRepair& repair,
             const std::function<int(int)>& columnOf) {
  const int frame = repair.pointer->frame;
  if (frame < 0 || frame >= document.ContourLength()) return;
  const float period = document.pitch[static_cast<std::size_t>(frame)];
  const double pitch = period > 0 ? document.sampleRate / static_cast<double>(period)
                                  : repair.pointer->frequency / repair.harmonic;
  const double half = document.sampleRate / 2.0;
  if (!(pitch > 0) || pitch / half * picture.height < kFinestComb) return;
  const int x = columnOf(SampleOfFrame(frame, document.sampleRate));
  for (int k = 1; k * pitch < half; ++k) {
    const int y = RowOfFrequency(k * pitch, picture.height, document.sampleRate);
    picture.Add(LineMark{{x - kToothLength, y}, {x + kToothLength, y}, kComb, k == repair.harmonic ? 3 : 1});
  }
}

}  // namespace

double FrequencyAtRow(int y, int height, int sampleRate) {
  // A row of the picture is drawn around its frequency, not above it: half a row less.
  return ((height - y - 0.5) * kRows / std::max(1, height) - 0.5) * sampleRate / 512.0;
}

int RowOfFrequency(double frequency, int height, int sampleRate) {
  const double row = frequency * 512.0 / std::max(1, sampleRate) + 0.5;
  return height - 1 - TruncateToInt32(row * height / kRows);
}

Picture PitchRepairPicture(const SoundDocument& document, const PitchRepair& repair,
                           const std::function<int(int)>& columnOf, int width, int height) {
  Picture picture{width, height, {}};
  if (repair.marked.last >= repair.marked.first) {
    const int from = columnOf(SampleOfFrame(repair.marked.first, document.sampleRate));
    const int to = columnOf(SampleOfFrame(repair.marked.last + 1, document.sampleRate));
    picture.Add(BoxMark{from, 0, std::max(1, to - from), height, kMarked, 0.25});
  }
  if (repair.harmonic > 1) AddContour(picture, document, repair.harmonic, kHarmonic, columnOf);
  AddContour(picture, document, 1, kContour, columnOf);
  if (repair.pointer) AddComb(picture, document, repair, columnOf);
  return picture;
}

}  // namespace parlowen
