#include "shell/qt/OverviewStrip.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <cstdlib>

#include "shell/qt/ActionGate.h"
#include "shell/qt/PaneWidget.h"
#include "shell/qt/PicturePainter.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kName = "全貌";
constexpr UiText kHelp = "整个声音：拖动移动画面，单击居中";
constexpr UiText kAll = "全部";

constexpr int kLeft = PaneWidget::kGutter;

}  // namespace

OverviewStrip::OverviewStrip(Workstation& station, ActionGate& gate, QWidget* parent)
    : QWidget(parent), station_(station), view_(station.view), document_(station.document), gate_(gate) {
  SetLow(false);
  setAccessibleName(kName.Get());
  setToolTip(kHelp.Get());
}

void OverviewStrip::SetLow(bool low) { setFixedHeight(low ? 24 : 44); }

int OverviewStrip::SampleAt(int x) const { return view_.OverviewSampleAt(x - kLeft, width() - kLeft); }

void OverviewStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  QFont small = font();
  small.setPixelSize(11);
  painter.setFont(small);
  painter.drawText(QRect(0, 0, kLeft - 6, height()), Qt::AlignRight | Qt::AlignVCenter, kAll.Get());
  painter.translate(kLeft, 0);
  painter.fillRect(0, 0, width() - kLeft, height(), Qt::white);
  PaintPicture(painter, view_.Overview(width() - kLeft, height()));
}

void OverviewStrip::Centre(int sample) {
  gate_.Run([&] { station_.ScrollTo(std::int64_t{sample} - document_.FullViewLength() / 2); });
}

void OverviewStrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || document_.sampleCount == 0) return;
  pressed_ = true;
  dragged_ = false;
  pressedX_ = event->pos().x();
  const int sample = SampleAt(pressedX_);
  if (sample < document_.viewStart || sample > document_.viewStart + document_.viewLength) Centre(sample);
  heldOffset_ = sample - document_.viewStart;
}

void OverviewStrip::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_) return;
  const int x = event->pos().x();
  dragged_ = dragged_ || std::abs(x - pressedX_) > QApplication::startDragDistance();
  if (dragged_) gate_.Run([&] { station_.ScrollTo(std::int64_t{SampleAt(x)} - heldOffset_); });
}

void OverviewStrip::mouseReleaseEvent(QMouseEvent* event) {
  if (pressed_ && !dragged_) Centre(SampleAt(event->pos().x()));
  pressed_ = false;
}

void OverviewStrip::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int notches = wheel_.Take(*event);
  if (notches != 0) gate_.Run([&] { station_.ScrollTenths(-notches); });
}

}  // namespace parlowen
