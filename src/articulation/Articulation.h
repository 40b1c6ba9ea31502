#pragma once
#include <array>
#include <span>
#include <string>

#include "ui/Text.h"

namespace parlowen {

/// Tongue: nine heights on lines from the lower pharynx to the upper incisors, 0 low, 9 touching the wall. Lips:
/// opening, width, protrusion, 0..8. Steps between two targets have fractions.
inline constexpr std::size_t kTongueLines = 9;
using TongueShape = std::array<double, kTongueLines>;
struct LipShape {
  double opening = 0, width = 0, protrusion = 0;
};

/// Where tongue, lips and velum stand at a moment.
struct Articulation {
  TongueShape tongue{};
  LipShape lips;
  bool velumDown = false;
  bool lipToTeeth = false;  ///< the lower lip touches the upper incisors
  bool lateral = false;     ///< air passes at the sides of the tongue
};

/// One position that sounds aim at.
struct ArticulationTarget {
  const char* name;
  const char* tongue;  ///< nine digits
  int opening, width, protrusion;
  bool velumDown = false, lipToTeeth = false, lateral = false;
};
/// The target of a name; null when there is none.
const ArticulationTarget* FindTarget(const std::string& name);
Articulation ArticulationOf(const ArticulationTarget& target);

/// An initial or a final of Mandarin.
struct MandarinSound {
  const char* key;   ///< as in scripts: "zh", "üan", "i1"
  const char* file;  ///< of its recording, without folder and ending: ü as v, ê as eh
  const char* ipa;
  std::array<const char*, 3> targets;  ///< in their order; null behind the last
  UiText description;                  ///< in the words of textbooks
  bool voiced = true;                  ///< the vocal folds vibrate
};
inline constexpr int kInitials = 21, kFinals = 39, kMandarinSounds = kInitials + kFinals;
/// The initials, then the finals, in the order of textbooks.
std::span<const MandarinSound> MandarinSounds();

/// Steps between two targets.
inline constexpr int kStepsBetween = 4;
/// The last step of a sound's movement; 0 for one target.
int LastStepOf(const MandarinSound& sound);
/// The position at a step 0 .. LastStepOf: linear between two targets; the velum changes in the middle.
Articulation ArticulationAt(const MandarinSound& sound, int step);

}  // namespace parlowen
