#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace parlowen {

/// Good files with up to four places spoiled: bytes, most of them ones that make limits; words that lie about a length; a
/// cut; a stretch from elsewhere put in or taken out; with `pieces`, what stands in such files. Always the same ones.
class Mutator {
 public:
  std::span<const char* const> pieces = {};
  std::size_t head = SIZE_MAX;  ///< three of four changes fall into the first bytes, where the counts are

  std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(random_()) % limit; }

  std::string operator()(std::string bytes) {
    for (std::size_t change = Below(4); change < 4; ++change) {
      if (bytes.empty()) bytes = " ";
      Spoil(bytes, Below(Below(4) == 0 ? bytes.size() : std::min(head, bytes.size())));
    }
    return bytes;
  }

 private:
  void Spoil(std::string& bytes, std::size_t at) {
    constexpr std::uint8_t kLimits[] = {0, 1, 0x7F, 0x80, 0xFF};
    constexpr std::uint32_t kWords[] = {0,          1,          3,          391,
                                        392,        0x7FFFFFFF, 0x80000000, 0xFFFFFFFE,
                                        0xFFFFFFFF, 0x7F800000, 0x7FC00000, 0x7FEFFFFF};
    switch (Below(pieces.empty() ? 8 : 12)) {
      case 0: bytes.resize(at + 1); break;
      case 1: bytes.insert(at, bytes.substr(Below(bytes.size()), Below(40))); break;
      case 2: bytes.erase(at, Below(6) == 0 ? 100 : 1); break;
      case 3:  // lengths stand at multiples of two
        for (std::size_t i = 0, first = at - at % 2, word = Below(std::size(kWords)); i < 4; ++i)
          if (first + i < bytes.size()) bytes[first + i] = static_cast<char>(kWords[word] >> (8 * i));
        break;
      case 4:
      case 5: bytes[at] = static_cast<char>(kLimits[Below(std::size(kLimits))]); break;
      case 6:
      case 7: bytes[at] = static_cast<char>(Below(256)); break;
      default: bytes.replace(at, Below(3), pieces[Below(pieces.size())]); break;
    }
  }
  std::mt19937 random_{20261121};
};

/// One input of the driver.
inline void Try(const std::string& bytes) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

/// The seeds themselves and `runs` mutants of them.
inline int TryMutants(const std::vector<std::string>& seeds, int runs, Mutator mutate = {}) {
  for (const std::string& seed : seeds) Try(seed);
  for (int run = 0; run < runs; ++run) Try(mutate(seeds[mutate.Below(seeds.size())]));
  return 0;
}

}  // namespace parlowen
