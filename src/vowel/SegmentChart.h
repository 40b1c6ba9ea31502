#pragma once
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "ui/ToolWindow.h"
#include "vowel/VowelFormants.h"
#include "vowel/VowelState.h"

namespace parlowen {

/// One frame of a segment that is a vowel.
struct SegmentPoint {
  int frame = 0;
  double f1 = 0, f2 = 0, f3 = 0;  ///< Hz
  ChartPlace place;
  Colour colour = 0;  ///< red for the first frame to blue for the last
};

/// The frames of the track that are vowels, in order.
std::vector<SegmentPoint> SegmentPoints(const VowelTrack& track, int sampleRate);

Picture SegmentPicture(const std::vector<SegmentPoint>& points, bool connected,
                       const std::vector<int>& averages, int width, int height);

/// The segment chart "vowels": the state of the selection when it was opened. `activity` is 25 while it is
/// open.
class SegmentChart : public ToolWindow {
 public:
  SegmentChart(SoundDocument& document, const VowelState& vowels, const VowelTrack& track);

  std::string Name() const override { return "vowels"; }
  std::string Title() const override;
  Picture Draw(int width, int height) const override;
  std::string Hover(Point at) const override;
  void Closed(Window& window) override;

 private:
  SoundDocument& document_;
  const VowelState& vowels_;
  const bool connected_;
  const double start_, step_;  ///< seconds
  const std::vector<SegmentPoint> points_;
};

}  // namespace parlowen
