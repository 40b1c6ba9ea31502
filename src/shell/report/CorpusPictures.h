#pragma once
#include <span>
#include <vector>

#include "shell/report/CorpusValues.h"
#include "ui/Picture.h"
#include "ui/Plot.h"

namespace parlowen {

inline constexpr int kCorpusPictureWidth = 760, kCorpusPictureHeight = 420;

/// A logarithmic scale whose ends, of the series 1, 2, 5·10^k, hold all values; false without any. Values are above 0.
bool ScaleAround(std::span<const float> values, PlotScale& scale);

/// Shares in percent of the values in equal steps of the scale; values beyond its ends count in the outer steps.
std::vector<double> SharesOf(std::span<const float> values, const PlotScale& scale, int steps);

/// Distributions of duration and of mean F0, a line for every tier, over a logarithmic axis.
Picture DurationDistribution(const CorpusValues& values);
Picture F0Distribution(const CorpusValues& values);

/// F1 downwards over F2 leftwards, a dot a row, once for each place; the outermost hundredth at either end of an axis may
/// lie outside, which is counted. The names of the labels with at least five rows stand at their medians, the most
/// frequent 24 of them.
Picture FormantDistribution(const CorpusValues& values);

}  // namespace parlowen
