#pragma once
#include <cstdint>

namespace parlowen {

/// The load or recording that a result was made from (SoundDocument::Stamp()). Every result that belongs to a sound
/// carries one; where it is not the document's present one the result counts as none and is dropped.
struct SoundStamp {
  std::uint64_t number = 0;  ///< of the load or recording, 0 before the first
  bool operator==(const SoundStamp&) const = default;
};

}  // namespace parlowen
