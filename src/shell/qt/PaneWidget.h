#pragma once
#include <QPixmap>
#include <QWidget>
#include <optional>

#include "shell/Workstation.h"
#include "shell/qt/WheelSteps.h"
#include "ui/Figure.h"
#include "ui/Text.h"

class QRubberBand;

namespace parlowen {

class ActionGate;

/// What a pane is called in menus and by screen readers: "基频窗".
UiText PaneName(Pane pane);

/// One pane of the main window: a gutter with the tick labels, right of it the pane itself, whose coordinates
/// begin there; above it the caption and below it the axis of a picture that has its own. Mouse and wheel go to the
/// view; the base is kept as a pixmap until it is invalidated. The chart over the lower panes is one too; its rows
/// begin with the first that is not empty.
class PaneWidget : public QWidget {
  Q_OBJECT
 public:
  static constexpr int kGutter = kFigureGutter;  ///< logical pixels left of the pane's column 0
  static constexpr int kSmallestHeight = 100;
  static constexpr int kSmallestLabels = 75;  ///< five rows of texts

  PaneWidget(Pane pane, Workstation& station, ActionGate& gate, QWidget* parent);

  Pane pane() const { return pane_; }
  QSize sizeHint() const override;
  /// Where the pane itself lies in the widget.
  QRect DataArea() const;
  QSize PaneSize() const { return DataArea().size(); }
  /// The rows of the pane above the first that is seen.
  int Top() const;
  int RowsToBottom() const { return Top() + DataArea().height(); }
  /// The data behind the pane changed.
  void Invalidate();
  /// The column of the thin line that follows the pointer; none hides it.
  void ShowHover(std::optional<int> column);
  /// The view's cursor may have moved.
  void FollowCursor();
  /// The figure of what stands on the screen.
  Picture Shown() const;

 Q_SIGNALS:
  void Hovered(parlowen::PaneWidget* pane, QPoint at);
  void HoverLeft();
  void Resized();
  void MenuAsked(parlowen::PaneWidget* pane, QPoint global);
  void FocusMoved();

 protected:
  QSize minimumSizeHint() const override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum class Drag {
    None,
    Pressed,
    Stretch,
    StartEdge,
    EndEdge,
    Region,
    RepairPressed,
    RepairFrames,
    MarkerPressed,
    Marker
  };

  bool RepairsPitch() const;
  /// Hands a key to the label pane, whichever pane it came from; true when it was used.
  bool UseInLabels(const std::string& key);
  Point PointAt(QPoint widgetPosition) const;
  Drag EdgeAt(int x) const;
  void DragTo(Point at);
  void RenderBase();
  void PaintGutter(QPainter& painter) const;
  void PaintCaption(QPainter& painter) const;
  void PaintOwnAxis(QPainter& painter) const;
  void TakeAnalysisHeight();
  void UpdateAccessibleName();

  const Pane pane_;
  Workstation& station_;  ///< what the mouse does goes to it, what is seen comes from the two below
  const MainView& view_;
  const SoundDocument& document_;
  ActionGate& gate_;
  QPixmap base_;
  bool baseValid_ = false;
  std::optional<int> hoverColumn_, cursorColumn_;
  Drag drag_ = Drag::None;
  Drag pressedOn_ = Drag::None;  ///< the edge under the press, if any
  Point pressedAt_;
  QRubberBand* band_ = nullptr;
  WheelSteps wheelScroll_, wheelZoom_;
};

}  // namespace parlowen
