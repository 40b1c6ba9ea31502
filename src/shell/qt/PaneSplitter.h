#pragma once
#include <QSplitter>
#include <vector>

namespace parlowen {

/// The panes above each other. Until the user moves a boundary, their heights keep their parts of the whole, whatever
/// the window's size; none gets lower than its smallest height.
class PaneSplitter : public QSplitter {
  Q_OBJECT
 public:
  explicit PaneSplitter(QWidget* parent);
  void AddPane(QWidget* pane, int part);

  /// The heights as the user left them; empty while none were chosen.
  QByteArray ChosenHeights() const { return chosen_ ? saveState() : QByteArray(); }
  void RestoreHeights(const QByteArray& heights);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShareHeight();
  std::vector<int> parts_;
  bool chosen_ = false;
};

}  // namespace parlowen
