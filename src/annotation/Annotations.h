#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "document/SoundStamp.h"

namespace parlowen {

inline constexpr int kMostAnnotations = 500;
/// Longest text of an annotation: GBK bytes, phonetic symbols included.
inline constexpr int kAnnotationBytes = 9;
/// Sizes of the type that the dialog offers, in pixels; files do not keep them and give the middle one.
inline constexpr int kTextHeights[] = {24, 16, 12};
inline constexpr int kMiddleTextHeight = kTextHeights[1];

/// A short text, most often a transcription, at a moment of the sound.
struct Annotation {
  std::string text;                ///< UTF-8
  std::int32_t position = 0;       ///< sample
  int height = kMiddleTextHeight;  ///< of the type, pixels
  bool operator==(const Annotation&) const = default;
};

/// The annotations of the current sound, in the order they were inserted; at most kMostAnnotations.
struct AnnotationState {
  std::vector<Annotation> items;
  SoundStamp sound;      ///< the sound they belong to: of another one they count as none
  bool changed = false;  ///< since they were read or saved
  /// The items before and after the cut or paste that can be undone.
  std::vector<Annotation> beforeEdit{}, afterEdit{};
};

}  // namespace parlowen
