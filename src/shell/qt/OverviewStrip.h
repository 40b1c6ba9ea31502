#pragma once
#include <QWidget>

#include "shell/Workstation.h"
#include "shell/qt/WheelSteps.h"

namespace parlowen {

class ActionGate;

/// The whole sound in a strip that scrolls the view: dragging moves it, a click centres it.
class OverviewStrip : public QWidget {
  Q_OBJECT
 public:
  OverviewStrip(Workstation& station, ActionGate& gate, QWidget* parent);
  QSize sizeHint() const override { return {1024, height()}; }
  QSize minimumSizeHint() const override { return {200, height()}; }
  void SetLow(bool low);  ///< leaves rows to the panes

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  int SampleAt(int x) const;
  void Centre(int sample);

  Workstation& station_;
  const MainView& view_;
  const SoundDocument& document_;
  ActionGate& gate_;
  bool pressed_ = false, dragged_ = false;
  int pressedX_ = 0;
  int heldOffset_ = 0;  ///< samples from the view's start to the place that was taken hold of
  WheelSteps wheel_;
};

}  // namespace parlowen
