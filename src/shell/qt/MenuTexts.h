#pragma once
#include <QString>

class QMenu;

namespace parlowen {

class SoundDocument;

/// What the undo command would take back: "可撤消：剪切 0.35 秒（1.20 秒处）"; "" for nothing.
QString UndoToolTip(const SoundDocument& document);

/// A label without the ampersand of its mnemonic.
QString PlainLabel(const char* label);
/// The label for a menu: a letter that an entry above has already keeps its brackets and loses its effect, so that one
/// press chooses the first instead of wavering between the two.
QString WithUniqueMnemonic(const QString& label, const QMenu& menu);

/// Keys without Ctrl that are no function keys are the panes' own: a menu shows them and does not take them, for in a
/// field or a tool window they mean something else.
bool IsPaneKey(const char* keys);
/// How a menu writes them.
QString ShownKeys(const char* keys);

}  // namespace parlowen
