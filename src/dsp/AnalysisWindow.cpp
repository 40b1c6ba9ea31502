#include "dsp/AnalysisWindow.h"

#include <algorithm>
#include <cmath>

namespace parlowen {

alignas(64) std::array<double, 1024> AnalysisWindow{};

int MakeAnalysisWindow(int length, double shape) {
  const int kept = std::clamp(length, 0, static_cast<int>(AnalysisWindow.size()));
  const double step = 6.2831853 / length;  // read for i < kept only, so never with a length of 0
  const auto first = AnalysisWindow.begin();
  if (shape > 0.0001) {
    for (int i = 0; i < kept; ++i) first[i] = (0.5 + shape) - (0.5 - shape) * std::cos(i * step);
  } else {
    for (int i = 0; i < kept; ++i) first[i] = std::sin(i * step * 0.5);
  }
  std::fill(first + kept, kept <= 512 ? first + 512 : AnalysisWindow.end(), 0.0);
  return 0;
}

}  // namespace parlowen
