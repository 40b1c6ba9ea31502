#include "shell/qt/ElidedLabel.h"

namespace parlowen {

ElidedLabel::ElidedLabel(QWidget* parent, Qt::TextElideMode mode) : QLabel(parent), mode_(mode) {
  setTextFormat(Qt::PlainText);
}

void ElidedLabel::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleName(text);
  updateGeometry();
  Elide();
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text_) + 2 * margin() + 4, QLabel::sizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  Elide();
}

void ElidedLabel::Elide() {
  const QString shown = fontMetrics().elidedText(text_, mode_, contentsRect().width() - 2 * margin());
  setText(shown);
  setToolTip(shown == text_ ? QString() : text_);
}

}  // namespace parlowen
