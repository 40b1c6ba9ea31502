// What a widget paints, as text: a line an operation with what changed of pen, brush, font, clip, place, opacity and
// smoothness before it.
#pragma once
#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "ui/Picture.h"

namespace parlowen {

/// A device without pixels, at 96 dots an inch, so that what is recorded depends on no rasteriser.
class PaintRecord : public QPaintDevice {
 public:
  explicit PaintRecord(QSize size);
  ~PaintRecord() override;
  QPaintEngine* paintEngine() const override;
  const std::string& Text() const { return text_; }

 protected:
  int metric(PaintDeviceMetric metric) const override;

 private:
  class Engine;
  QSize size_;
  std::string text_;
  std::unique_ptr<Engine> engine_;
};

/// What a widget and those inside it paint.
std::string PaintedBy(QWidget& widget);
std::string PaintedBy(QSize size, const std::function<void(QPainter&)>& paint);
/// What a picture paints on a device of its own.
std::string PaintedBy(const Picture& picture);
/// Compares what was painted, or where it lies, with what is kept in a file. Another version of the toolkit (not 6.4)
/// paints and lays out another way: the test goes on, and counts as skipped if nothing else is wrong.
void ExpectPainted(const std::string& path, const std::string& painted);

/// Kind, place and size of the widgets inside that can be seen, and what stands on them, a line each in the order of
/// the tree, a widget before those inside it.
std::string PlacesIn(const QWidget& window);
/// What stands on a label, in a line, on a button or a scroll bar, and whether it can be used.
std::string TextOn(const QWidget& widget);

}  // namespace parlowen
