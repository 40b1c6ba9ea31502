#include "shell/headless/ScriptTalk.h"

#include <algorithm>

#include "base/Files.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

const char* IconName(Icon icon) {
  constexpr const char* kNames[] = {"none", "info", "question", "warning", "error"};
  return kNames[static_cast<int>(icon)];
}

JsonObject Event(const char* name) { return JsonObject().Text("event", name); }

std::string RadioName(const FormField& field) {
  return field.control != 0 ? std::to_string(field.control) : field.label;
}

/// The longest beginning of a UTF-8 text whose GBK form fits the field.
std::string FittedText(const std::string& text, const FormField& field) {
  if (field.maxGbkBytes <= 0) return text;
  std::string fitted;
  std::size_t bytes = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    TakeUtf8(text, at);
    const std::string character = text.substr(start, at - start);
    bytes += (field.phonetic ? IpaToGbk(character) : ToGbk(character)).size();
    if (bytes > static_cast<std::size_t>(field.maxGbkBytes)) break;
    fitted += character;
  }
  return fitted;
}

bool IsEdit(const FormField& field) {
  return field.kind == FieldKind::Text || field.kind == FieldKind::Number;
}

bool Choose(InputForm& form, const std::string& name) {
  const auto chosen = std::find_if(form.fields.begin(), form.fields.end(), [&](const FormField& field) {
    return field.kind == FieldKind::Radio && RadioName(field) == name;
  });
  if (chosen == form.fields.end()) return false;
  for (FormField& field : form.fields)
    if (field.kind == FieldKind::Radio && field.group == chosen->group) field.checked = false;
  chosen->checked = true;
  return true;
}

bool Step(InputForm& form, int direction, int count) {
  for (FormField& field : form.fields) {
    if (!field.step) continue;
    for (int i = 0; i < count; ++i) field.value = field.step(field.value, direction);
    return true;
  }
  return false;
}

std::string FieldsJson(const InputForm& form) {
  JsonObject fields;
  std::vector<std::pair<int, std::string>> groups;  // group, chosen button
  for (const FormField& field : form.fields) {
    if (IsEdit(field)) fields.Text(std::to_string(field.control), field.value);
    if (field.kind != FieldKind::Radio) continue;
    auto group =
        std::find_if(groups.begin(), groups.end(), [&](const auto& g) { return g.first == field.group; });
    if (group == groups.end()) group = groups.insert(groups.end(), {field.group, ""});
    if (field.checked) group->second = RadioName(field);
  }
  if (groups.size() == 1) fields.Text("choose", groups[0].second);
  if (groups.size() > 1)
    fields.Raw("choose", JsonList(groups, [](const auto& g) { return JsonString(g.second); }));
  return fields.Done();
}

}  // namespace

std::string ApplyEntries(const std::vector<std::string>& entries, InputForm& form) {
  for (const std::string& entry : entries) {
    const std::size_t equals = entry.find('=');
    const std::string name = equals == std::string::npos ? "" : entry.substr(0, equals);
    const std::string value = equals == std::string::npos ? entry : entry.substr(equals + 1);
    const auto edits = std::count_if(form.fields.begin(), form.fields.end(), IsEdit);
    if (name == "choose") {
      if (!Choose(form, value)) return "the dialog has no button " + value;
      continue;
    }
    if (name == "up" || name == "down") {
      const auto count = ParseInteger(value);
      if (!count || *count < 0 || *count > 10000) return "not a number of steps: " + value;
      if (!Step(form, name == "up" ? +1 : -1, *count)) return "the dialog has no scroll arrows";
      continue;
    }
    const auto control = ParseInteger(name);
    auto field = std::find_if(form.fields.begin(), form.fields.end(), [&](const FormField& f) {
      return IsEdit(f) && (control ? f.control == *control : edits == 1);
    });
    if (field == form.fields.end()) return "the dialog has no field for " + entry;
    // With a single field the whole word may be its text, an "=" included.
    field->value = FittedText(control ? value : entry, *field);
  }
  return {};
}

void ScriptTalk::PrintEvent(const JsonObject& event) {
  if (failure_.empty()) events_ << event.Done() << std::endl;
}

void ScriptTalk::PrintError(int line, const std::string& text) {
  events_ << Event("error").Integer("line", line).Text("text", text).Done() << std::endl;
}

void ScriptTalk::Fail(const std::string& text) {
  if (failure_.empty()) failure_ = text;
}

