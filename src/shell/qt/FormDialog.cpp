#include "shell/qt/FormDialog.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <map>

#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "shell/qt/IpaPalette.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kMostBytes = "最多 %d 个字节（一个汉字 2 个）";
constexpr UiText kStepUp = "加";
constexpr UiText kStepDown = "减";

/// An edit field whose arrow keys step its value, when it has steps.
class SteppedEdit : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  std::function<void(int direction)> stepBy;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool up = event->key() == Qt::Key_Up;
    if (!stepBy || (!up && event->key() != Qt::Key_Down)) return QLineEdit::keyPressEvent(event);
    stepBy(up ? +1 : -1);
  }
};

bool IsEdit(const FormField& field) {
  return field.kind == FieldKind::Text || field.kind == FieldKind::Number;
}

/// A line divides the groups of radio buttons from each other and from the fields behind them; a label behind a group
/// belongs to it.
bool BeginsPart(const InputForm& form, std::size_t at) {
  if (form.fields[at].kind == FieldKind::Label) return false;
  std::size_t before = at;
  while (before > 0 && form.fields[before - 1].kind == FieldKind::Label) --before;
  if (before == 0 || form.fields[before - 1].kind != FieldKind::Radio) return false;
  const bool radio = form.fields[at].kind == FieldKind::Radio;
  return !radio || form.fields[at].group != form.fields[before - 1].group;
}

}  // namespace

std::string EntryComplaint(const FormField& field, const std::string& text) {
  if (!IsEdit(field)) return {};
  const std::string gbk = field.phonetic ? IpaToGbk(text) : ToGbk(text);
  if (field.phonetic ? IpaFromGbk(gbk) != text : !HasGbkCodes(text)) return messages::kNoGbkCode;
  if (field.maxGbkBytes > 0 && gbk.size() > static_cast<std::size_t>(field.maxGbkBytes))
    return Format(kMostBytes.Get(), field.maxGbkBytes);
  return {};
}

