#pragma once
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "document/SoundDocument.h"
#include "pitch/SemitoneScale.h"
#include "prosody/ProsodyDesk.h"

namespace parlowen {

// The intonation of a sentence:
//   1. the runs of 3 voiced frames and more, in semitones above 64 Hz, inner values replaced by the median of
//      three neighbours;
//   2. units between boundaries: both ends of the stretch and the markers inside; without any marker the middle
//      of every gap of 5 frames and more;
//   3. of every unit its top and base, their place in the pitch range of the sentence or the speaker, its
//      duration and energy over their means;
//   4. the top and the base line through the units;
//   5. the close copy: as few points as keep within half a semitone of the melody.

inline constexpr int kMostIntonationUnits = 100;
inline constexpr double kNoFigure = std::numeric_limits<double>::quiet_NaN();

/// One voiced frame; it stands at frame·0.01 s.
struct MelodyPoint {
  int frame = 0;
  double semitones = 0;
  double Seconds() const { return frame * 0.01; }
};

/// A stretch of samples between two boundaries. A pause has no frames: of it, time and duration alone are known,
/// the rest is NaN.
struct IntonationUnit {
  std::string name;  ///< UTF-8
  int start = 0, end = 0;
  int frames = 0;                 ///< voiced ones that begin in it
  double time = 0, duration = 0;  ///< seconds: of its middle; its length
  double top = kNoFigure, base = kNoFigure, range = kNoFigure, mean = kNoFigure;  ///< semitones
  double qTop = kNoFigure, qBase = kNoFigure;                                     ///< place in the range, %
  double durationRatio = kNoFigure, energyRatio = kNoFigure;
  int topFrame = 0, baseFrame = 0;  ///< the first that reach them

  bool IsPause() const { return frames == 0; }
};

/// A straight line through tops or bases.
struct IntonationLine {
  double slope = 0;    ///< semitones a second
  double atStart = 0;  ///< semitones at the start of the stretch
};

struct SemitoneSpan {
  double low = kNoFigure, high = kNoFigure;
};

struct Intonation {
  int sampleRate = 0, start = 0, end = 0;  ///< the stretch, samples
  std::vector<MelodyPoint> melody;         ///< ascending
  std::vector<int> boundaries;             ///< inside the stretch, ascending, at most 99
  std::vector<LabelledStretch> labels;     ///< name the units with the same ends
  std::optional<SemitoneSpan> speaker;     ///< the range in use instead of the sentence's
  /// Sum of the squares of the stretch's first i samples: the sound may be edited while boundaries still move.
  std::vector<std::int64_t> energySums;

  // Measured from the above.
  std::vector<IntonationUnit> units;
  SemitoneSpan sentence;
  std::optional<IntonationLine> topLine, baseLine;
  std::vector<MelodyPoint> closeCopy;

  SemitoneSpan Domain() const { return speaker ? *speaker : sentence; }
  double StartSeconds() const { return static_cast<double>(start) / sampleRate; }
  double EndSeconds() const { return static_cast<double>(end) / sampleRate; }
  /// Semitones of a line at a time in seconds.
  double LineAt(const IntonationLine& line, double seconds) const {
    return line.atStart + line.slope * (seconds - StartSeconds());
  }
};

/// The melody of frames: steps 1. `periods` in samples at `sampleRate`.
std::vector<MelodyPoint> MelodyOf(std::span<const float> periods, FrameSpan span, int sampleRate);

/// Analyses samples start .. end; nothing where no run of 3 voiced frames is.
std::optional<Intonation> AnalyseIntonation(const SoundDocument& document, int start, int end,
                                            const FirstBand& band);

/// Measures units, lines and close copy again, after boundaries or the speaker's range have changed.
void MeasureIntonation(Intonation& intonation);

/// Puts a boundary at that sample; false where there is one, it is no inner one, or there are 100 units.
bool AddBoundary(Intonation& intonation, int sample);

/// Least squares through points (seconds, semitones); nothing of fewer than two.
std::optional<IntonationLine> LineThrough(std::span<const std::pair<double, double>> points,
                                          double startSeconds);

/// Points of one unit's melody that straight lines in time join to within `tolerance` semitones: its ends, then
/// between neighbours again and again the farthest one, of equals the first.
std::vector<MelodyPoint> CloseCopyOf(std::span<const MelodyPoint> melody, double tolerance = 0.5);

}  // namespace parlowen
