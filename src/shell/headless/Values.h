#pragma once
#include <string>
#include <vector>

#include "base/JsonLine.h"

namespace parlowen {

class Workstation;

/// Makes the `value` event of a `print` step from the words behind `print`; "" or what is wrong with them.
std::string PrintedValue(const Workstation& workstation, const std::vector<std::string>& words,
                         JsonObject& event);

}  // namespace parlowen
