#include "shell/qt/KeyNames.h"

#include <QKeyEvent>

namespace parlowen {

std::string KeyName(const QKeyEvent& event) {
  if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) return {};
  const int key = event.key();
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
    return std::string(1, static_cast<char>(key));
  if (key >= Qt::Key_F1 && key <= Qt::Key_F8) return "F" + std::to_string(key - Qt::Key_F1 + 1);
  switch (key) {
    case Qt::Key_Left: return "Left";
    case Qt::Key_Right: return "Right";
    case Qt::Key_Up: return "Up";
    case Qt::Key_Down: return "Down";
    case Qt::Key_Home: return "Home";
    case Qt::Key_End: return "End";
    case Qt::Key_PageUp: return "PageUp";
    case Qt::Key_PageDown: return "PageDown";
    case Qt::Key_Space: return "Space";
    case Qt::Key_Escape: return "Escape";
    default: return {};
  }
}

}  // namespace parlowen
