#pragma once
#include <QTabWidget>

class QLineEdit;
class QListWidget;

namespace parlowen {

/// Phonetic symbols to choose from: those of standard Chinese as the index lists them, and all that have a
/// code. A click, or Space or Enter on the symbol that the arrow keys reached, inserts at the field's cursor.
class IpaPalette : public QTabWidget {
  Q_OBJECT
 public:
  IpaPalette(QLineEdit& field, QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QListWidget* AddPage(const QString& title);
  void Insert(const QString& symbol);

  QLineEdit& field_;
};

}  // namespace parlowen
