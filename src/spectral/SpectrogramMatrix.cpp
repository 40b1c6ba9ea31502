#include "spectral/SpectrogramMatrix.h"

#include <algorithm>

#include "base/Arithmetic.h"

namespace parlowen {

const char* SpectrogramKindName(SpectrogramKind kind) {
  constexpr const char* kNames[] = {"wide",     "narrow",   "lpc",       "homomorphic",
                                    "cepstrum", "formants", "filterbank"};
  return kNames[static_cast<int>(kind)];
}

void ShadeColumn(const double* levels, double contrast, std::uint16_t* greys) {
  for (int row = 0; row < kSpectrogramRows; ++row) {
    // Clamped before the conversion, so that it is defined for every level.
    const double darkness = std::min(std::max(contrast * levels[row], 0.0), 255.0);
    greys[row] = static_cast<std::uint16_t>(255 - static_cast<int>(darkness));
  }
}

void DarkenLightenMatrix(SpectrogramMatrix& matrix, int direction) {
  for (std::uint16_t& grey : matrix.greys) {
    const int below = static_cast<int>(grey) - 255;
    const int moved = (direction > 0 ? 8 * below / 7 : below * 7 / 8) + 255;
    grey = static_cast<std::uint16_t>(std::max(0, moved));
  }
}

}  // namespace parlowen
