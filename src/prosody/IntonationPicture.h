#pragma once
#include "prosody/IntonationState.h"
#include "ui/Picture.h"

namespace parlowen {

/// Where times and pitches lie: column 60 + (t − t0)·(width − 80)/(t1 − t0), row
/// height − 160 − (st − low)·(height − 200)/(high − low), quotients truncated; low and high are whole semitones,
/// one outside of what the sentence and the speaker reach.
struct IntonationLayout {
  int width = 0, height = 0;
  double start = 0, end = 1;  ///< seconds
  double low = 0, high = 1;   ///< semitones

  IntonationLayout(const Intonation& intonation, int pictureWidth, int pictureHeight);
  int Column(double seconds) const;
  int Row(double semitones) const;
  int Right() const { return width - 20; }
};

/// The window "intonation": melody, units, both lines and the close copy; below, bars of the two ratios.
Picture IntonationPicture(const IntonationState& state, int width, int height);

/// The frame of the stretch whose column is nearest to x, of equals the first.
int FrameAtColumn(const Intonation& intonation, const IntonationLayout& layout, int x);
/// The boundary whose column is nearest to x, at most `reach` pixels away; −1 for none.
int BoundaryAtColumn(const Intonation& intonation, const IntonationLayout& layout, int x, int reach);

}  // namespace parlowen
