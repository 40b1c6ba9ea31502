#pragma once
#include <QString>

namespace parlowen {

class SoundDocument;

/// What the undo command would take back: "可撤消：剪切 0.35 秒（1.20 秒处）"; "" for nothing.
QString UndoToolTip(const SoundDocument& document);

/// A label without the ampersand of its mnemonic.
QString PlainLabel(const char* label);

}  // namespace parlowen
