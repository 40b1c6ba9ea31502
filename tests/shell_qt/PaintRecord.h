// What a widget paints, as text: a line an operation with what changed of pen, brush, font, clip and place before it.
#pragma once
#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>
#include <memory>
#include <string>

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

/// Kind, place and size of the widgets inside that can be seen, and what stands on them, a line each in the order they
/// were made.
std::string PlacesIn(const QWidget& window);
/// What stands on a label, in a line, on a button or a scroll bar, and whether it can be used.
std::string TextOn(const QWidget& widget);

}  // namespace parlowen
