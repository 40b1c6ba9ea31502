#pragma once

class QWidget;

namespace parlowen {

/// Shows the start picture over the screen at once. It goes by itself shortly after `window` is there, or at
/// a click; nothing waits for it.
void ShowSplash(QWidget& window);

}  // namespace parlowen
