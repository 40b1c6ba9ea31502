#pragma once

class QCoreApplication;

namespace parlowen {

/// Puts the toolkit's own dialogs into Chinese: its translation where it is installed, else our few words for
/// the file dialog and the context menus of edit fields.
void InstallInterfaceTexts(QCoreApplication& application);

}  // namespace parlowen
