#include "interchange/FrameGrid.h"

#include <algorithm>

namespace parlowen {

FrameSpan FramesToExport(const SoundDocument& document) {
  FrameSpan span{0, document.ContourLength() - 1};
  if (!document.selectionDefined()) return span;
  const int rate = document.sampleRate;
  span.first = FrameOfSample(document.selectionStart, rate);
  while (SampleOfFrame(span.first, rate) < document.selectionStart) ++span.first;
  span.last = std::min(span.last, FrameOfSample(document.selectionEnd, rate) + 1);
  while (span.last >= span.first && SampleOfFrame(span.last, rate) >= document.selectionEnd) --span.last;
  return span;
}

double FrequencyOf(float period, int sampleRate) {
  return period > 0 ? sampleRate / static_cast<double>(period) : 0.0;
}

}  // namespace parlowen
