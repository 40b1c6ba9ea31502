#include "ui/Picture.h"

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

}  // namespace parlowen
