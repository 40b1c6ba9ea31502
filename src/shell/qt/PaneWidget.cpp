#include "shell/qt/PaneWidget.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QToolTip>
#include <algorithm>
#include <cstdlib>

#include "base/Format.h"
#include "shell/qt/ActionGate.h"
#include "shell/qt/GraphicRole.h"
#include "shell/qt/KeyNames.h"
#include "shell/qt/PicturePainter.h"
#include "ui/Messages.h"
#include "ui/Text.h"
#include "vowel/ChartPicture.h"

namespace parlowen {
namespace {

constexpr UiText kSelected = "，选定 %.2f–%.2f 秒";

constexpr int kEdgeReach = 4;  // pixels on either side of an edge that take hold of it
constexpr QRgb kHoverLine = 0xFF707070;
constexpr int kSmallestChart = 330;  // no more than the panes it stands over

constexpr UiText kAmplitudeName = "幅度能量窗", kPitchName = "基频窗", kAnalysisName = "分析窗";
constexpr UiText kWaveformName = "波形窗", kChartName = "元音图窗", kLabelsName = "标注窗";

int ProposedHeight(Pane pane) {
  switch (pane) {
    case Pane::Amplitude: return 110;
    case Pane::Analysis: return 330;
    case Pane::Labels: return 120;
    case Pane::Chart: return 500;
    default: return 165;
  }
}

}  // namespace

UiText PaneName(Pane pane) {
  switch (pane) {
    case Pane::Amplitude: return kAmplitudeName;
    case Pane::Pitch: return kPitchName;
    case Pane::Analysis: return kAnalysisName;
    case Pane::Chart: return kChartName;
    case Pane::Labels: return kLabelsName;
    default: return kWaveformName;
  }
}

PaneWidget::PaneWidget(Pane pane, Workstation& station, ActionGate& gate, QWidget* parent)
    : QWidget(parent),
      pane_(pane),
      station_(station),
      view_(station.view),
      document_(station.document),
      gate_(gate) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled, false);  // letters are keys here, also while an input method is on
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setCursor(pane == Pane::Chart ? Qt::ArrowCursor : Qt::CrossCursor);
  MakeGraphic(*this);
  UpdateAccessibleName();
}

int PaneWidget::Top() const { return pane_ == Pane::Chart ? kChartTop : 0; }

QSize PaneWidget::sizeHint() const { return {kGutter + 1024, ProposedHeight(pane_)}; }

QSize PaneWidget::minimumSizeHint() const {
  return {kGutter + 200, pane_ == Pane::Chart    ? kSmallestChart
                         : pane_ == Pane::Labels ? kSmallestLabels
                                                 : kSmallestHeight};
}

QRect PaneWidget::DataArea() const {
  const int top = view_.Caption(pane_).empty() ? 0 : kCaptionRows;
  const int bottom = view_.HasOwnAxis(pane_) ? kFigureAxisRows : 0;
  return {kGutter, top, width() - kGutter, std::max(1, height() - top - bottom)};
}

/// A picture that comes or goes changes what is left to the data.
void PaneWidget::TakeAnalysisHeight() {
  if (pane_ == Pane::Analysis && view_.analysisHeight != DataArea().height())
    station_.SetAnalysisHeight(DataArea().height());
}

void PaneWidget::Invalidate() {
  baseValid_ = false;
  TakeAnalysisHeight();
  UpdateAccessibleName();
  update();
}

void PaneWidget::UpdateAccessibleName() {
  std::string name = PaneName(pane_);
  if (document_.selectionDefined() && document_.sampleRate > 0) {
    const double rate = document_.sampleRate;
    name += Format(kSelected.Get(), document_.selectionStart / rate, document_.selectionEnd / rate);
  }
  const QString text = QString::fromStdString(name);
  if (text != accessibleName()) setAccessibleName(text);
}

void PaneWidget::ShowHover(std::optional<int> column) {
  if (column == hoverColumn_) return;
  for (const auto& stale : {hoverColumn_, column})
    if (stale) update(kGutter + *stale - 1, 0, 3, height());
  hoverColumn_ = column;
}

Picture PaneWidget::Shown() const {
  const int width = PaneSize().width();
  Picture whole = view_.Whole(pane_, width, RowsToBottom());
  if (Top() == 0) return whole;
  Picture shown{width, PaneSize().height(), {}};
  shown.AddAt(whole, 0, -Top());
  return shown;
}

