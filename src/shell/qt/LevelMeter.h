#pragma once
#include <QWidget>

#include "audio/CaptureBlock.h"

namespace parlowen {

/// The level of the last block of a recording, in dB below full scale, and a warning that stays a while after
/// clipping.
class LevelMeter : public QWidget {
  Q_OBJECT
 public:
  explicit LevelMeter(QWidget* parent);

  /// Shows a new block.
  void SetLevels(const BlockLevels& levels);
  /// Forgets the warning: a new recording begins.
  void Clear();
  bool ShowsClipping() const { return clippingLeft_ > 0; }

 protected:
  QSize sizeHint() const override { return {220, 16}; }
  void paintEvent(QPaintEvent* event) override;

 private:
  BlockLevels levels_;
  int clippingLeft_ = 0;  ///< blocks for which the warning still stands
};

}  // namespace parlowen
