#include "articulation/Articulation.h"

#include <algorithm>
#include <cstring>

namespace parlowen {
namespace {

constexpr ArticulationTarget kTargets[] = {
    {"a", "565432211", 7, 6, 1},
    {"o", "466653111", 4, 3, 5},
    {"e", "355664211", 4, 6, 1},
    {"ê", "234565422", 5, 7, 0},
    {"i", "112467764", 2, 8, 0},
    {"u", "345774211", 1, 1, 8},
    {"ü", "112467764", 1, 2, 7},
    {"i1", "234444687", 2, 7, 0},
    {"i2", "234445883", 3, 6, 1},
    {"er", "345555762", 4, 5, 2},
    {"b", "344554322", 0, 5, 1},
    {"m", "344554322", 0, 5, 1, true},
    {"f", "344554322", 1, 6, 0, false, true},
    {"d", "234455698", 3, 6, 0},
    {"n", "234455698", 3, 6, 0, true},
    {"l", "234455498", 3, 6, 0, false, false, true},
    {"z", "234444597", 2, 7, 0},
    {"s", "234444587", 2, 7, 0},
    {"zh", "234445894", 3, 5, 2},
    {"sh", "234445884", 3, 5, 2},
    {"j", "112467974", 2, 7, 0},
    {"x", "112467874", 2, 7, 0},
    {"g", "345995311", 4, 6, 1},
    {"ng", "345995311", 4, 6, 1, true},
    {"h", "345885311", 4, 6, 1},
};

constexpr MandarinSound kSounds[] = {
    {"b", "b", "p", {"b"}, "双唇、不送气、清、塞音", false},
    {"p", "p", "pʰ", {"b"}, "双唇、送气、清、塞音", false},
    {"m", "m", "m", {"m"}, "双唇、浊、鼻音", true},
    {"f", "f", "f", {"f"}, "唇齿、清、擦音", false},
    {"d", "d", "t", {"d"}, "舌尖中、不送气、清、塞音", false},
    {"t", "t", "tʰ", {"d"}, "舌尖中、送气、清、塞音", false},
    {"n", "n", "n", {"n"}, "舌尖中、浊、鼻音", true},
    {"l", "l", "l", {"l"}, "舌尖中、浊、边音", true},
    {"g", "g", "k", {"g"}, "舌面后、不送气、清、塞音", false},
    {"k", "k", "kʰ", {"g"}, "舌面后、送气、清、塞音", false},
    {"h", "h", "x", {"h"}, "舌面后、清、擦音", false},
    {"j", "j", "tɕ", {"j", "x"}, "舌面前、不送气、清、塞擦音", false},
    {"q", "q", "tɕʰ", {"j", "x"}, "舌面前、送气、清、塞擦音", false},
    {"x", "x", "ɕ", {"x"}, "舌面前、清、擦音", false},
    {"zh", "zh", "tʂ", {"zh", "sh"}, "舌尖后、不送气、清、塞擦音", false},
    {"ch", "ch", "tʂʰ", {"zh", "sh"}, "舌尖后、送气、清、塞擦音", false},
    {"sh", "sh", "ʂ", {"sh"}, "舌尖后、清、擦音", false},
    {"r", "r", "ʐ", {"sh"}, "舌尖后、浊、擦音", true},
    {"z", "z", "ts", {"z", "s"}, "舌尖前、不送气、清、塞擦音", false},
    {"c", "c", "tsʰ", {"z", "s"}, "舌尖前、送气、清、塞擦音", false},
    {"s", "s", "s", {"s"}, "舌尖前、清、擦音", false},
    {"a", "a", "a", {"a"}, "央、低、展唇元音"},
    {"o", "o", "o", {"o"}, "后、半高、圆唇元音"},
    {"e", "e", "ɤ", {"e"}, "后、半高、展唇元音"},
    {"ê", "eh", "ɛ", {"ê"}, "前、半低、展唇元音"},
    {"i", "i", "i", {"i"}, "前、高、展唇元音"},
    {"u", "u", "u", {"u"}, "后、高、圆唇元音"},
    {"ü", "v", "y", {"ü"}, "前、高、圆唇元音"},
    {"i1", "i1", "ɿ", {"i1"}, "舌尖前、高、展唇元音"},
    {"i2", "i2", "ʅ", {"i2"}, "舌尖后、高、展唇元音"},
    {"er", "er", "ɚ", {"er"}, "卷舌、央、中、展唇元音"},
    {"ai", "ai", "aɪ", {"a", "i"}, "前响复韵母"},
    {"ei", "ei", "eɪ", {"e", "i"}, "前响复韵母"},
    {"ao", "ao", "ɑʊ", {"a", "u"}, "前响复韵母"},
    {"ou", "ou", "oʊ", {"o", "u"}, "前响复韵母"},
    {"ia", "ia", "ia", {"i", "a"}, "后响复韵母"},
    {"ie", "ie", "iɛ", {"i", "ê"}, "后响复韵母"},
    {"ua", "ua", "ua", {"u", "a"}, "后响复韵母"},
    {"uo", "uo", "uo", {"u", "o"}, "后响复韵母"},
    {"üe", "ve", "yɛ", {"ü", "ê"}, "后响复韵母"},
    {"iao", "iao", "iɑʊ", {"i", "a", "u"}, "中响复韵母"},
    {"iou", "iou", "ioʊ", {"i", "o", "u"}, "中响复韵母"},
    {"uai", "uai", "uaɪ", {"u", "a", "i"}, "中响复韵母"},
    {"uei", "uei", "ueɪ", {"u", "e", "i"}, "中响复韵母"},
    {"an", "an", "an", {"a", "n"}, "前鼻音韵母，开口呼"},
    {"en", "en", "ən", {"e", "n"}, "前鼻音韵母，开口呼"},
    {"in", "in", "in", {"i", "n"}, "前鼻音韵母，齐齿呼"},
    {"ün", "vn", "yn", {"ü", "n"}, "前鼻音韵母，撮口呼"},
    {"ian", "ian", "iɛn", {"i", "ê", "n"}, "前鼻音韵母，齐齿呼"},
    {"uan", "uan", "uan", {"u", "a", "n"}, "前鼻音韵母，合口呼"},
    {"üan", "van", "yɛn", {"ü", "ê", "n"}, "前鼻音韵母，撮口呼"},
    {"uen", "uen", "uən", {"u", "e", "n"}, "前鼻音韵母，合口呼"},
    {"ang", "ang", "ɑŋ", {"a", "ng"}, "后鼻音韵母，开口呼"},
    {"eng", "eng", "əŋ", {"e", "ng"}, "后鼻音韵母，开口呼"},
    {"ing", "ing", "iŋ", {"i", "ng"}, "后鼻音韵母，齐齿呼"},
    {"ong", "ong", "ʊŋ", {"u", "ng"}, "后鼻音韵母，合口呼"},
    {"iong", "iong", "yʊŋ", {"ü", "u", "ng"}, "后鼻音韵母，撮口呼"},
    {"iang", "iang", "iɑŋ", {"i", "a", "ng"}, "后鼻音韵母，齐齿呼"},
    {"uang", "uang", "uɑŋ", {"u", "a", "ng"}, "后鼻音韵母，合口呼"},
    {"ueng", "ueng", "uəŋ", {"u", "e", "ng"}, "后鼻音韵母，合口呼"},
};
static_assert(std::size(kSounds) == kMandarinSounds);

int TargetCountOf(const MandarinSound& sound) {
  return static_cast<int>(std::count_if(sound.targets.begin(), sound.targets.end(),
                                        [](const char* name) { return name != nullptr; }));
}

double Between(double from, double to, double share) { return from + (to - from) * share; }

}  // namespace

const ArticulationTarget* FindTarget(const std::string& name) {
  const auto found = std::find_if(std::begin(kTargets), std::end(kTargets),
                                  [&](const ArticulationTarget& target) { return name == target.name; });
  return found == std::end(kTargets) ? nullptr : found;
}

Articulation ArticulationOf(const ArticulationTarget& target) {
  Articulation made;
  for (std::size_t i = 0; i < kTongueLines; ++i) made.tongue[i] = target.tongue[i] - '0';
  made.lips = {static_cast<double>(target.opening), static_cast<double>(target.width),
               static_cast<double>(target.protrusion)};
  made.velumDown = target.velumDown;
  made.lipToTeeth = target.lipToTeeth;
  made.lateral = target.lateral;
  return made;
}

std::span<const MandarinSound> MandarinSounds() { return kSounds; }

int LastStepOf(const MandarinSound& sound) { return kStepsBetween * (TargetCountOf(sound) - 1); }

Articulation ArticulationAt(const MandarinSound& sound, int step) {
  step = std::clamp(step, 0, LastStepOf(sound));
  const int from = std::min(step / kStepsBetween, std::max(0, TargetCountOf(sound) - 2));
  const int to = std::min(from + 1, TargetCountOf(sound) - 1), behind = step - from * kStepsBetween;
  const auto at = [&](int i) {
    return ArticulationOf(*FindTarget(sound.targets[static_cast<std::size_t>(i)]));
  };
  const Articulation a = at(from), b = at(to);
  const double share = static_cast<double>(behind) / kStepsBetween;
  Articulation made = behind * 2 >= kStepsBetween ? b : a;
  for (std::size_t i = 0; i < kTongueLines; ++i) made.tongue[i] = Between(a.tongue[i], b.tongue[i], share);
  made.lips = {Between(a.lips.opening, b.lips.opening, share), Between(a.lips.width, b.lips.width, share),
               Between(a.lips.protrusion, b.lips.protrusion, share)};
  return made;
}

}  // namespace parlowen