void PaneWidget::FollowCursor() {
  std::optional<int> column;
  if (view_.cursor) column = view_.ColumnOf(pane_, *view_.cursor);
  if (column == cursorColumn_) return;
  for (const auto& stale : {cursorColumn_, column})
    if (stale) update(kGutter + *stale - 1, 0, 3, height());
  cursorColumn_ = column;
}

// --- Painting

void PaneWidget::RenderBase() {
  const QSize size = PaneSize();
  const double ratio = devicePixelRatioF();
  base_ = QPixmap(size * ratio);
  base_.setDevicePixelRatio(ratio);
  base_.fill(Qt::white);
  QPainter painter(&base_);
  painter.translate(0, -Top());
  PaintPicture(painter, view_.Base(pane_, size.width(), RowsToBottom()));
  baseValid_ = true;
}

void PaneWidget::PaintGutter(QPainter& painter) const {
  painter.fillRect(0, 0, kGutter, height(), palette().window());
  QFont font = painter.font();
  font.setPixelSize(FigureStyle{}.text);
  painter.setFont(font);
  const QColor ink = palette().color(QPalette::WindowText);
  painter.setPen(ink);
  const QRect area = DataArea();
  const std::vector<Tick> ticks = view_.Ticks(pane_, area.height());
  const auto baselines = GutterBaselines(ticks, area.height(), FigureStyle{}.text);
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    painter.fillRect(kGutter - 4, area.top() + ticks[i].at, 4, 1, ink);
    if (!baselines[i]) continue;
    const QString label = QString::fromStdString(ticks[i].label);
    painter.drawText(
        QPoint(kGutter - 7 - painter.fontMetrics().horizontalAdvance(label), area.top() + *baselines[i]),
        label);
  }
}

void PaneWidget::PaintCaption(QPainter& painter) const {
  const std::vector<std::string> pieces = view_.Caption(pane_);
  if (pieces.empty()) return;
  const QRect line(kGutter, 0, width() - kGutter, kCaptionRows);
  painter.fillRect(line, Qt::white);
  painter.save();
  painter.translate(line.topLeft());
  PaintPicture(painter, CaptionPicture(pieces, line.width(), line.height(), PlotStyle{}.name));
  painter.restore();
}

void PaneWidget::PaintOwnAxis(QPainter& painter) const {
  if (!view_.HasOwnAxis(pane_)) return;
  const QRect area = DataArea();
  const QRect line(kGutter, area.bottom() + 1, area.width(), height() - area.bottom() - 1);
  painter.fillRect(line, Qt::white);
  FigureAxis axis = view_.Axis(pane_, line.width(), FigureStyle{}.text);
  if (!axis.unit.empty()) {  // behind the axis there is no room for it
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, line.top(), kGutter - 7, line.height()), Qt::AlignRight | Qt::AlignVCenter,
                     messages::kSeconds.Get());
    axis.unit.clear();
  }
  painter.save();
  painter.translate(line.topLeft());
  PaintPicture(painter, AxisPicture(axis, line.width(), line.height(), FigureStyle{}.Plot()));
  painter.restore();
}

void PaneWidget::paintEvent(QPaintEvent* event) {
  if (PaneSize().width() <= 0) return;
  if (!baseValid_ || base_.devicePixelRatio() != devicePixelRatioF()) RenderBase();
  QPainter painter(this);
  if (event->rect().left() < kGutter) PaintGutter(painter);
  PaintCaption(painter);
  PaintOwnAxis(painter);
  const QRect area = DataArea();
  painter.save();
  painter.translate(area.topLeft());
  painter.drawPixmap(0, 0, base_);
  PaintPicture(painter, view_.Overlay(pane_, area.width(), area.height()));
  if (hoverColumn_ && *hoverColumn_ >= 0)
    painter.fillRect(*hoverColumn_, 0, 1, area.height(), QColor(kHoverLine));
  painter.restore();
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
  painter.drawRect(QRect(0, 0, width() - 1, height() - 1));
}

void PaneWidget::resizeEvent(QResizeEvent*) {
  baseValid_ = false;
  TakeAnalysisHeight();
  if (pane_ == Pane::Labels) station_.SetLabelsHeight(height());
  Q_EMIT Resized();
}

void PaneWidget::focusInEvent(QFocusEvent*) {
  update();
  Q_EMIT FocusMoved();
}

void PaneWidget::focusOutEvent(QFocusEvent*) {
  update();
  Q_EMIT FocusMoved();
}

// --- Mouse

Point PaneWidget::PointAt(QPoint position) const {
  const QRect area = DataArea();
  return {std::clamp(position.x() - area.left(), 0, std::max(0, area.width() - 1)),
          Top() + std::clamp(position.y() - area.top(), 0, std::max(0, area.height() - 1))};
}

