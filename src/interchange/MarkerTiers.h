#pragma once
#include <string>
#include <vector>

#include "annotation/Annotations.h"
#include "annotation/MarkerSet.h"
#include "interchange/TextGrid.h"

namespace parlowen {

/// What an export could not give as it was.
struct ExportLosses {
  int joined = 0;   ///< texts that stand at the same place as another and follow it after a blank
  int leftOut = 0;  ///< markers and labels that have no place in the format
  bool None() const { return joined == 0 && leftOut == 0; }
};

/// The markers, labels and annotations of a sound as tiers, 0 .. sampleCount/sampleRate seconds: band b is
/// the interval tier "b", its inner boundaries being the markers strictly inside the sound and its texts the
/// segment labels; point labels stand in the point tier "b 点" behind it, annotations in the point tier "音标",
/// both only where there are any. Left out are labels of stretches that are none (a marker inside, an end
/// without one), and markers at the sound's ends or outside of it that have no point label. The sound has
/// samples.
TextGrid GridOfMarkers(const MarkerSet& markers, const std::vector<Annotation>& annotations, int sampleCount,
                       int sampleRate, ExportLosses& losses);

/// What an import could not take, or took changed.
struct ImportLosses {
  int tiers = 0;        ///< beyond the four bands
  int markers = 0;      ///< beyond 20 a band
  int labels = 0;       ///< beyond 20 a band; of no length; whose ends are no neighbouring markers
  int annotations = 0;  ///< beyond 500
  int outside = 0;      ///< stretches and points outside the sound
  int shortened = 0;    ///< texts longer than a label or an annotation may be
  int recoded = 0;      ///< texts with characters that have no GBK code: "?" stands there
  bool operator==(const ImportLosses&) const = default;
};

struct ImportedMarkers {
  MarkerSet set;
  bool hasBands = false;  ///< there were tiers for markers
  std::vector<Annotation> annotations;
  bool hasAnnotations = false;  ///< there was a tier for them
  ImportLosses losses;
};

/// The reverse. Tiers named like bands become those bands, the others the free bands in their order.
/// Boundaries become markers at round(t·sampleRate), texts of intervals segment labels, points a marker each
/// with a point label. The ends of a tier are markers only where they bound a label; within 10 ms of the
/// sound's ends they are these. Texts of blanks alone count as none, other control characters than the blank
/// become one.
ImportedMarkers MarkersOfGrid(const TextGrid& grid, int sampleCount, int sampleRate);

}  // namespace parlowen
