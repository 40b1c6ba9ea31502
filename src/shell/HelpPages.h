#pragma once
#include <string>

#include "document/Activity.h"
#include "ui/Window.h"

namespace parlowen {

/// Opens the help page of the current tool, or says that there is none.
void OpenHelp(Window& window, const std::string& dataFolder, Activity activity);

/// Name, version and what the program is made with.
std::string AboutText();

}  // namespace parlowen
