#include "document/NextDigit.h"

namespace parlowen {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// A decimal number of any length plus one, without leading zeros; "" counts as 0.
std::string Incremented(std::string digits) {
  for (std::size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      const std::size_t first = digits.find_first_not_of('0');
      return digits.substr(first);
    }
    digits[i] = '0';
  }
  return "1" + digits;
}

}  // namespace

std::string nextDigitPathOf(const std::string& path) {
  const std::string stem = path.substr(0, path.find('.'));
  std::size_t first = stem.size();
  while (first > 0 && IsDigit(stem[first - 1])) --first;
  return stem.substr(0, first) + Incremented(stem.substr(first)) + ".wav";
}

}  // namespace parlowen
