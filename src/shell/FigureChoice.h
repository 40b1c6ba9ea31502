#pragma once
#include <optional>
#include <string>
#include <vector>

#include "ui/InputForm.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

/// What becomes of a figure of the whole window.
enum class FigureOutput { Svg, Pdf, Png, Copy };

/// How a user wants the whole window as a figure.
struct FigureChoice {
  std::vector<Pane> panes = {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform};  ///< from the top
  double centimetres = 16;                                                                   ///< wide, 4..100
  double points = 9;  ///< type size, 4..36
  FigureOutput output = FigureOutput::Pdf;
  bool operator==(const FigureChoice&) const = default;
};

InputForm FigureForm(const FigureChoice& choice);

double CentimetresOf(double points);

/// What was entered, or what is wrong with it: then `choice` stays.
std::optional<UiText> TakeFigureForm(const InputForm& form, FigureChoice& choice);

/// A line that keeps a choice, and the choice that a line keeps: the usual one where it is none.
std::string FigureChoiceText(const FigureChoice& choice);
FigureChoice FigureChoiceFrom(const std::string& text);

}  // namespace parlowen
