#include "shell/qt/ToolWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "shell/qt/ActionGate.h"
#include "shell/qt/GraphicRole.h"
#include "shell/qt/KeyNames.h"
#include "shell/qt/PictureExport.h"
#include "shell/qt/PicturePainter.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kCopyData = "复制数据(&T)\tCtrl+Shift+C";

}  // namespace

/// The drawing area of a tool window.
class ToolCanvas : public QWidget {
 public:
  explicit ToolCanvas(ToolWidget& owner) : QWidget(&owner), owner_(owner) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setAttribute(Qt::WA_OpaquePaintEvent);
    MakeGraphic(*this);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }
  QSize sizeHint() const override { return preferred_; }
  /// No smaller than all of the drawing at the least scale, or, where it does not scale, the same share of it.
  void Prefer(Point size) {
    preferred_ = {size.x, size.y};
    setMinimumSize((QSizeF(preferred_) * kLeastScale).toSize().expandedTo({320, 200}));
  }
  /// Pixels of the widget a pixel of the drawing, which fills it in one direction at least.
  double Scale() const {
    if (owner_.tool_ == nullptr || !owner_.tool_->ScalesWithWindow()) return 1;
    const double across = width() / std::max(1.0, double(preferred_.width()));
    const double down = height() / std::max(1.0, double(preferred_.height()));
    constexpr double kMostScale = 4;
    return std::clamp(std::min(across, down), kLeastScale, kMostScale);
  }
  /// Pixels of the drawing.
  Point DrawnSize() const {
    return {static_cast<int>(std::lround(width() / Scale())),
            static_cast<int>(std::lround(height() / Scale()))};
  }

 protected:
  void resizeEvent(QResizeEvent*) override {
    const Point size = DrawnSize();
    if (owner_.tool_ != nullptr) owner_.tool_->Resized(size.x, size.y);
    owner_.Renew();
  }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (owner_.tool_ != nullptr) {
      const Point size = DrawnSize();
      painter.save();
      painter.scale(Scale(), Scale());
      PaintPicture(painter, owner_.tool_->Draw(size.x, size.y));
      painter.restore();
    }
    if (!hasFocus()) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
  void mousePressEvent(QMouseEvent* event) override {
    const bool menuClick =
        event->button() == Qt::RightButton && (event->modifiers() & Qt::ControlModifier) != 0;
    if (menuClick || (event->button() != Qt::LeftButton && event->button() != Qt::RightButton)) return;
    const Point at = DrawnAt(event->pos());
    const MouseButton button = event->button() == Qt::LeftButton ? MouseButton::Left : MouseButton::Right;
    const bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
    pressed_ = button == MouseButton::Left;
    dragged_ = false;
    pressedAt_ = event->pos();
    owner_.Act([&](ToolWindow& tool) { tool.Click(owner_.window_, at, button, shift); });
  }
  void mouseReleaseEvent(QMouseEvent*) override { pressed_ = false; }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (owner_.tool_ == nullptr) return;
    if ((event->buttons() & Qt::LeftButton) != 0 && pressed_) {
      dragged_ =
          dragged_ || (event->pos() - pressedAt_).manhattanLength() > QApplication::startDragDistance();
      const Point at = DrawnAt(event->pos());
      if (dragged_) owner_.Act([&](ToolWindow& tool) { tool.Drag(owner_.window_, at); });
      if (owner_.tool_ == nullptr) return;
    }
    owner_.readout_->setText(QString::fromStdString(owner_.tool_->Hover(DrawnAt(event->pos()))));
  }
  void contextMenuEvent(QContextMenuEvent* event) override {
    // Right clicks belong to the tool.
    const bool asked =
        event->reason() != QContextMenuEvent::Mouse || (event->modifiers() & Qt::ControlModifier) != 0;
    if (asked) owner_.ShowMenu(event->globalPos());
  }

 private:
  Point DrawnAt(QPoint at) const {
    return {static_cast<int>(std::floor(at.x() / Scale())), static_cast<int>(std::floor(at.y() / Scale()))};
  }

  static constexpr double kLeastScale = 0.6;  // letters of 12 pixels can just be read

  ToolWidget& owner_;
  QSize preferred_{900, 520};
  bool pressed_ = false, dragged_ = false;
  QPoint pressedAt_;
};

template <typename F>
bool ToolWidget::Act(F&& action) {
  bool closes = false;
  const bool ran = gate_.Run(
      [&] {
        if (tool_ == nullptr) return;
        action(*tool_);
        closes = tool_ != nullptr && tool_->WantsToClose();
      },
      level_);
  Renew();
  if (closes) CloseNow();
  return ran;
}

ToolWidget::ToolWidget(ToolWindow& tool, Window& window, ActionGate& gate, int level, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      tool_(&tool),
      window_(window),
      gate_(gate),
      level_(level),
      canvas_(new ToolCanvas(*this)),
      scrollBar_(new QScrollBar(Qt::Horizontal)),
      readout_(new QLabel),
      buttonColumn_(new QVBoxLayout) {
  readout_->setTextFormat(Qt::PlainText);
  readout_->setMinimumHeight(readout_->fontMetrics().height());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 4);
  layout->setSpacing(4);
  auto* row = new QHBoxLayout;
  auto* drawing = new QVBoxLayout;
  drawing->addWidget(canvas_, 1);
  drawing->addWidget(scrollBar_);
  row->addLayout(drawing, 1);
  row->addLayout(buttonColumn_);
  canvas_->Prefer(tool.PreferredSize());
  layout->addLayout(row, 1);
  layout->addWidget(readout_);
  if (const std::string instructions = tool.Instructions(); !instructions.empty()) {
    auto* label = new QLabel(QString::fromStdString(instructions));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumHeight(label->heightForWidth(canvas_->minimumWidth()));
    layout->addWidget(label);
  }
  connect(scrollBar_, &QScrollBar::valueChanged, this,
          [this](int value) { Act([&](ToolWindow& shown) { shown.ScrollTo(window_, value); }); });
  tick_.setSingleShot(true);
  connect(&tick_, &QTimer::timeout, this, [this] { Act([&](ToolWindow& shown) { shown.Tick(window_); }); });
  Renew();
  canvas_->setFocus();
  // Left alone, a dialog begins with two thirds of the screen at most, too little for its drawing on a small
  // one.
  resize(sizeHint().boundedTo(screen()->availableSize() - QSize(20, 60)));
}

