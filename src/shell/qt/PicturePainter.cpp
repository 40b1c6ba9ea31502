#include "shell/qt/PicturePainter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "base/IpaCodes.h"
#include "ui/Resample.h"

namespace parlowen {
namespace {

QColor ColourOf(Colour colour, double opacity = 1.0) {
  QColor result(QRgb(colour & 0xFFFFFFu));
  result.setAlphaF(static_cast<float>(opacity));
  return result;
}

QFont FontOf(Face face, int height) {
  QFont font;
  switch (face) {
    case Face::Ipa: font.setFamilies({"Charis SIL", "Doulos SIL", "DejaVu Sans", "Noto Sans CJK SC"}); break;
    case Face::Figures: font.setFamilies({"DejaVu Sans", "Noto Sans CJK SC"}); break;
    default: font.setFamilies({"Noto Sans CJK SC", "WenQuanYi Micro Hei", "DejaVu Sans"});
  }
  font.setPixelSize(std::max(1, height));
  return font;
}

QPolygonF PointsOf(const std::vector<Point>& points) {
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(points.size()));
  for (const Point point : points) polygon.append(QPointF(point.x, point.y));
  return polygon;
}

// Lines and outlines run through the middle of their pixels.
constexpr QPointF kMiddle(0.5, 0.5);

/// Pixels that are drawn and left out in turn; none of a whole line.
struct Dashes {
  int dash = 0, gap = 0;
};
Dashes DashesOf(LineStyle style) {
  switch (style) {
    case LineStyle::Dashed: return {4, 3};
    case LineStyle::Dotted: return {1, 3};
    default: return {};
  }
}

QPen PenOf(Colour colour, int width, LineStyle style = LineStyle::Solid) {
  QPen pen(ColourOf(colour), width);
  pen.setCapStyle(Qt::FlatCap);
  pen.setJoinStyle(Qt::MiterJoin);
  if (const Dashes dashes = DashesOf(style); dashes.dash > 0)
    pen.setDashPattern({double(dashes.dash) / std::max(1, width), double(dashes.gap) / std::max(1, width)});
  return pen;
}

class MarkPainter {
 public:
  explicit MarkPainter(QPainter& painter) : painter_(painter) {}

  void operator()(const LineMark& mark) const {
    if (mark.from.x == mark.to.x || mark.from.y == mark.to.y) return Bar(mark);
    Antialias(true);
    painter_.setPen(PenOf(mark.colour, mark.width, mark.style));
    painter_.drawLine(QPointF(mark.from.x, mark.from.y) + kMiddle, QPointF(mark.to.x, mark.to.y) + kMiddle);
  }
  void operator()(const PolylineMark& mark) const {
    if (mark.points.size() < 2) return;
    Antialias(true);
    painter_.setPen(PenOf(mark.colour, mark.width, mark.style));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPolyline(PointsOf(mark.points).translated(kMiddle));
  }
  void operator()(const PolygonMark& mark) const {
    Antialias(true);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(ColourOf(mark.fill, mark.opacity));
    painter_.drawPolygon(PointsOf(mark.points));
  }
  void operator()(const BoxMark& mark) const {
    Antialias(false);
    if (mark.opacity > 0)
      painter_.fillRect(QRectF(mark.x, mark.y, mark.width, mark.height), ColourOf(mark.fill, mark.opacity));
    if (!mark.outlined || mark.width < 1 || mark.height < 1) return;
    const QColor colour = ColourOf(mark.outline);
    const double x = mark.x, y = mark.y, width = mark.width, height = mark.height;
    FillSnapped(QRectF(x, y, width, 1), colour);
    FillSnapped(QRectF(x, y + height - 1, width, 1), colour);
    FillSnapped(QRectF(x, y, 1, height), colour);
    FillSnapped(QRectF(x + width - 1, y, 1, height), colour);
  }
  void operator()(const OvalMark& mark) const {
    Antialias(true);
    painter_.setPen(PenOf(mark.outline, 1));
    painter_.setBrush(mark.filled ? QBrush(ColourOf(mark.fill)) : QBrush(Qt::NoBrush));
    painter_.drawEllipse(QRectF(mark.x, mark.y, mark.width, mark.height));
  }
  void operator()(const TextMark& mark) const {
    const QFont font = FontOf(mark.face, mark.height);
    const QString text = QString::fromStdString(IpaAsDrawn(mark.text));
    double x = mark.x;
    if (mark.anchor != Anchor::Left) {
      const double width = QFontMetricsF(font).horizontalAdvance(text);
      x -= mark.anchor == Anchor::Middle ? width / 2 : width;
    }
    painter_.setRenderHint(QPainter::TextAntialiasing);
    painter_.setFont(font);
    painter_.setPen(ColourOf(mark.colour));
    painter_.drawText(QPointF(x, mark.y), text);
  }
  void operator()(const GreyImageMark& mark) const {
    if (!mark.smooth) return Image(mark, QImage::Format_Grayscale8, 1);
    // As many pixels as the device has there: the painter has nothing left to choose from or to invent.
    const QRectF device = painter_.deviceTransform().mapRect(QRectF(mark.x, mark.y, mark.width, mark.height));
    Image(Resampled(mark, DevicePixels(device.width()), DevicePixels(device.height())),
          QImage::Format_Grayscale8, 1);
  }
  void operator()(const ColourImageMark& mark) const { Image(mark, QImage::Format_RGB888, 3); }
  void operator()(const ClipMark& mark) const {
    if (clipped_) painter_.restore();
    clipped_ = mark.width > 0;
    if (!clipped_) return;
    painter_.save();
    painter_.setClipRect(QRect(mark.x, mark.y, mark.width, mark.height), Qt::IntersectClip);
  }
  /// Takes back what a picture left clipped.
  void End() const { (*this)(ClipMark{}); }