std::optional<ScriptAnswer> ScriptTalk::TakeAnswer() {
  if (!failure_.empty()) return {};
  if (answers_.empty()) {
    ranOutOfAnswers_ = true;
    return {};
  }
  ScriptAnswer answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

bool ScriptTalk::TakeYes() {
  const auto answer = TakeAnswer();
  const bool yes = answer && answer->kind == ScriptAnswer::Kind::Yes;
  if (answer && !yes && answer->kind != ScriptAnswer::Kind::No)
    Fail("a question took an answer that is not yes or no");
  return yes;
}

std::optional<std::string> ScriptTalk::TakePath() {
  const auto answer = TakeAnswer();
  const bool file = answer && answer->kind == ScriptAnswer::Kind::File;
  if (answer && !file && answer->kind != ScriptAnswer::Kind::Cancel)
    Fail("a file dialog took an answer that is no file");
  if (!file || answer->path.empty()) return {};
  return answer->path;
}

bool ScriptTalk::TakeEntries(InputForm& form) {
  const auto answer = TakeAnswer();
  const bool ok = answer && answer->kind == ScriptAnswer::Kind::Ok;
  if (answer && !ok && answer->kind != ScriptAnswer::Kind::Cancel)
    Fail("an input dialog took an answer that is neither ok nor cancel");
  if (!ok) return false;
  InputForm filled = form;
  const std::string wrong = ApplyEntries(answer->entries, filled);
  if (!wrong.empty()) {
    Fail(wrong);
    return false;
  }
  form = std::move(filled);
  return true;
}

FileChoice ScriptTalk::ChoiceOf(const FileDialog& dialog, std::string path) {
  if (!dialog.defaultExtension.empty() && FileNameOf(path).find('.') == std::string::npos)
    path += "." + dialog.defaultExtension;
  return {AbsolutePath(path), 0};
}

// --- Events

void ScriptTalk::PrintMessage(const std::string& text, const std::string& caption, Icon icon) {
  PrintEvent(Event("message").Text("icon", IconName(icon)).Text("caption", caption).Text("text", text));
}

void ScriptTalk::PrintQuestion(const std::string& text, const std::string& caption, bool yes) {
  PrintEvent(Event("message")
                 .Text("icon", IconName(Icon::Question))
                 .Text("caption", caption)
                 .Text("text", text)
                 .Text("answer", yes ? "yes" : "no"));
}

void ScriptTalk::PrintFileDialog(const char* kind, const FileDialog& dialog,
                                 const std::optional<std::string>& path) {
  PrintEvent(Event("dialog")
                 .Text("kind", kind)
                 .Text("title", dialog.title)
                 .Raw("filter", JsonList(dialog.kinds,
                                         [](const FileKind& row) {
                                           return "[" + JsonString(row.label.Get()) + "," +
                                                  JsonString(row.pattern) + "]";
                                         }))
                 .Text("answer", path ? *path : "cancel"));
}

void ScriptTalk::PrintInput(const InputForm& form, bool ok) {
  PrintEvent(Event("dialog")
                 .Text("kind", "input")
                 .Text("title", form.title)
                 .Raw("fields", FieldsJson(form))
                 .Text("answer", ok ? "ok" : "cancel"));
}

void ScriptTalk::PrintStatus(const std::string& text) { PrintEvent(Event("status").Text("text", text)); }

void ScriptTalk::PrintCaption(const std::string& text) { PrintEvent(Event("caption").Text("text", text)); }

void ScriptTalk::PrintEditor(const std::string& path) {
  PrintEvent(Event("editor").Text("file", FileNameOf(path)));
}

// --- Tool windows

void ScriptTalk::PrintWindow(const ToolWindow& tool, const char* state) {
  PrintEvent(Event("window").Text("name", tool.Name()).Text("state", state));
}

void ScriptTalk::NoteOpened(ToolWindow& tool, bool modal) {
  (modal ? modal_ : open_).push_back(&tool);
  PrintWindow(tool, "open");
}

void ScriptTalk::NoteClosed(const ToolWindow& tool) {
  PrintWindow(tool, "closed");
  const auto end = open_.begin() + static_cast<std::ptrdiff_t>(below_);
  if (std::find(open_.begin(), end, &tool) != end) --below_;
  std::erase(open_, &tool);
  std::erase(modal_, &tool);
}

ToolWindow* ScriptTalk::CurrentTool() const {
  if (InModal()) return modal_.back();
  return open_.empty() ? nullptr : open_.back();
}

ToolWindow* ScriptTalk::ToolNamed(const std::string& name) const {
  if (InModal() && modal_.back()->Name() == name) return modal_.back();
  const auto found =
      std::find_if(open_.begin(), open_.end(), [&](const ToolWindow* tool) { return tool->Name() == name; });
  return found == open_.end() ? nullptr : *found;
}

}  // namespace parlowen
