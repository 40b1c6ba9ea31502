#pragma once
#include <QString>

namespace parlowen {

class CommandStates;
class SoundDocument;

/// What a greyed command is waiting for, e.g. "先用左、右键选定一段".
QString MissingFor(int command, const SoundDocument& document, const CommandStates& states);

/// What the undo command would take back: "可撤消：剪切 0.35 秒（1.20 秒处）"; "" for nothing.
QString UndoToolTip(const SoundDocument& document);

/// A label without the ampersand of its mnemonic.
QString PlainLabel(const char* label);

}  // namespace parlowen
