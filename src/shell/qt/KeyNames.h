#pragma once
#include <string>

class QKeyEvent;

namespace parlowen {

/// The name of a key as the workstation knows it: "S", "7", "Left", "PageDown", "Space", "F5" …; "" for keys
/// it does not know and for keys together with Ctrl, Alt or Meta.
std::string KeyName(const QKeyEvent& event);

}  // namespace parlowen
