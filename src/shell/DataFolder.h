#pragma once
#include <string>

namespace parlowen {

/// The folder with help and sounds: share/parlowen beside the program's bin folder, else the source tree's.
std::string DataFolder();

/// The recording that the desktop opens when no file is named; "" where there is none.
std::string SampleSound();

}  // namespace parlowen
