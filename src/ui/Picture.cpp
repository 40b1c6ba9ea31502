#include "ui/Picture.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

struct Mover {
  int dx, dy;

  void Shift(Point& point) const {
    point.x += dx;
    point.y += dy;
  }
  void operator()(LineMark& mark) const {
    Shift(mark.from);
    Shift(mark.to);
  }
  void operator()(PolylineMark& mark) const {
    for (Point& point : mark.points) Shift(point);
  }
  void operator()(PolygonMark& mark) const {
    for (Point& point : mark.points) Shift(point);
  }
  template <typename Placed>
  void operator()(Placed& mark) const {
    mark.x += dx;
    mark.y += dy;
  }
};

struct Scaler {
  double factor;

  void Scale(int& value) const { value = TruncateToInt32(value * factor + (value < 0 ? -0.5 : 0.5)); }
  void ScaleSize(int& value) const {
    const bool some = value > 0;
    Scale(value);
    if (some) value = std::max(1, value);
  }
  void Scale(Point& point) const {
    Scale(point.x);
    Scale(point.y);
  }
  void operator()(LineMark& mark) const {
    Scale(mark.from);
    Scale(mark.to);
    ScaleSize(mark.width);
  }
  void operator()(PolylineMark& mark) const {
    for (Point& point : mark.points) Scale(point);
    ScaleSize(mark.width);
  }
  void operator()(PolygonMark& mark) const {
    for (Point& point : mark.points) Scale(point);
  }
  void operator()(TextMark& mark) const {
    Scale(mark.x);
    Scale(mark.y);
    ScaleSize(mark.height);
  }
  /// Neighbours that meet go on meeting: both edges are scaled, not the width.
  template <typename Box>
  void operator()(Box& mark) const {
    int right = mark.x + mark.width, bottom = mark.y + mark.height;
    Scale(mark.x);
    Scale(mark.y);
    Scale(right);
    Scale(bottom);
    mark.width = mark.width > 0 ? std::max(1, right - mark.x) : 0;
    mark.height = mark.height > 0 ? std::max(1, bottom - mark.y) : 0;
  }
};

/// Hundredths of the type size that the characters from the blank to the tilde take, in the wider of the two faces
/// (DejaVu Sans, Noto Sans CJK).
constexpr unsigned char kAsciiWidths[] = {
    32, 40, 48, 84, 64, 95, 78, 28, 39,  39, 50, 84, 32, 36, 32, 40, 64, 64, 64, 64, 64, 64, 64, 64,
    64, 64, 34, 34, 84, 84, 84, 53, 100, 69, 69, 70, 77, 64, 58, 78, 76, 30, 54, 66, 56, 87, 75, 79,
    64, 79, 70, 64, 61, 74, 69, 99, 69,  61, 69, 39, 40, 39, 84, 56, 61, 62, 64, 55, 64, 62, 36, 64,
    64, 28, 28, 58, 29, 98, 64, 62, 64,  64, 42, 52, 40, 64, 60, 82, 60, 60, 53, 64, 34, 64, 84};

int HundredthsOf(char32_t character) {
  if (character < 0x20) return 0;
  if (character < 0x7F) return kAsciiWidths[character - 0x20];
  if (character >= 0x2E80) return 100;
  if (character >= 0x300 && character < 0x370) return 0;
  if (character >= 0x2B0 && character < 0x300) return 50;
  return character == U'æ' || character == U'œ' || character == U'…' || character == U'·' ? 102 : 67;
}

}  // namespace

Picture Picture::Scaled(double factor) const {
  Picture scaled = *this;
  const Scaler scaler{factor};
  scaler.ScaleSize(scaled.width);
  scaler.ScaleSize(scaled.height);
  for (int* side : {&scaled.around.left, &scaled.around.top, &scaled.around.right, &scaled.around.bottom})
    scaler.ScaleSize(*side);
  for (Mark& mark : scaled.marks) std::visit(scaler, mark);
  return scaled;
}

void Picture::AddAt(const Picture& other, int dx, int dy) {
  const std::size_t first = marks.size();
  Add(other);
  for (std::size_t i = first; i < marks.size(); ++i) std::visit(Mover{dx, dy}, marks[i]);
}

void Picture::AddClipped(const Picture& other, int dx, int dy) {
  Add(ClipMark{dx, dy, other.width, other.height});
  AddAt(other, dx, dy);
  Add(ClipMark{});
}

int TextWidth(const std::string& text, int height) {
  int hundredths = 0;
  for (std::size_t at = 0; at < text.size();) hundredths += HundredthsOf(TakeUtf8(text, at));
  return (hundredths * height + 99) / 100;
}

}  // namespace parlowen
