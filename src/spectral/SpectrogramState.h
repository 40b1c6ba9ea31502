#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "spectral/SpectrogramMatrix.h"

namespace parlowen {

/// The stretch that a picture shows and how its columns lie in it.
struct SpectrogramStretch {
  int start = 0, end = 0;            ///< samples
  int levelStart = 0, levelEnd = 0;  ///< where the peak level is looked for: what was marked, never widened
  int columnsPerSecond = 100;  ///< column j begins at start + j·sampleRate/columnsPerSecond; 0: spread evenly
  int firstX = 0;              ///< pane column of column 0
  int maxColumns = 0;
  int rightMargin = 0;       ///< pane columns behind the picture that stay empty
  bool followsView = false;  ///< the picture lies under the other panes; else it is a stretch of its own

  /// First sample of a column.
  std::int64_t ColumnStart(int column, int sampleRate) const {
    if (columnsPerSecond <= 0) return start + std::int64_t{column} * (end - start) / std::max(1, maxColumns);
    return start + std::int64_t{column} * sampleRate / columnsPerSecond;
  }
  /// Pane columns that a stretch of its own takes.
  int Width(int paneWidth) const { return std::max(1, paneWidth - rightMargin); }
};

/// A formant over the picture.
struct FormantDot {
  int column = 0, row = 0;
};

/// The picture in the analysis pane. It lasts until the next one or until a new sound comes.
struct SpectrogramState {
  bool shown = false;
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

  bool CanBeShaded() const { return shown && ridges.empty() && kind != SpectrogramKind::Cepstrum; }
};

}  // namespace parlowen
