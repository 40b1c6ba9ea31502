#include "spectral/SpectralPlot.h"

#include <cmath>

#include "base/Format.h"
#include "ui/Plot.h"

namespace parlowen {
namespace {

constexpr UiText kFrequencyUnit = "F(KHz)", kLevelUnit = "P(db)";
constexpr PlotStyle kStyle{.text = 11, .name = 11, .tick = 5};

}  // namespace

PolylineMark CurveOf(const SpectralPlot& plot, const double* levels, Colour colour) {
  PolylineMark curve{{}, colour};
  for (int k = 0; k < plot.points; ++k)
    if (std::isfinite(levels[k])) curve.points.push_back({plot.XOf(k), plot.YOf(levels[k])});
  return curve;
}

void AddAxes(Picture& picture, const SpectralPlot& plot, int kiloHertz, int step, int top,
             double unitsPerDecibel) {
  std::vector<Tick> levels, frequencies;
  for (int level = step; level <= top; level += step)
    levels.push_back({plot.YOf(level * unitsPerDecibel), static_cast<double>(level), Format("%d", level)});
  AddLevelAxis(picture, levels, {plot.left, plot.Right(), plot.left - 6}, kStyle);
  for (int k = 1; k <= kiloHertz; ++k)
    frequencies.push_back(
        {plot.XOf(k * 512000.0 / plot.sampleRate), static_cast<double>(k), Format("%1d", k)});
  AddColumnAxis(picture, {0, 1, plot.left, plot.Right() + 1}, frequencies, plot.base, kStyle, kFrequencyUnit);
  picture.Add(
      TextMark{plot.left - 6, plot.base + 4, "0", colours::kText, kStyle.text, Anchor::Right, Face::Figures});
  picture.Add(TextMark{plot.left - 6, plot.YOf(top * unitsPerDecibel) - 12, kLevelUnit, colours::kText,
                       kStyle.name, Anchor::Middle, Face::Figures});
}

void AddLine(Picture& picture, int x, int y, std::string text, Colour colour) {
  picture.Add(TextMark{x, y, std::move(text), colour, 13});
}

}  // namespace parlowen
