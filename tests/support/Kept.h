// What a test compares with a file that stands beside it.
#pragma once
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/Format.h"
#include "support/TempFolder.h"

namespace parlowen::testing {

/// A text's length and its FNV-1a (Fowler, Noll and Vo).
inline std::string SizeAndDigest(const std::string& text) {
  std::uint64_t digest = 0xCBF29CE484222325u;
  for (const char byte : text) digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
  return Format("%zu %016llx", text.size(), static_cast<unsigned long long>(digest));
}

/// A picture's text with whole numbers, since another machine's library may print the last digit otherwise.
inline std::string WithoutDecimals(const std::string& text) {
  std::string whole;
  for (std::size_t i = 0; i < text.size(); ++i) {
    whole += text[i];
    if (!std::isdigit(static_cast<unsigned char>(text[i])) || i + 1 >= text.size() || text[i + 1] != '.')
      continue;
    for (++i; i + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1]));) ++i;
  }
  return whole;
}

/// Compares with what is kept in a file. To write it: PARLOWEN_WRITE_STORIES=1, and read it before it stays.
inline void ExpectKept(const std::string& path, const std::string& seen) {
  if (std::getenv("PARLOWEN_WRITE_STORIES") != nullptr) {
    if (seen.empty()) {
      std::filesystem::remove(path);
    } else {
      WriteFile(path, seen);
    }
  }
  EXPECT_EQ(seen, std::filesystem::exists(path) ? ReadFile(path) : std::string()) << path;
}

}  // namespace parlowen::testing