FormDialog::FormDialog(InputForm& form, QWidget* parent) : QDialog(parent), form_(form) {
  setWindowTitle(QString::fromStdString(form.title));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  QWidget* fields = MakeFields();
  auto* layout = new QVBoxLayout(this);
  const int tallest = screen()->availableGeometry().height() * 3 / 4;
  if (fields->sizeHint().height() > tallest) {
    auto* area = new QScrollArea;
    area->setWidget(fields);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setMinimumSize(fields->sizeHint().width() + 30, tallest);
    layout->addWidget(area);
  } else {
    layout->addWidget(fields);
  }
  for (std::size_t i = 0; i < form_.fields.size(); ++i)
    if (form_.fields[i].phonetic && edits_[i] != nullptr) {
      layout->addWidget(new IpaPalette(*edits_[i], this), 1);
      break;
    }
  layout->addStretch();  // a larger window keeps its fields together
  complaint_ = new QLabel;
  complaint_->setWordWrap(true);
  QFont bold = font();
  bold.setBold(true);
  complaint_->setFont(bold);
  complaint_->hide();
  layout->addWidget(complaint_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText(messages::kOk.Get());
  buttons->button(QDialogButtonBox::Cancel)->setText(messages::kCancel.Get());
  connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
  layout->addWidget(buttons);
  const int ofTitle = fontMetrics().horizontalAdvance(windowTitle()) + 120;
  setMinimumWidth(std::max({280, ofTitle, layout->minimumSize().width()}));
}

QWidget* FormDialog::MakeFields() {
  auto* box = new QWidget;
  auto* grid = new QGridLayout(box);
  grid->setColumnStretch(1, 1);
  grid->setContentsMargins(0, 0, 0, 0);
  std::map<int, QButtonGroup*> groups;
  bool focused = false;
  for (std::size_t i = 0; i < form_.fields.size(); ++i) {
    FormField& field = form_.fields[i];
    const int row = 2 * static_cast<int>(i) + 1;  // the rows between are for lines
    edits_.push_back(nullptr);
    radios_.push_back(nullptr);
    const QString label = QString::fromStdString(field.label);
    if (BeginsPart(form_, i)) {
      auto* line = new QFrame;
      line->setFrameShape(QFrame::HLine);
      line->setFrameShadow(QFrame::Sunken);
      grid->addWidget(line, row - 1, 0, 1, 2);
    }
    if (field.kind == FieldKind::Label) {
      auto* text = new QLabel(label);
      text->setTextFormat(Qt::PlainText);
      grid->addWidget(text, row, 0, 1, 2);
    } else if (field.kind == FieldKind::Tick) {
      auto* tick = new QCheckBox(label);
      tick->setChecked(field.checked);
      grid->addWidget(tick, row, 0, 1, 2);
      radios_.back() = tick;
    } else if (field.kind == FieldKind::Radio) {
      auto* radio = new QRadioButton(label);
      radio->setChecked(field.checked);
      QButtonGroup*& group = groups[field.group];
      if (group == nullptr) group = new QButtonGroup(this);
      group->addButton(radio);
      grid->addWidget(radio, row, 0, 1, 2);
      radios_.back() = radio;
    } else {
      auto* text = new QLabel(label);
      text->setTextFormat(Qt::PlainText);
      QWidget* edit = MakeEdit(field, i);
      text->setBuddy(edits_.back());
      grid->addWidget(text, row, 0);
      grid->addWidget(edit, row, 1);
      edits_.back()->setAccessibleName(label);
      if (!focused) {
        edits_.back()->setFocus();
        edits_.back()->selectAll();
        focused = true;
      }
    }
  }
  return box;
}

QWidget* FormDialog::MakeEdit(FormField& field, std::size_t index) {
  auto* edit = new SteppedEdit(QString::fromStdString(field.value));
  edit->setMinimumWidth(140);
  if (field.kind == FieldKind::Number) edit->setInputMethodHints(Qt::ImhPreferNumbers);
  edits_[index] = edit;
  if (!field.step) return edit;

  auto* box = new QWidget;
  auto* row = new QHBoxLayout(box);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  row->addWidget(edit, 1);
  const auto stepBy = [&field, edit](int direction) {
    edit->setText(QString::fromStdString(field.step(edit->text().toStdString(), direction)));
  };
  struct Arrow {
    Qt::ArrowType type;
    int direction;
    UiText name;
  };
  edit->stepBy = stepBy;
  for (const Arrow& arrow : {Arrow{Qt::UpArrow, +1, kStepUp}, Arrow{Qt::DownArrow, -1, kStepDown}}) {
    auto* button = new QToolButton;
    button->setArrowType(arrow.type);
    button->setAutoRepeat(true);
    button->setAccessibleName(arrow.name.Get());
    connect(button, &QToolButton::clicked, this,
            [stepBy, direction = arrow.direction] { stepBy(direction); });
    row->addWidget(button);
  }
  return box;
}

QLineEdit* FormDialog::Edit(int control) const {
  for (std::size_t i = 0; i < form_.fields.size(); ++i)
    if (edits_[i] != nullptr && form_.fields[i].control == control) return edits_[i];
  return nullptr;
}

bool FormDialog::Check() {
  for (std::size_t i = 0; i < form_.fields.size(); ++i) {
    if (edits_[i] == nullptr) continue;
    const std::string complaint = EntryComplaint(form_.fields[i], edits_[i]->text().toStdString());
    if (complaint.empty()) continue;
    complaint_->setText(QString::fromStdString(complaint));
    complaint_->show();
    edits_[i]->setFocus();
    edits_[i]->selectAll();
    return false;
  }
  return true;
}

void FormDialog::accept() {
  if (!Check()) return;
  for (std::size_t i = 0; i < form_.fields.size(); ++i) {
    if (edits_[i] != nullptr) form_.fields[i].value = edits_[i]->text().toStdString();
    if (radios_[i] != nullptr) form_.fields[i].checked = radios_[i]->isChecked();
  }
  QDialog::accept();
}

}  // namespace parlowen