 private:
  static int DevicePixels(double length) {
    constexpr double kMost = 16384;
    return static_cast<int>(std::clamp(std::round(length), 1.0, kMost));
  }
  void Antialias(bool on) const { painter_.setRenderHint(QPainter::Antialiasing, on); }

  /// A line along a row or a column, its end pixels included: filled boxes stay crisp at every scale.
  void Bar(const LineMark& mark) const {
    Antialias(false);
    const bool column = mark.from.x == mark.to.x;
    const int begin = column ? mark.from.y : mark.from.x, end = column ? mark.to.y : mark.to.x;
    const int first = std::min(begin, end), last = std::max(begin, end);
    const Dashes dashes = DashesOf(mark.style);
    const int piece = dashes.dash > 0 ? dashes.dash : last - first + 1;
    const double across = (column ? mark.from.x : mark.from.y) - (mark.width - 1) / 2.0;
    const QColor colour = ColourOf(mark.colour);
    for (int at = first; at <= last; at += piece + dashes.gap) {
      const double length = std::min(piece, last - at + 1);
      FillSnapped(column ? QRectF(across, at, mark.width, length) : QRectF(at, across, length, mark.width),
                  colour);
    }
  }

  /// Fills whole device pixels, so that lines of one width look alike at a fractional scale.
  void FillSnapped(const QRectF& area, const QColor& colour) const {
    const QTransform transform = painter_.deviceTransform();
    if (transform.type() > QTransform::TxScale) return painter_.fillRect(area, colour);
    const QRectF device = transform.mapRect(area);
    const QRectF whole(std::round(device.x()), std::round(device.y()),
                       std::max(1.0, std::round(device.width())), std::max(1.0, std::round(device.height())));
    painter_.fillRect(transform.inverted().mapRect(whole), colour);
  }

  template <typename M>
  void Image(const M& mark, QImage::Format format, int bytes) const {
    const auto size = static_cast<std::size_t>(std::max(0, mark.columns)) *
                      static_cast<std::size_t>(std::max(0, mark.rows));
    if (size == 0 || mark.pixels.size() < size * static_cast<std::size_t>(bytes)) return;
    const QImage image(mark.pixels.data(), mark.columns, mark.rows, mark.columns * bytes, format);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter_.drawImage(QRectF(mark.x, mark.y, mark.width, mark.height), image);
  }

  QPainter& painter_;
  mutable bool clipped_ = false;
};

}  // namespace

void PaintPicture(QPainter& painter, const Picture& picture) {
  painter.save();
  painter.setClipRect(
      QRect(-picture.around.left, -picture.around.top, picture.WholeWidth(), picture.WholeHeight()),
      Qt::IntersectClip);
  const MarkPainter markPainter(painter);
  for (const Mark& mark : picture.marks) std::visit(markPainter, mark);
  markPainter.End();
  painter.restore();
}

QImage RenderPicture(const Picture& picture, double scale) {
  const int width = std::max(1, static_cast<int>(std::lround(picture.WholeWidth() * scale)));
  const int height = std::max(1, static_cast<int>(std::lround(picture.WholeHeight() * scale)));
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(scale, scale);
  painter.translate(picture.around.left, picture.around.top);
  PaintPicture(painter, picture);
  return image;
}

}  // namespace parlowen
