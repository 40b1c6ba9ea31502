#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace parlowen {

inline constexpr int kMostAnnotations = 500;
/// Longest text of an annotation: GBK bytes, phonetic symbols included.
inline constexpr int kAnnotationBytes = 9;

/// A short text, most often a transcription, at a moment of the sound.
struct Annotation {
  std::string text;             ///< UTF-8
  std::int32_t position = 0;    ///< sample
};

/// The annotations of the current sound, in the order they were inserted; at most kMostAnnotations.
struct AnnotationState {
  std::vector<Annotation> items;
  std::uint64_t generation = 0;   ///< the sound they belong to: of another one they count as none
  bool changed = false;           ///< since they were read or saved
};

}  // namespace parlowen
