#pragma once
#include <string>

namespace parlowen {

/// The folder with help and sounds: share/parlowen beside the program's bin folder, else the source tree's.
std::string DataFolder();

}  // namespace parlowen
