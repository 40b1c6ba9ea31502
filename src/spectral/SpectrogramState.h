#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "document/SoundStamp.h"
#include "spectral/SpectrogramMatrix.h"
#include "ui/Plot.h"

namespace parlowen {

/// The stretch that a picture shows and how its columns lie in it.
struct SpectrogramStretch {
  int start = 0, end = 0;            ///< samples
  int levelStart = 0, levelEnd = 0;  ///< where peak level P and highest level V are looked for
  SampleScale columns;               ///< column j of the picture begins at columns.SampleAt(j)
  int columnsPerSecond = 100;        ///< C of the level rise
  int maxColumns = 0;
  bool followsView = false;  ///< the picture lies under the other panes; else it is a stretch of its own
  SampleScale view;          ///< what the pane's columns show while it lies under the others

  std::int64_t ColumnStart(int column) const { return columns.SampleAt(column); }
  /// What the columns of a pane of that width show: clicks, marks, axis and painting. A stretch of its own fills
  /// the pane.
  SampleScale Pane(int width) const {
    return followsView ? view : SampleScale{start, std::max(1, end - start), std::max(1, width), 0};
  }
};

/// A formant over the picture.
struct FormantDot {
  int column = 0, row = 0;
};

/// The picture in the analysis pane. It lasts until the next one or until a new sound comes.
struct SpectrogramState {
  /// Hz up to which the user wants to see pictures; 0: all. It outlives them, and no value ever depends on it.
  int ceiling = 0;
  bool shown = false;
  SoundStamp sound;  ///< that it was made from
  SpectrogramKind kind = SpectrogramKind::WideBand;
  int frameLength = 0;  ///< samples
  double contrast = 0;
  SpectrogramStretch stretch;
  SpectrogramMatrix matrix;
  std::vector<int> shades;  ///< darken (+1) and lighten (−1) steps since the command, in order
  bool formantsShown = false;
  std::vector<FormantDot> formants;
  /// The levels of the frames of the three-dimensional view, first frame in front; empty in two dimensions.
  std::vector<std::array<double, kSpectrogramRows>> ridges;

  /// No picture any more.
  void Clear() {
    const int kept = ceiling;
    *this = {};
    ceiling = kept;
  }
  bool CanBeShaded() const { return shown && ridges.empty() && kind != SpectrogramKind::Cepstrum; }
};

}  // namespace parlowen
