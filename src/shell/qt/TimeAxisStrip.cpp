#include "shell/qt/TimeAxisStrip.h"

#include <QPainter>

#include "shell/qt/PaneWidget.h"
#include "shell/qt/PicturePainter.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kName = "时间轴（秒）";

}  // namespace

TimeAxisStrip::TimeAxisStrip(const MainView& view, QWidget* parent) : QWidget(parent), view_(view) {
  setFixedHeight(kFigureAxisRows);
  setAccessibleName(kName.Get());
}

void TimeAxisStrip::paintEvent(QPaintEvent*) {
  constexpr int kLeft = PaneWidget::kGutter;
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  QFont small = font();
  small.setPixelSize(11);
  painter.setFont(small);
  painter.drawText(QRect(0, 0, kLeft - 6, height()), Qt::AlignRight | Qt::AlignVCenter,
                   messages::kSeconds.Get());
  painter.translate(kLeft, 0);
  painter.fillRect(0, 0, width() - kLeft, height(), Qt::white);
  FigureAxis axis = view_.Axis(Pane::Waveform, width() - kLeft, FigureStyle{}.text);
  axis.unit.clear();  // it stands in the gutter
  PaintPicture(painter, AxisPicture(axis, width() - kLeft, height(), FigureStyle{}.Plot()));
}

}  // namespace parlowen
