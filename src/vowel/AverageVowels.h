#pragma once
#include <span>

#include "ui/Text.h"

namespace parlowen {

/// Mean formants of a vowel over many speakers.
struct AverageVowel {
  const char* label;  ///< UTF-8, phonetic
  int f1, f2;         ///< Hz
};

inline constexpr int kSpeakerClasses = 6;

/// "普通话，男", "普通话，女", "普通话，儿童", "英语，男", "英语，女", "英语，儿童".
UiText SpeakerClassName(int speakerClass);

std::span<const AverageVowel> AverageVowels(int speakerClass);

}  // namespace parlowen
