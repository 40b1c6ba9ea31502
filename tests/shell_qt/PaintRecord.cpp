#include "shell_qt/PaintRecord.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QImage>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QScrollBar>
#include <QVersionNumber>
#include <cmath>
#include <map>
#include <utility>

#include "base/Format.h"
#include "shell/qt/ElidedLabel.h"
#include "shell/qt/PicturePainter.h"
#include "support/Kept.h"

namespace parlowen {
namespace {

/// In tenths, which no last bit of a sum changes.
std::string Tenths(double value) { return Format("%ld", std::lround(value * 10 + 0.01)); }

std::string Of(QPointF point) { return Tenths(point.x()) + "," + Tenths(point.y()); }

std::string Of(const QRectF& area) { return Of(area.topLeft()) + " " + Of(area.bottomRight()); }

std::string Of(const QBrush& brush) {
  if (brush.style() == Qt::NoBrush) return "none";
  const std::string colour = brush.color().name(QColor::HexArgb).toStdString();
  return brush.style() == Qt::SolidPattern
             ? colour
             : Format("%s style %d", colour.c_str(), static_cast<int>(brush.style()));
}

std::string Of(const QPen& pen) {
  if (pen.style() == Qt::NoPen) return "none";
  std::string text = Of(pen.brush()) + " " + Tenths(pen.widthF()) +
                     Format(" cap %02x join %02x", static_cast<unsigned>(pen.capStyle()),
                            static_cast<unsigned>(pen.joinStyle()));
  for (const qreal length : pen.dashPattern()) text += " " + Tenths(length);
  return text;
}

std::string Of(const QTransform& place) {
  return Of(QPointF(place.dx(), place.dy())) + " * " + Of(100 * QPointF(place.m11(), place.m22())) +
         " turn " + Of(100 * QPointF(place.m12(), place.m21()));
}

std::string Of(const QFont& font) {
  return font.family().toStdString() + Format(" %d%s", font.pixelSize(), font.bold() ? " bold" : "");
}

}  // namespace

class PaintRecord::Engine : public QPaintEngine {
 public:
  explicit Engine(std::string& text) : QPaintEngine(AllFeatures), text_(text) {}

  /// A painter begins with what a painter has by itself.
  bool begin(QPaintDevice*) override {
    set_ = used_ = {{"brush", "none"}, {"clip", "all"}};
    return true;
  }
  bool end() override { return true; }
  Type type() const override { return User; }

  void updateState(const QPaintEngineState& now) override {
    const DirtyFlags changed = now.state();
    if (changed & DirtyPen) Set("pen", Of(now.pen()));
    if (changed & DirtyBrush) Set("brush", Of(now.brush()));
    if (changed & DirtyTransform) Set("place", Of(now.transform()));
    if (changed & DirtyFont) Set("font", Of(now.font()));
    if (changed & DirtyOpacity) Set("opacity", Tenths(100 * now.opacity()));
    if (changed & DirtyHints) Set("smooth", (now.renderHints() & QPainter::Antialiasing) != 0 ? "yes" : "no");
    if (changed & DirtyClipRegion) Clip(now, QRectF(now.clipRegion().boundingRect()));
    if (changed & DirtyClipPath) Clip(now, now.clipPath().boundingRect());
    if (changed & DirtyClipEnabled) Set("clipping", now.isClipEnabled() ? "on" : "off");
  }
  void drawRects(const QRectF* areas, int count) override {
    for (int i = 0; i < count; ++i) AddOutline("box " + Of(areas[i]));
  }
  void drawRects(const QRect* areas, int count) override {
    for (int i = 0; i < count; ++i) AddOutline("box " + Of(QRectF(areas[i])));
  }
  void drawLines(const QLineF* lines, int count) override {
    for (int i = 0; i < count; ++i) AddOutline("line " + Of(lines[i].p1()) + " " + Of(lines[i].p2()));
  }
  void drawEllipse(const QRectF& area) override { AddOutline("oval " + Of(area)); }
  void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
    std::string line = mode == PolylineMode ? "polyline" : "polygon";
    for (int i = 0; i < count; ++i) line += " " + Of(points[i]);
    AddOutline(line);
  }
  void drawPath(const QPainterPath& path) override {
    std::string line = "path";
    for (int i = 0; i < path.elementCount(); ++i)
      line += Format(" %d ", static_cast<int>(path.elementAt(i).type)) + Of(QPointF(path.elementAt(i)));
    AddOutline(line);
  }
  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    Add("text " + Of(at) + " " + item.text().toStdString());
  }
  /// Pixels that were painted before are no part of the record.
  void drawPixmap(const QRectF& area, const QPixmap&, const QRectF& from) override {
    Add("pixels " + Of(area) + " of " + Of(from));
  }
  void drawImage(const QRectF& area, const QImage& image, const QRectF& from,
                 Qt::ImageConversionFlags) override {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    Add("image " + Of(area) + " of " + Of(from) + " " +
        testing::SizeAndDigest(std::string(reinterpret_cast<const char*>(rgb.constBits()),
                                           static_cast<std::size_t>(rgb.sizeInBytes()))));
  }

 private:
  /// An area of the device. A restored state tells all its clips anew, from the first on, each in its own place.
  void Clip(const QPaintEngineState& now, const QRectF& area) {
    const std::string within = Of(now.transform().mapRect(area));
    switch (now.clipOperation()) {
      case Qt::NoClip: return Set("clip", "all");
      case Qt::ReplaceClip: return Set("clip", within);
      case Qt::IntersectClip: return Set("clip", set_["clip"] + " and " + within);
    }
  }
  /// Unless nobody sees it: the frame of the focus.
  void AddOutline(const std::string& line) {
    if (!set_["pen"].starts_with("#00") || set_["brush"] != "none") Add(line);
  }
  /// With what was set since the last operation and is not as it was.
  void Add(const std::string& line) {
    for (const auto& [name, value] : set_)
      if (std::exchange(used_[name], value) != value) text_ += name + " " + value + "\n";
    text_ += line + "\n";
  }
  void Set(const std::string& name, const std::string& value) { set_[name] = value; }
  std::string& text_;
  std::map<std::string, std::string> set_, used_;
};

