#pragma once
#include <QLabel>

namespace parlowen {

/// One line of text that gives way: where something does not fit stands "…", and the tool tip shows the whole.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr, Qt::TextElideMode mode = Qt::ElideRight);
  void SetText(const QString& text);
  const QString& Text() const { return text_; }
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Elide();
  const Qt::TextElideMode mode_;
  QString text_;
};

}  // namespace parlowen
