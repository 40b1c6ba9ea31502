#include "spectral/SpectralPlot.h"

#include <cmath>

#include "base/Format.h"

namespace parlowen {

PolylineMark CurveOf(const SpectralPlot& plot, const double* levels, Colour colour) {
  PolylineMark curve{{}, colour};
  for (int k = 0; k < plot.points; ++k)
    if (std::isfinite(levels[k])) curve.points.push_back({plot.XOf(k), plot.YOf(levels[k])});
  return curve;
}

void AddAxes(Picture& picture, const SpectralPlot& plot, int kiloHertz, int step, int top,
             double unitsPerDecibel) {
  for (int level = 0; level <= top; level += step) {
    const int y = plot.YOf(level * unitsPerDecibel);
    picture.Add(LineMark{{plot.left, y}, {plot.Right(), y}, level == 0 ? colours::kText : colours::kGrid});
    picture.Add(TextMark{plot.left - 6, y + 4, Format("%d", level), colours::kText, 10, Anchor::Right,
                         Face::Figures});
  }
  for (int k = 1; k <= kiloHertz; ++k) {
    const int x = plot.XOf(k * 512000.0 / plot.sampleRate);
    picture.Add(LineMark{{x, plot.base}, {x, plot.base + 5}, colours::kText});
    picture.Add(
        TextMark{x, plot.base + 18, Format("%1d", k), colours::kText, 11, Anchor::Middle, Face::Figures});
  }
  picture.Add(
      TextMark{plot.Right() + 8, plot.base + 18, "F(KHz)", colours::kText, 11, Anchor::Left, Face::Figures});
  picture.Add(TextMark{plot.left - 6, plot.YOf(top * unitsPerDecibel) - 12, "P(db)", colours::kText, 11,
                       Anchor::Middle, Face::Figures});
}

void AddLine(Picture& picture, int x, int y, std::string text, Colour colour) {
  picture.Add(TextMark{x, y, std::move(text), colour, 13});
}

}  // namespace parlowen
