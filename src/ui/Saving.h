#pragma once
#include <string>

#include "base/Bytes.h"

namespace parlowen {

class Window;

/// ReplaceFile and AppendToFile for what is saved or exported in the user's name: a window is told what was
/// written. Whoever commits a FileReplacement calls Window::Saved.
int SaveFile(Window& window, const std::string& path, ByteSpan bytes);
int SaveBehindFile(Window& window, const std::string& path, ByteSpan bytes);

}  // namespace parlowen