bool PaneWidget::RepairsPitch() const {
  return pane_ == Pane::Analysis && document_.activity == Activity::PitchRepair;
}

PaneWidget::Drag PaneWidget::EdgeAt(int x) const {
  if (!document_.selectionDefined() || document_.activity > Activity::Waveform) return Drag::None;
  if (pane_ == Pane::Labels) return Drag::None;  // what stands there is dragged
  const int toStart = std::abs(x - view_.ColumnOf(pane_, document_.selectionStart));
  const int toEnd = std::abs(x - view_.ColumnOf(pane_, document_.selectionEnd));
  if (std::min(toStart, toEnd) > kEdgeReach) return Drag::None;
  return toStart < toEnd ? Drag::StartEdge : Drag::EndEdge;
}

void PaneWidget::mousePressEvent(QMouseEvent* event) {
  if (gate_.Depth() != 0) return;
  const Point at = PointAt(event->pos());
  const bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
  const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
  if (event->button() == Qt::RightButton && !control && RepairsPitch()) {
    pressedAt_ = at;
    drag_ = Drag::RepairPressed;  // until the button comes up it may become a drag over frames
    return;
  }
  if (event->button() == Qt::RightButton && !control) {
    gate_.Run([&] { station_.Click(pane_, at, MouseButton::Right, shift); });
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  pressedAt_ = at;
  if (document_.activity == Activity::RegionDrag) {
    gate_.Run([&] { station_.Click(pane_, at, MouseButton::Left, false); });
    drag_ = Drag::Region;
    if (band_ == nullptr) band_ = new QRubberBand(QRubberBand::Rectangle, this);
    band_->setGeometry(QRect(event->pos(), QSize(1, 1)));
    band_->show();
  } else if (pane_ == Pane::Labels) {
    drag_ = view_.LabelMarker(at) ? Drag::MarkerPressed : Drag::Pressed;
    pressedOn_ = Drag::None;
    gate_.Run([&] { station_.Click(pane_, at, MouseButton::Left, shift); });
  } else if (document_.activity <= Activity::Waveform && !shift) {
    // A click takes effect when the button comes up, for until then it may become a drag.
    drag_ = Drag::Pressed;
    pressedOn_ = EdgeAt(at.x);
  } else {
    gate_.Run([&] { station_.Click(pane_, at, MouseButton::Left, shift); });
  }
}

void PaneWidget::DragTo(Point at) {
  if (drag_ == Drag::RepairFrames) {
    gate_.Run([&] { station_.MarkRepairFrames(pressedAt_.x, at.x); });
  } else if (drag_ == Drag::Stretch) {
    gate_.Run([&] { station_.MarkStretch(pane_, pressedAt_.x, at.x); });
  } else if (drag_ == Drag::StartEdge) {
    const int x = std::min(at.x, view_.ColumnOf(pane_, document_.selectionEnd) - 1);
    gate_.Run([&] { station_.Click(pane_, {x, at.y}, MouseButton::Left, false); });
  } else if (drag_ == Drag::EndEdge) {
    const int x = std::max(at.x, view_.ColumnOf(pane_, document_.selectionStart) + 1);
    gate_.Run([&] { station_.Click(pane_, {x, at.y}, MouseButton::Right, false); });
  } else if (drag_ == Drag::Marker) {
    const bool snaps = (QApplication::keyboardModifiers() & Qt::ShiftModifier) != 0;
    gate_.Run([&] { station_.Click(pane_, at, MouseButton::Right, snaps); });
  }
}

void PaneWidget::mouseMoveEvent(QMouseEvent* event) {
  const Point at = PointAt(event->pos());
  Q_EMIT Hovered(this, {at.x, at.y});
  if (RepairsPitch() && gate_.Depth() == 0) {
    station_.PointAtRepair(at);
    update();  // the comb follows
  }
  if (drag_ == Drag::None && pane_ == Pane::Chart) return;
  if (drag_ == Drag::None) {
    const bool takesHold =
        pane_ == Pane::Labels ? view_.LabelMarker(at).has_value() : EdgeAt(at.x) != Drag::None;
    setCursor(event->buttons() == Qt::NoButton && takesHold ? Qt::SplitHCursor : Qt::CrossCursor);
    return;
  }
  if (drag_ == Drag::Region) {
    const QPoint corner = DataArea().topLeft() - QPoint(0, Top());
    band_->setGeometry(
        QRect(corner + QPoint(pressedAt_.x, pressedAt_.y), corner + QPoint(at.x, at.y)).normalized());
    return;
  }
  const bool far = std::abs(at.x - pressedAt_.x) > QApplication::startDragDistance();
  if (drag_ == Drag::RepairPressed && far) drag_ = Drag::RepairFrames;
  if (drag_ == Drag::MarkerPressed && far) drag_ = Drag::Marker;
  if (drag_ == Drag::Pressed && far) drag_ = pressedOn_ == Drag::None ? Drag::Stretch : pressedOn_;
  DragTo(at);
}

void PaneWidget::mouseReleaseEvent(QMouseEvent* event) {
  const bool repair = drag_ == Drag::RepairPressed || drag_ == Drag::RepairFrames;
  if (event->button() != (repair ? Qt::RightButton : Qt::LeftButton) || drag_ == Drag::None) return;
  const Point at = PointAt(event->pos());
  if (drag_ == Drag::RepairPressed) {
    drag_ = Drag::None;
    gate_.Run([&] { station_.Click(pane_, pressedAt_, MouseButton::Right, false); });
    return;
  }
  if (drag_ == Drag::Pressed && pane_ == Pane::Labels) {
    // The press has acted already.
  } else if (drag_ == Drag::Pressed) {
    gate_.Run([&] { station_.Click(pane_, pressedAt_, MouseButton::Left, false); });
  } else if (drag_ == Drag::Region) {
    band_->hide();
    if (document_.activity == Activity::RegionDrag)  // else Escape has ended it
      gate_.Run([&] { station_.Click(pane_, at, MouseButton::Left, false); });
  } else {
    DragTo(at);
  }
  drag_ = Drag::None;
}

void PaneWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (pane_ != Pane::Labels || event->button() != Qt::LeftButton) return mousePressEvent(event);
  drag_ = Drag::None;
  gate_.Run([&] { station_.EditLabel(PointAt(event->pos())); });
}

