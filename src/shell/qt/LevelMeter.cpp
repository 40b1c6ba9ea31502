#include "shell/qt/LevelMeter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr double kSpan = 60.0;  // dB that the bar shows
constexpr double kFullScale = 32768.0;
constexpr int kWarningBlocks = 20;  // one to five seconds
constexpr UiText kName = "录音电平";
constexpr UiText kClipping = "削波";
constexpr QRgb kBar = 0xFF2E7D32, kLoudBar = 0xFFB26A00, kClippedBar = 0xFFC00000;
constexpr double kLoud = -6.0;  // dB

double Decibels(int peak) { return peak > 0 ? 20 * std::log10(peak / kFullScale) : -kSpan; }

}  // namespace

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) { setAccessibleName(kName.Get()); }

void LevelMeter::SetLevels(const BlockLevels& levels) {
  levels_ = levels;
  clippingLeft_ = levels.clipped ? kWarningBlocks : std::max(0, clippingLeft_ - 1);
  setAccessibleDescription(ShowsClipping() ? QString(kClipping.Get())
                                           : QString("%1 dB").arg(Decibels(levels.peak), 0, 'f', 0));
  update();
}

void LevelMeter::Clear() {
  levels_ = {};
  clippingLeft_ = 0;
  update();
}

void LevelMeter::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString text =
      ShowsClipping() ? QString(kClipping.Get()) : QString("%1 dB").arg(Decibels(levels_.peak), 0, 'f', 0);
  const int textWidth = painter.fontMetrics().horizontalAdvance("−60 dB") + 8;
  const QRect bar(0, 2, std::max(1, width() - textWidth), height() - 4);
  painter.fillRect(bar, palette().color(QPalette::Base));
  const double level = Decibels(levels_.peak);
  const int length = static_cast<int>(bar.width() * std::clamp(1 + level / kSpan, 0.0, 1.0));
  painter.fillRect(QRect(bar.topLeft(), QSize(length, bar.height())), QColor(ShowsClipping() ? kClippedBar
                                                                             : level > kLoud ? kLoudBar
                                                                                             : kBar));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawRect(bar.adjusted(0, 0, -1, -1));
  if (ShowsClipping()) painter.setPen(QColor(kClippedBar));
  painter.drawText(rect().adjusted(bar.width(), 0, 0, 0), Qt::AlignRight | Qt::AlignVCenter, text);
}

}  // namespace parlowen
