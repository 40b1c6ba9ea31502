#pragma once
#include <limits>
#include <string_view>
#include <vector>

namespace parlowen {

/// What can be asked for; a set of them is the sum of 1 << group.
enum class MeasureGroup { Time, Level, Pitch, Formants, Voice, Consonant };
inline constexpr std::string_view kMeasureGroups[] = {"time",     "level", "pitch",
                                                      "formants", "voice", "consonant"};
using MeasureSet = unsigned;
constexpr MeasureSet SetOf(MeasureGroup group) { return 1u << static_cast<unsigned>(group); }
inline constexpr MeasureSet kAllMeasures = (1u << std::size(kMeasureGroups)) - 1;

inline constexpr double kNoMeasure = std::numeric_limits<double>::quiet_NaN();

/// The measures of one interval, kNoMeasure where there is none. docs/measure.md defines them.
struct Measures {
  double levelMean = kNoMeasure, levelMax = kNoMeasure;  ///< dB
  double voiced = kNoMeasure;                            ///< share of the frames, 0..1
  double f0Mean = kNoMeasure, f0Sd = kNoMeasure, f0Min = kNoMeasure, f0Max = kNoMeasure,
         f0Median = kNoMeasure;                                  ///< Hz
  double stMean = kNoMeasure, stRange = kNoMeasure;              ///< semitones above 64 Hz; semitones
  std::vector<double> contour{};                                 ///< Hz, one value a point
  double f1 = kNoMeasure, f2 = kNoMeasure, f3 = kNoMeasure;      ///< Hz
  double b1 = kNoMeasure, b2 = kNoMeasure, b3 = kNoMeasure;      ///< Hz
  double jitter = kNoMeasure, shimmer = kNoMeasure;              ///< %
  double hnr = kNoMeasure, cpp = kNoMeasure, h1h2 = kNoMeasure;  ///< dB
  double gravity = kNoMeasure, dispersion = kNoMeasure;          ///< band numbers, bands
  double intensity = kNoMeasure;                                 ///< dB
};

/// A column of the table, and how many decimals it is rounded to: fewer than could differ between two
/// machines.
struct MeasureColumn {
  const char* name;
  MeasureGroup group;
  double Measures::*value;
  int decimals;
};
/// In the order of the table; the points of the contour stand behind the last one of the pitch.
inline constexpr MeasureColumn kMeasureColumns[] = {
    {"level_mean", MeasureGroup::Level, &Measures::levelMean, 3},
    {"level_max", MeasureGroup::Level, &Measures::levelMax, 3},
    {"voiced", MeasureGroup::Pitch, &Measures::voiced, 4},
    {"f0_mean", MeasureGroup::Pitch, &Measures::f0Mean, 3},
    {"f0_sd", MeasureGroup::Pitch, &Measures::f0Sd, 3},
    {"f0_min", MeasureGroup::Pitch, &Measures::f0Min, 3},
    {"f0_max", MeasureGroup::Pitch, &Measures::f0Max, 3},
    {"f0_median", MeasureGroup::Pitch, &Measures::f0Median, 3},
    {"f0_st_mean", MeasureGroup::Pitch, &Measures::stMean, 4},
    {"f0_st_range", MeasureGroup::Pitch, &Measures::stRange, 4},
    {"f1", MeasureGroup::Formants, &Measures::f1, 2},
    {"f2", MeasureGroup::Formants, &Measures::f2, 2},
    {"f3", MeasureGroup::Formants, &Measures::f3, 2},
    {"b1", MeasureGroup::Formants, &Measures::b1, 2},
    {"b2", MeasureGroup::Formants, &Measures::b2, 2},
    {"b3", MeasureGroup::Formants, &Measures::b3, 2},
    {"jitter", MeasureGroup::Voice, &Measures::jitter, 4},
    {"shimmer", MeasureGroup::Voice, &Measures::shimmer, 4},
    {"hnr", MeasureGroup::Voice, &Measures::hnr, 3},
    {"cpp", MeasureGroup::Voice, &Measures::cpp, 3},
    {"h1_h2", MeasureGroup::Voice, &Measures::h1h2, 3},
    {"gravity", MeasureGroup::Consonant, &Measures::gravity, 4},
    {"dispersion", MeasureGroup::Consonant, &Measures::dispersion, 4},
    {"intensity", MeasureGroup::Consonant, &Measures::intensity, 4},
};

inline constexpr int kFewestPoints = 2, kMostPoints = 100;

/// What is measured, and how.
struct MeasureSettings {
  MeasureSet measures = kAllMeasures;
  int points = 11;  ///< of the contour, kFewestPoints..kMostPoints
};

}  // namespace parlowen