void PaneWidget::leaveEvent(QEvent*) { Q_EMIT HoverLeft(); }

void PaneWidget::wheelEvent(QWheelEvent* event) {
  event->accept();
  const bool zoom = (event->modifiers() & Qt::ControlModifier) != 0;
  const int notches = (zoom ? wheelZoom_ : wheelScroll_).Take(*event);
  if (notches == 0) return;
  const Point at = PointAt(event->position().toPoint());
  gate_.Run([&] {
    if (!zoom) return station_.ScrollTenths(-notches);
    station_.ZoomAt(pane_, at.x, notches < 0, std::abs(notches));
  });
}

bool PaneWidget::UseInLabels(const std::string& key) {
  bool used = false;
  gate_.Run([&] { used = station_.KeyInLabels(key); });
  return used;
}

bool PaneWidget::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && pane_ == Pane::Labels) {
    auto* help = static_cast<QHelpEvent*>(event);
    const QString tip = QString::fromStdString(view_.LabelTipAt(PointAt(help->pos())));
    // Plain: a label may look like markup.
    QToolTip::showText(help->globalPos(),
                       tip.isEmpty() ? tip : "<p>" + tip.toHtmlEscaped().replace('\n', "<br>"), this);
    return true;
  }
  // The step worked last is taken back first, before the sound's edit.
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo) && station_.markers.paneShown &&
      view_.CanUndoLabelStep()) {
    event->accept();
    return true;
  }
  return QWidget::event(event);
}

bool PaneWidget::focusNextPrevChild(bool next) {
  return (pane_ == Pane::Labels && next && UseInLabels("Tab")) || QWidget::focusNextPrevChild(next);
}

void PaneWidget::keyPressEvent(QKeyEvent* event) {
  if (station_.markers.paneShown) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool remove = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (enter && UseInLabels("Enter")) return;
    if (event->matches(QKeySequence::Undo) && UseInLabels("Z")) return;
    const std::string name = remove ? "Delete" : KeyName(*event);
    if (pane_ == Pane::Labels && !name.empty() && UseInLabels(name)) return;
  }
  if (event->key() == Qt::Key_F10 && (event->modifiers() & Qt::ShiftModifier) != 0) {
    Q_EMIT MenuAsked(this, mapToGlobal(rect().center()));
    return;
  }
  event->ignore();
}

void PaneWidget::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  const bool mouse = event->reason() == QContextMenuEvent::Mouse;
  if (mouse && (event->modifiers() & Qt::ControlModifier) == 0) return;  // right clicks mark
  Q_EMIT MenuAsked(this, mouse ? event->globalPos() : mapToGlobal(rect().center()));
}

}  // namespace parlowen
