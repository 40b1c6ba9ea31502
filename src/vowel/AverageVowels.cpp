#include "vowel/AverageVowels.h"

#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr AverageVowel kMandarinMen[] = {{"i", 283, 2350}, {"u", 351, 454},  {"y", 293, 2110},
                                         {"a", 984, 1157}, {"o", 554, 711},  {"ɤ", 552, 1044},
                                         {"e", 491, 2110}, {"ɿ", 371, 1360}, {"ʅ", 372, 1797}};
constexpr AverageVowel kMandarinWomen[] = {{"i", 311, 3396},  {"u", 411, 639},  {"y", 312, 2691},
                                           {"a", 1247, 1364}, {"o", 726, 917},  {"ɤ", 726, 1154},
                                           {"e", 613, 2523},  {"ɿ", 416, 1585}, {"ʅ", 375, 2129}};
constexpr AverageVowel kMandarinChildren[] = {{"i", 392, 3236},  {"u", 564, 807},  {"y", 397, 2725},
                                              {"a", 1192, 1292}, {"o", 849, 1013}, {"ɤ", 876, 1037},
                                              {"e", 747, 2555},  {"ɿ", 441, 1734}, {"ʅ", 410, 2443}};
constexpr AverageVowel kEnglishMen[] = {
    {"i", 270, 2290}, {"ɪ", 390, 1990}, {"ɛ", 530, 1840}, {"æ", 660, 1720}, {"ɑ", 730, 1090},
    {"ɔ", 570, 840},  {"ʊ", 440, 1020}, {"u", 300, 870},  {"ʌ", 640, 1190}, {"ɝ", 490, 1350}};
constexpr AverageVowel kEnglishWomen[] = {
    {"i", 310, 2790}, {"ɪ", 430, 2480}, {"ɛ", 610, 2330}, {"æ", 860, 2050}, {"ɑ", 850, 1220},
    {"ɔ", 590, 920},  {"ʊ", 470, 1160}, {"u", 370, 950},  {"ʌ", 760, 1400}, {"ɝ", 500, 1640}};
constexpr AverageVowel kEnglishChildren[] = {
    {"i", 370, 3200}, {"ɪ", 530, 2730}, {"ɛ", 690, 2610}, {"æ", 1010, 2320}, {"ɑ", 1030, 1370},
    {"ɔ", 680, 1060}, {"ʊ", 560, 1410}, {"u", 430, 1170}, {"ʌ", 850, 1590},  {"ɝ", 560, 1820}};

constexpr UiText kNames[kSpeakerClasses] = {"普通话，男", "普通话，女", "普通话，儿童",
                                            "英语，男",   "英语，女",   "英语，儿童"};
constexpr std::span<const AverageVowel> kTables[kSpeakerClasses] = {
    kMandarinMen, kMandarinWomen, kMandarinChildren, kEnglishMen, kEnglishWomen, kEnglishChildren};

}  // namespace

UiText SpeakerClassName(int speakerClass) { return kNames[speakerClass]; }

std::span<const AverageVowel> AverageVowels(int speakerClass) { return kTables[speakerClass]; }

}  // namespace parlowen
