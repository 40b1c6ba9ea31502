#pragma once
#include <optional>
#include <string>

#include "base/Bytes.h"
#include "vowel/VowelChart.h"

namespace parlowen {

/// The bytes of a vowel-chart file (.vch). Little-endian. A Bark chart begins with int16 −1 and int16
/// referenceF0. Then int16 count, and a point: int16 x, y, x3 (frequency charts only), shape, 0; float F1,
/// F2, F3 (frequency only). A point is 22 bytes, or 16 in a Bark chart.
ByteWriter ChartBytes(const VowelChart& chart);

/// `chart` with the points, the coordinates and (of a Bark chart) the reference pitch of a file; places are
/// not computed again. Files whose points lack the zero word are read too where the size fits only that.
/// Nothing for a count outside 0..200 or more points than there are bytes.
std::optional<VowelChart> ReadChart(ByteSpan file, VowelChart chart);

/// The text of "VchDt.txt" in GBK.
std::string ChartListing(const VowelChart& chart);

}  // namespace parlowen
