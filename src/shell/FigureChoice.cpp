#include "shell/FigureChoice.h"

#include <cstdlib>
#include <limits>

#include "base/Format.h"
#include "ui/Figure.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "整个窗口的图形", kPanesLabel = "包括：";
constexpr UiText kWidthLabel = "宽度（厘米，4--100）", kTextLabel = "字号（磅，4--36）";
constexpr UiText kNoPane = "请至少选择一个窗", kWrongWidth = "宽度应为 4--100 厘米",
                 kWrongText = "字号应为 4--36 磅", kLargeText = "字号太大，这个宽度放不下图";
constexpr UiText kOutputs[] = {"SVG", "PDF", "PNG，300 dpi", "复制到剪贴板"};  // in the order of FigureOutput

constexpr int kWidthField = 1000, kTextField = 1001;
constexpr double kLeastWidth = 4, kMostWidth = 100, kLeastText = 4, kMostText = 36;

struct FigurePaneRow {
  Pane pane;
  char letter;  ///< in a kept line
  UiText name;
};
constexpr FigurePaneRow kPanes[] = {{Pane::Amplitude, 'a', "幅度/能量"},
                                    {Pane::Pitch, 'p', "基频"},
                                    {Pane::Analysis, 's', "谱图"},
                                    {Pane::Waveform, 'w', "波形"},
                                    {Pane::Labels, 'l', "标注"}};
constexpr char kOutputLetters[] = {'v', 'f', 'g', 'c'};

bool Has(const FigureChoice& choice, Pane pane) {
  for (const Pane chosen : choice.panes)
    if (chosen == pane) return true;
  return false;
}

/// Also no number is outside.
bool Inside(double value, double least, double most) { return value >= least && value <= most; }

/// No number where something stands behind it.
double NumberIn(const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  return *end == '\0' ? value : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

InputForm FigureForm(const FigureChoice& choice) {
  InputForm form;
  form.title = kTitle;
  const auto add = [&form](FieldKind kind, const std::string& label) -> FormField& {
    FormField& field = form.fields.emplace_back();
    field.kind = kind;
    field.label = label;
    return field;
  };
  add(FieldKind::Label, kPanesLabel);
  for (const FigurePaneRow& row : kPanes) add(FieldKind::Tick, row.name).checked = Has(choice, row.pane);
  FormField& width = add(FieldKind::Number, kWidthLabel);
  width.control = kWidthField;
  width.value = Format("%g", choice.centimetres);
  FormField& text = add(FieldKind::Number, kTextLabel);
  text.control = kTextField;
  text.value = Format("%g", choice.points);
  for (int i = 0; i < 4; ++i)
    add(FieldKind::Radio, kOutputs[i]).checked = choice.output == static_cast<FigureOutput>(i);
  return form;
}

std::optional<UiText> TakeFigureForm(const InputForm& form, FigureChoice& choice) {
  FigureChoice taken = choice;
  taken.panes.clear();
  std::size_t tick = 0;
  for (const FormField& field : form.fields)
    if (field.kind == FieldKind::Tick && field.checked && tick < std::size(kPanes)) {
      taken.panes.push_back(kPanes[tick++].pane);
    } else if (field.kind == FieldKind::Tick) {
      ++tick;
    }
  taken.centimetres = NumberIn(form.ValueOf(kWidthField));
  taken.points = NumberIn(form.ValueOf(kTextField));
  if (const int output = form.CheckedIndex(); output >= 0) taken.output = static_cast<FigureOutput>(output);
  if (taken.panes.empty()) return kNoPane;
  if (!Inside(taken.centimetres, kLeastWidth, kMostWidth)) return kWrongWidth;
  if (!Inside(taken.points, kLeastText, kMostText)) return kWrongText;
  if (CentimetresOf(taken.points) > LargestFigureText(taken.centimetres)) return kLargeText;
  choice = taken;
  return {};
}

double CentimetresOf(double points) { return points / 72 * 2.54; }

std::string FigureChoiceText(const FigureChoice& choice) {
  std::string letters;
  for (const FigurePaneRow& row : kPanes)
    if (Has(choice, row.pane)) letters += row.letter;
  return Format("%s %g %g %c", letters.c_str(), choice.centimetres, choice.points,
                kOutputLetters[static_cast<int>(choice.output)]);
}

FigureChoice FigureChoiceFrom(const std::string& text) {
  FigureChoice choice;
  const std::size_t first = text.find(' ');
  const std::size_t second = first == std::string::npos ? first : text.find(' ', first + 1);
  const std::size_t third = second == std::string::npos ? second : text.find(' ', second + 1);
  if (third == std::string::npos || third + 2 != text.size()) return choice;
  InputForm form = FigureForm(choice);
  std::size_t tick = 0;
  for (FormField& field : form.fields) {
    if (field.kind == FieldKind::Tick)
      field.checked = text.substr(0, first).find(kPanes[tick++].letter) != std::string::npos;
    if (field.control == kWidthField) field.value = text.substr(first + 1, second - first - 1);
    if (field.control == kTextField) field.value = text.substr(second + 1, third - second - 1);
  }
  TakeFigureForm(form, choice);
  for (int i = 0; i < 4; ++i)
    if (text.back() == kOutputLetters[i]) choice.output = static_cast<FigureOutput>(i);
  return choice;
}

}  // namespace parlowen
