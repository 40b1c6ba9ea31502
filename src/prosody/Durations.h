#pragma once
#include <string>
#include <vector>

#include "prosody/GroupFile.h"

namespace parlowen {

/// Groups of durations (.lgs): up to 95 values a group in tenths of a millisecond.
inline constexpr GroupLayout kDurationLayout{7, 1, 95};

/// trunc(samples·10000/sampleRate), tenths of a millisecond. The product wraps at 32 bits, the result keeps
/// its low 16 bits: 7 s come out as 446.4 ms.
std::uint16_t DurationOf(int samples, int sampleRate);

/// What the report tells of a group, in ms.
struct DurationGroup {
  std::string name;  ///< GBK
  std::size_t count = 0;
  double mean = 0;       ///< with the group's sign
  double deviation = 0;  ///< of the population: divided by n
};

DurationGroup SummaryOf(const ValueGroup& group);
std::vector<DurationGroup> SummariesOf(const std::vector<ValueGroup>& groups);

/// The text of "WvLength.txt" in GBK.
std::string DurationReport(const std::vector<ValueGroup>& groups);

}  // namespace parlowen
