#pragma once
#include <optional>
#include <vector>

#include "articulation/Articulation.h"
#include "articulation/TractEstimate.h"
#include "document/SoundStamp.h"
#include "ui/Picture.h"

namespace parlowen {

/// What the window shows.
struct ArticulationState {
  int sound = 0;               ///< of MandarinSounds()
  int step = 0;                ///< of its movement
  bool demonstrating = false;  ///< the steps go on by themselves
  std::optional<TractEstimate> estimate;
  SoundStamp estimatedSound;  ///< that it was made from

  const MandarinSound& Sound() const { return MandarinSounds()[static_cast<std::size_t>(sound)]; }
};

/// The contour of the tongue in the drawing's own pixels: a uniform Catmull-Rom curve through the nine points, end
/// points doubled, six steps a span, cut to whole pixels; 49 points from the pharynx to the tip.
std::vector<Point> TongueContour(const TongueShape& tongue);

/// A section through head and mouth, 400 × 400, the face to the left, with the lips from the front at its foot;
/// `estimate` is drawn over it in blue.
Picture HeadPicture(const Articulation& articulation, bool voiced, const TractEstimate* estimate);

/// The cells of the sounds, the drawing from column 400 on, below it what is known of the sound, and from column 820
/// on the tube of an estimate.
Picture ArticulationPicture(const ArticulationState& state, int width, int height);

/// The sound whose cell is under a point of that picture; −1 for none.
int SoundUnder(Point at);

}  // namespace parlowen
