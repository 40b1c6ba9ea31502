#include "ui/Picture.h"

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

}  // namespace

void Picture::AddAt(const Picture& other, int dx, int dy) {
  const std::size_t first = marks.size();
  Add(other);
  for (std::size_t i = first; i < marks.size(); ++i) std::visit(Mover{dx, dy}, marks[i]);
}

int TextWidth(const std::string& text, int height) {
  const auto thirdsOf = [](char32_t character) {
    if (character >= 0x2E80) return 3;
    if (character >= 0x300 && character < 0x370) return 0;
    return character >= 0x2B0 && character < 0x300 ? 1 : 2;
  };
  int thirds = 0;
  for (std::size_t at = 0; at < text.size();) thirds += thirdsOf(TakeUtf8(text, at));
  return thirds * height / 3;
}

}  // namespace parlowen
