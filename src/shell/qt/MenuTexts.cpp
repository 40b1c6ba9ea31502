#include "shell/qt/MenuTexts.h"

#include <QKeySequence>
#include <QMenu>
#include <algorithm>

#include "base/Format.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kCut = "剪切", kPaste = "粘贴";
constexpr UiText kUndoable = "可撤消：%s %.2f 秒（%.2f 秒处）";

}  // namespace

QString UndoToolTip(const SoundDocument& document) {
  if (document.undoKind == UndoKind::None || document.sampleRate <= 0) return {};
  const double rate = document.sampleRate;
  return QString::fromStdString(Format(kUndoable.Get(),
                                       document.undoKind == UndoKind::Cut ? kCut.Get() : kPaste.Get(),
                                       document.undoLength / rate, document.undoPosition / rate));
}

QString PlainLabel(const char* label) { return QString(label).remove('&'); }

QString WithUniqueMnemonic(const QString& label, const QMenu& menu) {
  const QKeySequence letter = QKeySequence::mnemonic(label);
  const QList<QAction*> above = menu.actions();
  const bool taken = std::any_of(above.begin(), above.end(), [&letter](const QAction* action) {
    return QKeySequence::mnemonic(action->text()) == letter;
  });
  return !letter.isEmpty() && taken ? QString(label).remove('&') : label;
}

bool IsPaneKey(const char* keys) {
  const QString text(keys);
  const bool function = text.size() > 1 && text[0] == 'F' && text[1].isDigit();
  return !text.isEmpty() && !text.contains('+') && !function;
}

QString ShownKeys(const char* keys) {
  QString text(keys);
  text.replace("Page", "Page ");  // as sequences of keys are written
  return QKeySequence(text).toString(QKeySequence::NativeText);
}

}  // namespace parlowen
