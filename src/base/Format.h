#pragma once
#include <string>

namespace parlowen {

/// printf into a string. Needs the "C" numeric locale, which both programs keep.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...);

/// The shortest text that reads back to the same value; "null" for NaN and infinities.
std::string ShortestNumber(double value);
std::string ShortestNumber(float value);

}  // namespace parlowen
