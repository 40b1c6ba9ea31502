#pragma once
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Lines as one text, each ended by a line feed.
inline std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

/// What every analysis window does when it is closed: its mode ends with it.
inline void EndActivity(Window& window, SoundDocument& document, Activity activity) {
  document.EndTool(activity);
  window.Repaint();
}

}  // namespace parlowen
