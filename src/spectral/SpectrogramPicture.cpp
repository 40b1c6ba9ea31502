#include "spectral/SpectrogramPicture.h"

#include <algorithm>

#include "base/Format.h"

namespace parlowen {
namespace {

constexpr Colour kGridLine = 0xA04040;

const char* KindTitle(SpectrogramKind kind) {
  constexpr const char* kTitles[] = {"宽带", "窄带", "LPC 谱", "同态谱", "倒谱", "共振峰", "滤波器法"};
  return kTitles[static_cast<int>(kind)];
}

GreyImageMark ImageOf(const SpectrogramState& spectrogram, int width, int height) {
  const SpectrogramMatrix& matrix = spectrogram.matrix;
  GreyImageMark image{spectrogram.stretch.firstX, 0, std::min(matrix.columns, width), height,
                      matrix.columns,             kSpectrogramRows,               {}};
  image.pixels.resize(static_cast<std::size_t>(matrix.columns) * kSpectrogramRows);
  for (int column = 0; column < matrix.columns; ++column) {
    const std::uint16_t* greys = matrix.Column(column);
    for (int row = 0; row < kSpectrogramRows; ++row) {
      const auto line = static_cast<std::size_t>(kSpectrogramRows - 1 - row);
      image.pixels[line * static_cast<std::size_t>(matrix.columns) + static_cast<std::size_t>(column)] =
          static_cast<std::uint8_t>(std::min<int>(greys[row], 255));
    }
  }
  return image;
}

}  // namespace

int GridStepHz(int sampleRate) { return sampleRate > 20000 ? 2000 : 1000; }

int GridLineY(int frequency, int sampleRate, int height) {
  const std::int64_t row = std::int64_t{frequency} * 512 / std::max(1, sampleRate);
  return height - 1 - static_cast<int>(row * height / kSpectrogramRows);
}

Picture SpectrogramPicture(const SpectrogramState& spectrogram, int sampleRate, int width, int height) {
  Picture picture{width, height, {}};
  const SpectrogramStretch& stretch = spectrogram.stretch;
  if (spectrogram.matrix.columns > 0) {
    GreyImageMark image = ImageOf(spectrogram, width, height);
    // A stretch of its own keeps filling the pane when the pane has another width than it was computed for.
    if (!stretch.followsView && stretch.maxColumns > 0)
      image.width = static_cast<int>(std::int64_t{spectrogram.matrix.columns} * width / stretch.maxColumns);
    picture.Add(std::move(image));
  }
  const int step = GridStepHz(sampleRate);
  for (int frequency = step; frequency < sampleRate / 2; frequency += step) {
    const int y = GridLineY(frequency, sampleRate, height);
    picture.Add(LineMark{{stretch.firstX, y}, {width - 1, y}, kGridLine, 1, LineStyle::Dashed});
  }
  const double rate = std::max(1, sampleRate);
  const int x = std::max(stretch.firstX, 24) + 4;
  picture.Add(BoxMark{x - 4, 0, 392, 18, colours::kWhite, 0.75});
  picture.Add(TextMark{x, 13, "语谱显示: 语谱图", colours::kText, 12});
  picture.Add(TextMark{x + 112, 13, KindTitle(spectrogram.kind), colours::kText, 12});
  picture.Add(TextMark{x + 172, 13, Format("波形 : T=%.2f -- %.2f（秒）", stretch.start / rate, stretch.end / rate),
                       colours::kText, 12});
  return picture;
}

}  // namespace parlowen
