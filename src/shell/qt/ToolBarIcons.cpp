#include "shell/qt/ToolBarIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "ui/Colours.h"

namespace parlowen {
namespace {

constexpr int kSide = 20;

void DrawGlass(QPainter& painter, bool plus) {
  painter.drawEllipse(QRectF(3.5, 3.5, 10, 10));
  painter.drawLine(QPointF(12.3, 12.3), QPointF(17, 17));
  painter.drawLine(QPointF(6, 8.5), QPointF(11, 8.5));
  if (plus) painter.drawLine(QPointF(8.5, 6), QPointF(8.5, 11));
}

}  // namespace

void PaintToolIcon(QPainter& painter, ToolIcon icon, const QColor& ink) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  switch (icon) {
    case ToolIcon::Open:
      painter.drawPolyline(
          QPolygonF({{2.5, 16}, {2.5, 4.5}, {7.5, 4.5}, {9.5, 6.5}, {15.5, 6.5}, {15.5, 9}}));
      painter.drawPolygon(QPolygonF({{2.5, 16}, {5.5, 9}, {18, 9}, {15, 16}}));
      break;
    case ToolIcon::Save:
      painter.drawRect(QRectF(3, 3, 14, 14));
      painter.drawRect(QRectF(6.5, 3, 7, 5));
      painter.drawRect(QRectF(6, 11.5, 8, 5.5));
      break;
    case ToolIcon::Record:
      painter.setPen(Qt::NoPen);
      painter.setBrush(QColor(0xC0, 0x10, 0x10));
      painter.drawEllipse(QRectF(4, 4, 12, 12));
      break;
    case ToolIcon::Play:
      painter.setBrush(ink);
      painter.drawPolygon(QPolygonF({{6, 4}, {16, 10}, {6, 16}}));
      break;
    case ToolIcon::Stop:
      painter.setBrush(ink);
      painter.drawRect(QRectF(5, 5, 10, 10));
      break;
    case ToolIcon::ZoomOut: DrawGlass(painter, false); break;
    case ToolIcon::ZoomIn: DrawGlass(painter, true); break;
    case ToolIcon::Pitch: {
      QPainterPath path({2, 14});
      path.cubicTo(6, 14, 7, 4, 11, 5);
      path.cubicTo(14, 6, 13, 12, 18, 11);
      painter.drawPath(path);
      break;
    }
    case ToolIcon::WideBand:
      for (const double x : {4.0, 7.0, 10.0, 13.0, 16.0})
        painter.drawLine(QPointF(x, x == 10.0 ? 3 : 5), QPointF(x, 17));
      break;
    case ToolIcon::NarrowBand:
      for (const double y : {4.0, 7.0, 10.0, 13.0, 16.0}) painter.drawLine(QPointF(3, y), QPointF(17, y));
      break;
  }
}

QIcon MakeToolIcon(ToolIcon icon, const QColor& ink) {
  QIcon result;
  for (const int ratio : {1, 2}) {
    QPixmap pixmap(kSide * ratio, kSide * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    PaintToolIcon(painter, icon, ink);
    painter.end();
    result.addPixmap(pixmap);
  }
  return result;
}

void PaintApplicationIcon(QPainter& painter) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(QRgb(colours::kWave)));
  painter.drawRoundedRect(QRectF(1, 1, 62, 62), 12, 12);
  painter.setPen(QPen(QColor(QRgb(colours::kLevelBars)), 4, Qt::SolidLine, Qt::RoundCap));
  constexpr double kHeights[] = {4, 10, 16, 12, 18, 8, 5};  // a syllable, above and below its middle
  for (int i = 0; i < 7; ++i) {
    const double x = 11 + 7.0 * i;
    painter.drawLine(QPointF(x, 42 - kHeights[i] * 0.8), QPointF(x, 42 + kHeights[i] * 0.8));
  }
  QPainterPath tone(QPointF(10, 24));  // falling and rising, as in the third tone
  tone.cubicTo(QPointF(20, 38), QPointF(34, 36), QPointF(54, 9));
  painter.setPen(QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(tone);
}

QIcon MakeApplicationIcon() {
  QIcon result;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.scale(side / 64.0, side / 64.0);
    PaintApplicationIcon(painter);
    painter.end();
    result.addPixmap(pixmap);
  }
  return result;
}

}  // namespace parlowen
