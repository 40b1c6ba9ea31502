// What a widget paints, as text: a line an operation with what changed of pen, brush, font, clip and place before it.
#pragma once
#include <QPaintDevice>
#include <QPaintEngine>
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

}  // namespace parlowen
