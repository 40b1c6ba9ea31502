#pragma once
#include <QString>

class QWidget;

namespace parlowen {

/// A read-only window over a text file in GBK or, when its bytes are well-formed UTF-8, in that. It deletes
/// itself when it is closed; to be placed and shown. Null when the file cannot be read.
QWidget* MakeTextWindow(const QString& path, QWidget* parent);

/// The same for an HTML page whose links stay in the window; `fragment` names a section.
QWidget* MakeHelpWindow(const QString& path, const QString& fragment, QWidget* parent);

/// The text of the bytes of a text export or index, phonetic codes included.
QString DecodedText(const QByteArray& bytes);

}  // namespace parlowen
