#include "shell/qt/Placement.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace parlowen {

void PlaceBeside(QWidget& window, const QWidget& other) {
  const QScreen* screen = other.screen();
  if (screen == nullptr) return;
  // A window that was never shown does not know its frame; it is like that of the other.
  const QRect place = other.frameGeometry(), area = screen->availableGeometry();
  const QSize frame = place.size() - other.size();
  const QSize size = window.size() + frame;
  const int x = std::clamp(place.x(), area.x(), std::max(area.x(), area.right() + 1 - size.width()));
  const int y = std::clamp(place.y(), area.y(), std::max(area.y(), area.bottom() + 1 - size.height()));
  const int right = area.right() + 1 - size.width(), bottom = area.bottom() + 1 - size.height();
  const QPoint places[] = {{place.right() + 1, y},  {place.x() - size.width(), y},
                           {x, place.bottom() + 1}, {x, place.y() - size.height()},
                           {right, area.y()},       {right, bottom},
                           {area.x(), bottom},      area.topLeft()};
  const auto hidden = [&](QPoint corner) {
    const QRect common = QRect(corner, size).intersected(place);
    return common.width() * common.height();
  };
  QPoint best{std::max(area.x(), right), area.y()};  // over the edge that is clicked least
  for (const QPoint corner : places)
    if (area.contains(QRect(corner, size)) && hidden(corner) < hidden(best)) best = corner;
  window.move(best);
}

}  // namespace parlowen
