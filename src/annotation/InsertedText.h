#pragma once
#include <optional>
#include <string>

#include "ui/Window.h"

namespace parlowen {

/// What the dialog for inserted texts gives: at most kAnnotationBytes of GBK, and a height of kTextHeights.
struct InsertedText {
  std::string text;  ///< UTF-8, not empty
  int height = 0;    ///< pixels
};

/// Asks for a text to insert, with `height` chosen at first; nothing when it was cancelled or left empty.
/// Characters that cannot be stored keep the dialog open.
std::optional<InsertedText> AskInsertedText(Window& window, int height);

/// The text as a file gives it back: what has no code is a "?", and at most kAnnotationBytes are kept.
std::string StorableText(const std::string& text);

}  // namespace parlowen
