#include "ui/Resample.h"

#include <algorithm>
#include <cmath>

namespace parlowen {
namespace {

/// How much of which old pixels makes one new pixel: `weights` of those from `first` on, together 1.
struct Share {
  std::size_t first = 0;
  std::vector<double> weights;
};

Share MeanShare(int at, int from, int to) {
  const double begin = static_cast<double>(at) * from / to, end = static_cast<double>(at + 1) * from / to;
  const int first = static_cast<int>(begin), last = std::min(from, static_cast<int>(std::ceil(end)));
  Share share{static_cast<std::size_t>(first), {}};
  for (int i = first; i < last; ++i)
    share.weights.push_back((std::min<double>(end, i + 1) - std::max<double>(begin, i)) / (end - begin));
  return share;
}

Share LineShare(int at, int from, int to) {
  const double middle = std::clamp((at + 0.5) * from / to - 0.5, 0.0, from - 1.0);
  const int first = static_cast<int>(middle);
  const double behind = middle - first;
  Share share{static_cast<std::size_t>(first), {1 - behind}};
  if (behind > 0) share.weights.push_back(behind);
  return share;
}

std::vector<Share> SharesOf(int from, int to) {
  std::vector<Share> shares;
  shares.reserve(static_cast<std::size_t>(to));
  for (int at = 0; at < to; ++at)
    shares.push_back(to < from ? MeanShare(at, from, to) : LineShare(at, from, to));
  return shares;
}

}  // namespace

GreyImageMark Resampled(const GreyImageMark& image, int columns, int rows) {
  GreyImageMark result{image.x, image.y, image.width, image.height, 0, 0, {}, image.smooth};
  if (image.columns <= 0 || image.rows <= 0 || columns <= 0 || rows <= 0) return result;
  const auto oldColumns = static_cast<std::size_t>(image.columns);
  if (image.pixels.size() < oldColumns * static_cast<std::size_t>(image.rows)) return result;
  if (columns == image.columns && rows == image.rows) return image;
  result.columns = columns;
  result.rows = rows;
  result.pixels.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
  const std::vector<Share> across = SharesOf(image.columns, columns);
  std::vector<double> line(oldColumns);
  for (const Share& down : SharesOf(image.rows, rows)) {
    std::fill(line.begin(), line.end(), 0.0);
    for (std::size_t i = 0; i < down.weights.size(); ++i) {
      const std::uint8_t* old = image.pixels.data() + (down.first + i) * oldColumns;
      for (std::size_t x = 0; x < oldColumns; ++x) line[x] += down.weights[i] * old[x];
    }
    for (const Share& share : across) {
      double sum = 0;
      for (std::size_t i = 0; i < share.weights.size(); ++i) sum += share.weights[i] * line[share.first + i];
      result.pixels.push_back(static_cast<std::uint8_t>(std::clamp(sum + 0.5, 0.0, 255.0)));
    }
  }
  return result;
}

}  // namespace parlowen
