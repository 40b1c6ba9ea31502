#include "annotation/InsertedText.h"

#include <iterator>

#include "annotation/Annotations.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "插入字符";
constexpr UiText kLabel = "输入插入的内容（最长9字符）：";
constexpr UiText kSizes[] = {"大", "中", "小"};
constexpr int kTextField = 1028, kFirstSize = 1010;

InputForm TextForm(int height) {
  FormField text;
  text.control = kTextField;
  text.label = kLabel;
  text.maxGbkBytes = kAnnotationBytes;
  text.phonetic = true;
  InputForm form{kTitle, {text}};
  for (std::size_t i = 0; i < std::size(kSizes); ++i) {
    FormField size;
    size.control = kFirstSize + static_cast<int>(i);
    size.kind = FieldKind::Radio;
    size.label = kSizes[i];
    size.checked = kTextHeights[i] == height;
    form.fields.push_back(size);
  }
  return form;
}

}  // namespace

std::string StorableText(const std::string& text) {
  return IpaFromGbk(CutGbk(IpaToGbk(text), kAnnotationBytes));
}

std::optional<InsertedText> AskInsertedText(Window& window, int height) {
  InputForm form = TextForm(height);
  while (window.AskInput(form)) {
    const std::string& text = form.ValueOf(kTextField);
    if (text.empty()) return {};
    const int size = form.CheckedIndex();
    if (HasIpaCodes(text)) return InsertedText{StorableText(text), size < 0 ? height : kTextHeights[size]};
    window.Notify(messages::kNoGbkCode);
  }
  return {};
}

}  // namespace parlowen
