#pragma once
#include <vector>

#include "spectral/SpectrogramMatrix.h"

namespace parlowen {

/// The stretch that a picture shows and how its columns lie in it.
struct SpectrogramStretch {
  int start = 0, end = 0;       ///< samples
  int levelStart = 0, levelEnd = 0;   ///< where the peak level is looked for: what was marked, never widened
  int columnsPerSecond = 100;   ///< column j begins at start + j·sampleRate/columnsPerSecond
  int firstX = 0;               ///< pane column of column 0
  int maxColumns = 0;
  bool followsView = false;     ///< the picture lies under the other panes; else it is a stretch of its own
};

/// The picture in the analysis pane. It lasts until the next one or until a new sound comes.
struct SpectrogramState {
  bool shown = false;
  SpectrogramKind kind = SpectrogramKind::WideBand;
  int frameLength = 0;      ///< samples
  double contrast = 0;
  SpectrogramStretch stretch;
  SpectrogramMatrix matrix;
  std::vector<int> shades;  ///< darken (+1) and lighten (−1) steps since the command, in order
};

}  // namespace parlowen