std::string PaintedBy(QWidget& widget) {
  PaintRecord record(widget.size());
  widget.render(&record, {}, {}, QWidget::RenderFlags());
  return record.Text();
}

std::string PaintedBy(QSize size, const std::function<void(QPainter&)>& paint) {
  PaintRecord record(size);
  QPainter painter(&record);
  paint(painter);
  painter.end();
  return record.Text();
}

std::string PaintedBy(const Picture& picture) {
  return PaintedBy({picture.WholeWidth(), picture.WholeHeight()},
                   [&](QPainter& painter) { PaintPicture(painter, picture); });
}

void ExpectPainted(const std::string& path, const std::string& painted) {
  const QVersionNumber version = QLibraryInfo::version();
  if (version.majorVersion() != 6 || version.minorVersion() != 4)
    GTEST_SKIP() << path << ": kept for 6.4, not " << version.toString().toStdString();
  testing::ExpectKept(path, painted);
}

PaintRecord::PaintRecord(QSize size) : size_(size), engine_(std::make_unique<Engine>(text_)) {}

PaintRecord::~PaintRecord() = default;

QPaintEngine* PaintRecord::paintEngine() const { return engine_.get(); }

int PaintRecord::metric(PaintDeviceMetric metric) const {
  switch (metric) {
    case PdmWidth: return size_.width();
    case PdmHeight: return size_.height();
    case PdmDepth: return 32;
    case PdmNumColors: return 1 << 24;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY: return 96;
    case PdmDevicePixelRatio: return 1;
    case PdmDevicePixelRatioScaled: return static_cast<int>(devicePixelRatioFScale());
    default: return 0;
  }
}

std::string PlacesIn(const QWidget& window) {
  std::string places;
  for (const QWidget* child : window.findChildren<QWidget*>()) {
    const QPoint at = child->mapTo(&window, QPoint());
    // A dialog's own buttons, their order and their icons, are the desktop's.
    const bool ofDesktop = qobject_cast<const QDialogButtonBox*>(child) != nullptr ||
                           qobject_cast<const QDialogButtonBox*>(child->parentWidget()) != nullptr;
    if (child->isVisible() && !child->objectName().startsWith("qt_") && !ofDesktop)
      places += Format("%s %d %d %d %d %s\n", child->metaObject()->className(), at.x(), at.y(),
                       child->width(), child->height(), TextOn(*child).c_str());
  }
  return places;
}

std::string TextOn(const QWidget& widget) {
  std::string text;
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) text = label->text().toStdString();
  if (const auto* label = dynamic_cast<const ElidedLabel*>(&widget)) text = label->Text().toStdString();
  if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) text = edit->text().toStdString();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    text = Format("[%s%s] %s", button->text().toStdString().c_str(), button->isChecked() ? " *" : "",
                  button->toolTip().toStdString().c_str());
  if (const auto* bar = qobject_cast<const QScrollBar*>(&widget))
    text = Format("%d of %d by %d", bar->value(), bar->maximum(), bar->pageStep());
  if (!text.empty()) text += widget.isEnabled() ? "" : " (grey)";
  return text;
}

}  // namespace parlowen
