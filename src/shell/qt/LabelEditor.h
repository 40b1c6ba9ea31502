#pragma once
#include <QEventLoop>
#include <QFrame>

#include "ui/InputForm.h"

class QLabel;
class QLineEdit;
class QToolButton;

namespace parlowen {

class IpaPalette;

/// Edits the text of a label where it stands in its pane, with the phonetic symbols at hand. Enter and a click
/// elsewhere take the text, Escape leaves it as it was, Tab takes it and goes on to the next one.
class LabelEditor : public QFrame {
  Q_OBJECT
 public:
  /// `pane` and the place of the form say where; the editor stands over `parent`, which holds the pane.
  LabelEditor(InputForm& form, const QWidget& pane, int gutter, QWidget* parent);
  ~LabelEditor() override;

  /// Waits for the text and fills the form; false when it was cancelled.
  bool Ask();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Accept(bool next);
  void Finish(bool taken);
  void ShowPalette(bool shown);
  bool Owns(const QObject* object) const;

  InputForm& form_;
  QLineEdit* edit_;
  QToolButton* button_;
  QLabel* complaint_;
  QFrame* symbols_;
  QEventLoop loop_;
  bool taken_ = false;
};

}  // namespace parlowen
