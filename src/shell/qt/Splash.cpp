#include "shell/qt/Splash.h"

#include <QPainter>
#include <QPainterPath>
#include <QSplashScreen>
#include <QTimer>
#include <cmath>

#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kPurpose = "语音分析工作站";

constexpr int kWidth = 440, kHeight = 220;
constexpr int kShownMilliseconds = 1200;

/// A swelling vibration under the name: what the program is about.
QPainterPath Vibration() {
  QPainterPath path({0, 150});
  for (int x = 1; x < kWidth; ++x) {
    const double t = x / double(kWidth);
    const double swell =
        std::exp(-std::pow((t - 0.35) / 0.16, 2)) + 0.7 * std::exp(-std::pow((t - 0.75) / 0.10, 2));
    path.lineTo(x, 150 - 48 * swell * std::sin(x * 0.75) * (0.75 + 0.25 * std::sin(x * 0.11)));
  }
  return path;
}

}  // namespace

void PaintSplash(QPainter& painter) {
  painter.fillRect(0, 0, kWidth, kHeight, QColor(0xF7, 0xFA, 0xFF));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0x1F, 0x3F, 0x77), 1.2));
  painter.drawPath(Vibration());
  QFont font;
  font.setPixelSize(34);
  font.setBold(true);
  painter.setFont(font);
  painter.drawText(QRect(0, 22, kWidth, 44), Qt::AlignCenter, "Parlowen");
  font.setPixelSize(16);
  font.setBold(false);
  painter.setFont(font);
  painter.drawText(QRect(0, 66, kWidth, 26), Qt::AlignCenter, kPurpose.Get());
  painter.setPen(QColor(0x9D, 0xB8, 0xD9));
  painter.setBrush(Qt::NoBrush);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.drawRect(0, 0, kWidth - 1, kHeight - 1);
}

void ShowSplash(QWidget& window) {
  const double ratio = window.devicePixelRatioF();
  QPixmap pixmap(QSize(kWidth, kHeight) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::white);
  QPainter painter(&pixmap);
  PaintSplash(painter);
  painter.end();
  auto* splash = new QSplashScreen(pixmap, Qt::WindowStaysOnTopHint);
  splash->setAttribute(Qt::WA_DeleteOnClose);
  splash->show();
  QTimer::singleShot(kShownMilliseconds, splash, &QWidget::close);
}

}  // namespace parlowen
