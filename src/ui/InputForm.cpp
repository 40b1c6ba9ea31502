#include "ui/InputForm.h"

#include <climits>

namespace parlowen {

const std::string& InputForm::ValueOf(int control) const {
  static const std::string kNone;
  for (const FormField& field : fields)
    if (field.control == control && (field.kind == FieldKind::Text || field.kind == FieldKind::Number))
      return field.value;
  return kNone;
}

int InputForm::CountOf(int control) const {
  const std::string& text = ValueOf(control);
  std::size_t at = text.find_first_not_of(" \t");
  if (at != std::string::npos && text[at] == '+') ++at;
  long long count = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    count = count * 10 + (text[at] - '0');
    if (count > INT_MAX) return INT_MAX;
  }
  return static_cast<int>(count);
}

int InputForm::CheckedIndex(int group) const {
  int index = 0;
  for (const FormField& field : fields) {
    if (field.kind != FieldKind::Radio || field.group != group) continue;
    if (field.checked) return index;
    ++index;
  }
  return -1;
}

InputForm OneFieldForm(std::string title, std::string label, std::string value, FieldKind kind) {
  InputForm form;
  form.title = std::move(title);
  FormField field;
  field.control = 1000;
  field.kind = kind;
  field.label = std::move(label);
  field.value = std::move(value);
  form.fields.push_back(std::move(field));
  return form;
}

}  // namespace parlowen
