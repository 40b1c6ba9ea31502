#pragma once
#include <QLabel>

namespace parlowen {

/// One line of text that gives way: what does not fit ends in "…" and is shown whole in the tool tip.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  void SetText(const QString& text);
  const QString& Text() const { return text_; }
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Elide();
  QString text_;
};

}  // namespace parlowen
