#pragma once
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "base/Bytes.h"

namespace parlowen {

/// An artificial palate has 62 electrodes in eight rows from the front: six in the first, eight in the others. A
/// contact frame is eight bytes, one a row; bit c of a byte is column c + 1 from the left of the picture. Of the
/// first row only the bits 1..6 count.
inline constexpr int kPalateRows = 8, kPalateColumns = 8, kElectrodes = 62;
inline constexpr std::size_t kContactFrameBytes = 8;
using ContactFrame = std::array<std::uint8_t, kContactFrameBytes>;

/// Whether there is an electrode at that place, both from 0.
constexpr bool HasElectrode(int row, int column) { return row > 0 || (column > 0 && column < 7); }
constexpr bool HasContact(const ContactFrame& frame, int row, int column) {
  return HasElectrode(row, column) && (frame[static_cast<std::size_t>(row)] >> column & 1) != 0;
}
/// Its number 0..61, rows from the front, each from the left.
constexpr int ElectrodeAt(int row, int column) { return row == 0 ? column - 1 : row * 8 + column - 2; }

/// The measures of a frame, by number. Percentages of the electrodes of a region: front rows 1–3, middle 4–5,
/// back 6–8. CA and CC: contact anteriority and centrality (Fontdevila, Pallarès and Recasens 1994), 0..1. Centre of
/// gravity in rows, 0.5 at the back to 7.5 at the front (Hardcastle, Gibbon and Nicolaidis 1991). Asymmetry −1
/// (right only) to 1 (left only). The last two are NaN without any contact.
enum ContactIndex {
  kTotalContact,
  kFrontContact,
  kMiddleContact,
  kBackContact,
  kAnteriority,
  kCentrality,
  kGravityCentre,
  kAsymmetry
};
inline constexpr std::size_t kContactIndices = 8;
using ContactIndices = std::array<double, kContactIndices>;

///   CA = ln(1 + n5/8 + 9·n4/8 + 81·n3/8 + 729·n2/8 + 4921·n1/6)/ln 5742
///   CC = ln(1 + (c1 + c8)/14 + 17·(c2 + c7)/16 + 289·(c3 + c6)/16 + 4913·(c4 + c5)/16)/ln 5221
///   COG = Σ(8.5 − r)·n_r/Σ,  asymmetry = (c1 + c2 + c3 + c4 − c5 − c6 − c7 − c8)/Σ
/// with n_r contacts in row r and c_k in column k.
ContactIndices MeasureContact(const ContactFrame& frame);

/// Frames first .. last; empty when last < first.
struct ContactSpan {
  int first = 0, last = -1;
  int Count() const { return last - first + 1; }
  bool Holds(int frame) const { return frame >= first && frame <= last; }
};

/// When the frames of a recording begin: frame i at sample i·sampleRate/rate, a fraction.
struct ContactTiming {
  int frames = 0;
  double rate = 0;  ///< frames a second
  int sampleRate = 0;

  double Start(int frame) const { return static_cast<double>(frame) * sampleRate / rate; }
  /// The frame that holds a sample: the last one that begins at or before it, held to 0 .. frames − 1.
  int FrameAt(std::int64_t sample) const;
  /// The frames that begin in start .. end − 1, or else the one that holds `start`. Needs frames > 0.
  ContactSpan FramesOf(int start, int end) const;
};

/// Frames a second of `frames` frames that fill the whole sound: frames·sampleRate/sampleCount, or 50, 100 or 200
/// where that lies within 3 %. `sampleCount` > 0.
double ContactRate(int frames, int sampleRate, int sampleCount);

/// What a stretch of frames has in common.
struct ContactStatistics {
  std::array<double, kElectrodes> percent{};  ///< of the frames, with contact
  ContactIndices mean{}, deviation{};         ///< deviations divide by n; NaN for what no frame has
  double variability = 0;  ///< mean of 2·(50 − |50 − percent|): 0 where all frames are alike

  bool HasContact() const;
};

/// Of at least one frame. Centre of gravity and asymmetry are those of the frames with contact.
ContactStatistics MeasureStatistics(std::span<const ContactFrame> frames);

/// The means over several statistics, each counted once, and as deviations those between them; what one of them does
/// not have counts without it. At least one.
ContactStatistics MeanOf(std::span<const ContactStatistics> all);

}  // namespace parlowen
