#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "palatography/PalateState.h"
#include "spectral/SpectrogramMatrix.h"
#include "ui/Picture.h"

namespace parlowen {

/// How the window over the frames lies in `width` columns: a sample at
/// x = 20 + trunc((sample − start)·(width − 40)/(end − start)).
class PalateLayout {
 public:
  PalateLayout(const SoundDocument& document, const ContactTiming& timing, int width);

  int ColumnOf(double sample) const;
  /// The sample under a column, held to the stretch; columns left of 20 count as 20.
  int SampleAt(int x) const;
  /// The frame that a click takes: above row 390 the one at that time, below it the one whose palatogram lies
  /// there; −1 for none.
  int FrameAt(Point at) const;
  /// Whether a point stands above the palatograms, where columns are times.
  static bool MeansTime(Point at);
  /// Of every how many frames a palatogram is drawn: they fill the room left of the large one.
  int PalatogramStep() const;

  PalateStretch stretch;
  ContactTiming timing;
  ContactSpan frames;  ///< shown
  int width = 0;       ///< at least 240
};

/// The wide-band picture of a stretch, kept until stretch, sound or width change. Column j of `columns` begins at
/// start + trunc(j·length/columns).
class WideBandStrip {
 public:
  const SpectrogramMatrix& Columns(const SoundDocument& document, const PalateStretch& stretch, int columns);

 private:
  SpectrogramMatrix matrix_;
  PalateStretch stretch_;
  int columns_ = 0, sampleRate_ = 0;
  std::uint64_t version_ = 0;
  SoundStamp sound_;
};

/// Rows from the top: 20–120 the waveform with the markers of the recording, 130–258 the wide-band picture
/// (`spectrum` null: none), 270–370 the curves of total, centre of gravity, CA and CC over the height, from 400 on
/// palatograms. The frame looked at is a line through all of them and stands large at the right.
Picture PalatePicture(const SoundDocument& document, const PalateState& palate, const PalateView& view,
                      WideBandStrip* spectrum, int width, int height);

/// The cells at 60, 60, the table from column 400 on.
Picture PalateStatisticsPicture(const PalateStatistics& statistics, int width, int height);
/// The electrode under a point of that picture; −1 for none.
int ElectrodeUnder(Point at);

/// "CA 0.812" …; one a measure.
std::vector<std::string> IndexLines(const ContactIndices& indices);
/// Name of the stretch or file whose statistics are shown.
std::string StatisticsTitle(const PalateStatistics& statistics);
/// A measure with its unit; "--" where it is undefined.
std::string IndexText(std::size_t index, double value);
std::string IndexName(std::size_t index);

}  // namespace parlowen
