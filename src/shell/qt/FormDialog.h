#pragma once
#include <QDialog>
#include <vector>

#include "ui/InputForm.h"

class QAbstractButton;
class QLabel;
class QLineEdit;

namespace parlowen {

/// An input dialog made from a form. OK fills the form; an entry that is too long or has characters without a
/// GBK code keeps the dialog open with a line that says so.
class FormDialog : public QDialog {
  Q_OBJECT
 public:
  FormDialog(InputForm& form, QWidget* parent);

  /// The edit field of a control, or null; for tests and for what fills a field from outside.
  QLineEdit* Edit(int control) const;

 public Q_SLOTS:
  void accept() override;

 private:
  QWidget* MakeFields();
  QWidget* MakeEdit(FormField& field, std::size_t index);
  bool Check();

  InputForm& form_;
  std::vector<QLineEdit*> edits_;         ///< by field, null for the others
  std::vector<QAbstractButton*> radios_;  ///< by field, null for the others
  QLabel* complaint_ = nullptr;
};

/// What is wrong with an entry: "" when it may stand.
std::string EntryComplaint(const FormField& field, const std::string& text);

}  // namespace parlowen
