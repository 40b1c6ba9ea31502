#pragma once
#include <QWidget>

#include "shell/MainView.h"

namespace parlowen {

/// The axis in seconds under the panes.
class TimeAxisStrip : public QWidget {
  Q_OBJECT
 public:
  TimeAxisStrip(const MainView& view, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const MainView& view_;
};

}  // namespace parlowen
