#include "shell/qt/CommandToolTips.h"

#include "base/Format.h"
#include "document/SoundDocument.h"

namespace parlowen {
QString UndoToolTip(const SoundDocument& document) {
  if (document.undoKind == UndoKind::None || document.sampleRate <= 0) return {};
  const double rate = document.sampleRate;
  return QString::fromStdString(Format("可撤消：%s %.2f 秒（%.2f 秒处）",
                                       document.undoKind == UndoKind::Cut ? "剪切" : "粘贴",
                                       document.undoLength / rate, document.undoPosition / rate));
}

QString PlainLabel(const char* label) { return QString(label).remove('&'); }

}  // namespace parlowen
