#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "annotation/MarkerSet.h"
#include "interchange/MarkerTiers.h"

namespace parlowen {

/// The sample nearest to a time; saturated far outside of every sound.
std::int64_t SampleAt(double seconds, int sampleRate);

/// The text of a label or an annotation as its file can keep it: control characters are blanks, "" where
/// nothing else is left, "?" for characters without a code, at most `maxBytes` GBK bytes; what changed is
/// counted.
std::string FittingText(std::string_view utf8, int maxBytes, ImportLosses& losses);

/// Puts a marker set together by its own rules: at most 20 markers and 20 labels a band, positions ascending,
/// no marker inside a labelled stretch.
class MarkerSetBuilder {
 public:
  explicit MarkerSetBuilder(int sampleCount) : sampleCount_(sampleCount) {}

  bool HasMarker(int band, int sample) const;
  /// True when a labelled stretch lies about that sample.
  bool IsInsideLabel(int band, int sample) const;
  bool IsFull(int band) const { return set_.markerCount[Index(band)] == kMarkersPerBand; }
  /// False when there is no room for it. One that is there already stays.
  bool AddMarker(int band, int sample);

  /// True when samples start and end are neighbouring markers or the sound's own ends.
  bool IsStretch(int band, int start, int end) const;
  /// False when the band has no room. The text is not empty; the stretch or marker is there.
  bool AddLabel(int band, int start, int end, std::string text);

  const MarkerSet& set() const { return set_; }

 private:
  static std::size_t Index(int band) { return static_cast<std::size_t>(band); }
  MarkerSet set_;
  int sampleCount_;
};

}  // namespace parlowen
