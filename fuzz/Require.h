#pragma once
#include <cstdio>
#include <cstdlib>

namespace parlowen {

/// A promise that must hold whatever the bytes are.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace parlowen
