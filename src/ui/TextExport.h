#pragma once
#include <string>
#include <string_view>

namespace parlowen {

class Window;

/// Writes a text export: `gbkText` as the whole file `name` in `folder` ("" is the current directory). 0, or
/// −1 with the old file intact and its message shown.
int WriteTextExport(Window& window, const std::string& folder, const std::string& name,
                    std::string_view gbkText);

/// Hands that file to the system's text editor.
void ShowTextExport(Window& window, const std::string& folder, const std::string& name);

}  // namespace parlowen
