#pragma once

class QPainter;
class QWidget;

namespace parlowen {

/// The start picture, 440 pixels wide and 220 high.
void PaintSplash(QPainter& painter);

/// Shows the start picture over the screen at once. It goes by itself shortly after `window` is there, or at
/// a click; nothing waits for it.
void ShowSplash(QWidget& window);

}  // namespace parlowen
