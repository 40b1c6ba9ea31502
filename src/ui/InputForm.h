#pragma once
#include <functional>
#include <string>
#include <vector>

namespace parlowen {

enum class FieldKind { Text, Number, Radio, Tick, Label };

/// One control of an input dialog.
struct FormField {
  int control = 0;  ///< its number; 0 for radio buttons and labels without one
  FieldKind kind = FieldKind::Text;
  std::string label;      ///< beside a field, on a radio button, or the label's own text
  std::string value;      ///< what an edit field holds, UTF-8
  bool checked = false;   ///< radio buttons and ticks
  int group = 0;          ///< radio buttons with the same group exclude each other
  int maxGbkBytes = 0;    ///< the longest entry in GBK bytes; 0 for no limit
  bool phonetic = false;  ///< phonetic symbols may be entered: two GBK bytes each
  /// Set for a field with scroll arrows: its text after one step up (+1) or down (−1).
  std::function<std::string(const std::string& value, int direction)> step{};
};

/// A rectangle of the label pane, in its pixels, over which its text is edited.
struct FormPlace {
  int x = 0, y = 0, width = 0, height = 0;
  bool next = false;  ///< the user goes on to the next one
};

/// An input dialog as data: the window shows it, the handler reads the answers by control number.
struct InputForm {
  std::string title;
  std::vector<FormField> fields;
  FormPlace* place = nullptr;  ///< where a form of one field is filled in the drawing, on the desktop

  /// The text of the edit field with that number; "" when there is none.
  const std::string& ValueOf(int control) const;
  /// That text as a whole number: the digits it begins with, saturated; 0 when it is no number or negative.
  int CountOf(int control) const;
  /// Control numbers, or where 0 labels, tell which button of a group is on; −1 when none is.
  int CheckedIndex(int group = 0) const;
};

/// A form with one field, number 1000.
InputForm OneFieldForm(std::string title, std::string label, std::string value,
                       FieldKind kind = FieldKind::Number);

}  // namespace parlowen
