#include "document/LevelMeasures.h"

#include <algorithm>

namespace parlowen {

int PeakAmplitude(SampleSpan samples, int start, int end) {
  start = std::max(start, 0);
  end = std::min(end, samples.count);
  int smallest = 0, largest = 0;
  for (int i = start; i < end; ++i) {
    smallest = std::min<int>(smallest, samples.data[i]);
    largest = std::max<int>(largest, samples.data[i]);
  }
  return std::min(std::max(largest, -smallest), 32767);
}

int SegmentPeakLevel(SampleSpan samples, int start, int end) {
  return std::max(1, PeakAmplitude(samples, start, end));
}

}  // namespace parlowen
