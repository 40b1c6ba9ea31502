#pragma once
#include <cstdint>
#include <vector>

namespace parlowen {

/// Rows of a spectrogram column: row r stands for r·sampleRate/512 Hz.
inline constexpr int kSpectrogramRows = 256;

/// Which analysis fills the columns.
enum class SpectrogramKind { WideBand, NarrowBand, Lpc, Homomorphic, Cepstrum, Formants, FilterBank };

/// Its name in scripts: "wide", "narrow", "lpc", "homomorphic", "cepstrum", "formants", "filterbank".
const char* SpectrogramKindName(SpectrogramKind kind);

/// The shaded picture as numbers: per column 256 greys, row 0 first; 0 black (strong) .. 255 white (nothing).
struct SpectrogramMatrix {
  int columns = 0;
  std::vector<std::uint16_t> greys;

  std::uint16_t* Column(int column) { return greys.data() + std::size_t(column) * kSpectrogramRows; }
  const std::uint16_t* Column(int column) const {
    return greys.data() + std::size_t(column) * kSpectrogramRows;
  }
};

/// grey = 255 − trunc(contrast·level), clamped to 0..255, for the 256 levels of a column.
void ShadeColumn(const double* levels, double contrast, std::uint16_t* greys);

/// Moves every grey an eighth of the way to white (direction −1) or a seventh away from it (+1).
void DarkenLightenMatrix(SpectrogramMatrix& matrix, int direction);

}  // namespace parlowen