void ToolWidget::UpdatePlay() const {
  if (tool_ != nullptr && tool_->ShowsPlay()) canvas_->update();
}

QWidget* ToolWidget::Canvas() const { return canvas_; }

void ToolWidget::Prefer(Point size) { canvas_->Prefer(size); }

Picture ToolWidget::Shown() const {
  const Point size = canvas_->DrawnSize();
  return tool_ != nullptr ? tool_->Draw(size.x, size.y) : Picture{1, 1, {}};
}

void ToolWidget::Renew() {
  if (tool_ == nullptr) return;
  setWindowTitle(QString::fromStdString(tool_->Title()));
  const std::vector<ToolControl> controls = tool_->Controls();
  const bool same = std::equal(
      controls.begin(), controls.end(), controls_.begin(), controls_.end(),
      [](const ToolControl& a, const ToolControl& b) { return a.number == b.number && a.text == b.text; });
  controls_ = controls;
  if (!same) MakeButtons(controls);
  for (std::size_t i = 0; i < controls.size(); ++i) {
    buttons_[i]->setEnabled(controls[i].enabled);
    if (!controls[i].chosen) buttons_[i]->setChecked(false);  // or it goes on looking pressed
    buttons_[i]->setCheckable(controls[i].chosen);
    buttons_[i]->setChecked(controls[i].chosen);
    buttons_[i]->setToolTip(QString::fromStdString(controls[i].help));
  }
  RenewScrollBar();
  const int tick = tool_->TickMilliseconds();
  if (tick <= 0) {
    tick_.stop();
  } else if (!tick_.isActive()) {
    tick_.start(tick);
  }
  canvas_->setAccessibleName(windowTitle());
  canvas_->update();
}

void ToolWidget::RenewScrollBar() {
  const auto bar = tool_->ScrollBar();
  if (scrollBar_->isHidden() == bar.has_value()) {
    scrollBar_->setVisible(bar.has_value());
    // The layout may just be giving the drawing its size, and would forget the bar.
    QTimer::singleShot(0, this, [this] {
      layout()->invalidate();
      layout()->activate();
    });
  }
  if (!bar) return;
  const QSignalBlocker quiet(scrollBar_);
  scrollBar_->setRange(0, bar->largest);
  scrollBar_->setPageStep(bar->page);
  scrollBar_->setSingleStep(bar->arrow);
  scrollBar_->setValue(bar->position);
  scrollBar_->setToolTip(QString::fromStdString(bar->help));
}

void ToolWidget::MakeButtons(const std::vector<ToolControl>& controls) {
  while (QLayoutItem* item = buttonColumn_->takeAt(0)) {
    if (item->widget() != nullptr) item->widget()->deleteLater();  // it may be the one being clicked
    delete item;
  }
  buttons_.clear();
  for (const ToolControl& control : controls) {
    auto* button = new QPushButton(QString::fromStdString(control.text));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, number = control.number, text = control.text] { PressButton(number, text); });
    buttonColumn_->addWidget(button);
    buttons_.push_back(button);
  }
  buttonColumn_->addStretch(1);
}

QPushButton* ToolWidget::Button(const std::string& text) const {
  for (std::size_t i = 0; i < controls_.size(); ++i)
    if (controls_[i].text == text) return buttons_[i];
  return nullptr;
}

void ToolWidget::PressButton(int number, const std::string& text) {
  Act([&](ToolWindow& tool) { tool.Press(window_, ToolControl{number, text, true}); });
}

void ToolWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F10 && (event->modifiers() & Qt::ShiftModifier) != 0)
    return ShowMenu(canvas_->mapToGlobal(canvas_->rect().center()));
  if (event->key() == Qt::Key_C && event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier))
    return CopyText();
  const std::string key = KeyName(*event);
  if (key.empty()) return QDialog::keyPressEvent(event);
  bool used = false;
  const bool ran = Act([&](ToolWindow& tool) { used = tool.Key(window_, key); });
  if (used || !ran) return;
  if (key == "Escape") return reject();
  if (level_ == 0) Q_EMIT KeyUnused(key);
}

void ToolWidget::wheelEvent(QWheelEvent* event) {
  const int steps = wheel_.Take(*event);
  if (steps != 0) Act([&](ToolWindow& tool) { tool.Scroll(window_, -steps); });
  event->accept();
}

void ToolWidget::CopyText() {
  if (tool_ != nullptr) QGuiApplication::clipboard()->setText(QString::fromStdString(tool_->Text()));
}

void ToolWidget::reject() {
  if (gate_.Depth() == level_) QDialog::reject();
}

void ToolWidget::CloseNow() { QDialog::reject(); }

void ToolWidget::ShowMenu(QPoint global) {
  if (gate_.Depth() != level_) return;
  QMenu menu(this);
  AddPictureActions(menu, window_, gate_, level_, [this] { return Shown(); });
  if (tool_ != nullptr && !tool_->Text().empty())
    menu.addAction(kCopyData.Get(), this, &ToolWidget::CopyText);
  menu.exec(global);
}

}  // namespace parlowen
