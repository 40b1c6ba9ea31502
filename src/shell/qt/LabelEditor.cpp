#include "shell/qt/LabelEditor.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "shell/qt/FormDialog.h"
#include "shell/qt/IpaPalette.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kSymbols = "音标", kSymbolsHelp = "国际音标 (F4)";
constexpr int kLeastWidth = 150, kGap = 2;

bool symbolsShown = false;  // as it was left, for the next label

}  // namespace

LabelEditor::LabelEditor(InputForm& form, const QWidget& pane, int gutter, QWidget* parent)
    : QFrame(parent),
      form_(form),
      edit_(new QLineEdit(QString::fromStdString(form.fields.front().value))),
      button_(new QToolButton),
      complaint_(new QLabel(parent)),
      symbols_(new QFrame(parent)) {
  setAutoFillBackground(true);
  setFrameShape(QFrame::Box);
  setAccessibleName(QString::fromStdString(form.title));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(edit_, 1);
  row->addWidget(button_);
  edit_->setAccessibleName(QString::fromStdString(form.fields.front().label));
  edit_->setToolTip(QString::fromStdString(form.fields.front().label));
  edit_->selectAll();
  button_->setText(QString::fromStdString(kSymbols));
  button_->setToolTip(QString::fromStdString(kSymbolsHelp));
  button_->setFocusPolicy(Qt::NoFocus);
  button_->setCheckable(true);
  connect(button_, &QToolButton::toggled, this, &LabelEditor::ShowPalette);

  const FormPlace& place = *form.place;
  const QPoint corner = pane.mapTo(parent, QPoint(gutter + place.x, place.y));
  const int height = std::max(place.height, edit_->sizeHint().height());
  const int width = std::min(std::max(place.width, kLeastWidth), parent->width());
  setGeometry(std::clamp(corner.x(), 0, std::max(0, parent->width() - width)),
              std::clamp(corner.y() - (height - place.height) / 2, 0, std::max(0, parent->height() - height)),
              width, height);

  for (QFrame* box : {static_cast<QFrame*>(complaint_), symbols_}) {
    box->setAutoFillBackground(true);
    box->setFrameShape(QFrame::Box);
    box->hide();
  }
  auto* column = new QVBoxLayout(symbols_);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(new IpaPalette(*edit_, symbols_));
  symbols_->resize(symbols_->sizeHint().boundedTo(parent->size()));
  // Above the label, where there is room: the texts of the other bands stay in sight.
  const int above = y() - symbols_->height() - kGap;
  const int top = above >= 0 ? above : std::min(y() + height + kGap, parent->height() - symbols_->height());
  symbols_->move(std::clamp(x(), 0, std::max(0, parent->width() - symbols_->width())), std::max(0, top));
}

LabelEditor::~LabelEditor() {
  delete complaint_;
  delete symbols_;
}

bool LabelEditor::Ask() {
  show();
  raise();
  button_->setChecked(symbolsShown);
  edit_->setFocus(Qt::OtherFocusReason);
  qApp->installEventFilter(this);
  loop_.exec();
  qApp->removeEventFilter(this);
  return taken_;
}

void LabelEditor::ShowPalette(bool shown) {
  symbolsShown = shown;
  symbols_->setVisible(shown);
  symbols_->raise();
}

bool LabelEditor::Owns(const QObject* object) const {
  const auto* widget = qobject_cast<const QWidget*>(object);
  for (; widget != nullptr; widget = widget->parentWidget())
    if (widget == this || widget == symbols_ || widget == complaint_) return true;
  return false;
}

bool LabelEditor::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && qobject_cast<QWidget*>(watched) != nullptr &&
      !Owns(watched)) {
    Accept(false);
    return loop_.isRunning();  // a text that cannot stay keeps the click out
  }
  if (event->type() != QEvent::KeyPress || !Owns(watched)) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape: Finish(false); return true;
    case Qt::Key_F4: button_->toggle(); return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (watched != edit_) return false;  // there it takes a symbol
      Accept(false);
      return true;
    case Qt::Key_Tab:
      if (watched != edit_) return false;
      Accept(true);
      return true;
    default: return false;
  }
}

void LabelEditor::Accept(bool next) {
  if (!loop_.isRunning()) return;
  FormField& field = form_.fields.front();
  const std::string text = edit_->text().toStdString();
  if (const std::string complaint = EntryComplaint(field, text); !complaint.empty()) {
    complaint_->setText(QString::fromStdString(complaint));
    complaint_->adjustSize();
    const int below = y() + height() + kGap;
    complaint_->move(x(), below + complaint_->height() <= parentWidget()->height()
                              ? below
                              : y() - complaint_->height() - kGap);
    complaint_->show();
    complaint_->raise();
    edit_->setFocus();
    return;
  }
  field.value = text;
  form_.place->next = next;
  Finish(true);
}

void LabelEditor::Finish(bool taken) {
  taken_ = taken;
  loop_.quit();
}

}  // namespace parlowen
