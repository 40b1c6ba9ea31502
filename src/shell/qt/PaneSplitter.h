#pragma once
#include <QSplitter>
#include <vector>

namespace parlowen {

/// The panes above each other. Until the user moves a boundary, their heights keep their parts of the whole,
/// whatever the window's size; none gets lower than its smallest height.
class PaneSplitter : public QSplitter {
  Q_OBJECT
 public:
  explicit PaneSplitter(QWidget* parent);
  void AddPane(QWidget* pane, int part);
  /// A drawing that can stand in the place of all panes but the first; to be added behind the panes, hidden
  /// at first.
  void AddChart(QWidget* chart);
  /// A pane that is hidden at first and takes its height from pane number `giver`; to be added behind the panes.
  void AddLabels(QWidget* labels, int giver);
  void ShowLabels(bool shown);
  /// Shows the chart or the panes. The chart gets its proposed height before the first pane keeps more than
  /// its smallest; the panes come back as they were.
  void ShowChart(bool shown);

  /// The heights as the user left them; empty while none were chosen.
  QByteArray ChosenHeights() const;
  void RestoreHeights(const QByteArray& heights);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShareHeight();
  /// Of the labels, beside a pane of that height that gives it.
  int LabelsHeight(int given) const;
  /// Gives the labels a height, or takes it back.
  void MoveHeight(QList<int> heights);
  std::vector<int> parts_;
  QWidget* chart_ = nullptr;
  QWidget* labels_ = nullptr;
  int giver_ = 0;
  bool chartShown_ = false, labelsShown_ = false;
  QByteArray paneHeights_;  ///< while the chart is shown
  bool chosen_ = false;
};

}  // namespace parlowen
