#pragma once
#include <cstddef>
#include <string>

namespace parlowen {

/// A text of the interface, in Chinese: menus, boxes, hints, windows, status lines. The type is the door of translation:
/// whatever is shown leaves it through `Get()` or the conversion, which today return the text as it stands.
/// Formats go through it too: Format(kText.Get(), …).
class UiText {
 public:
  constexpr UiText() = default;
  constexpr UiText(const char* chinese)
      : chinese_(chinese) {}        // NOLINT: tables of texts are written as literals
  UiText(std::nullptr_t) = delete;  // where there may be none: std::optional

  /// At compile time too: so the compiler checks a format against what is put into it.
  constexpr const char* Get() const { return chinese_; }
  operator std::string() const { return Get(); }  // NOLINT: a text is shown wherever a string is

 private:
  const char* chinese_ = "";
};

/// A text that goes into a data file or a text export: the same in every language.
using FileText = const char*;

}  // namespace parlowen
