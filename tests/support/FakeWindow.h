#pragma once
#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "ui/Window.h"

namespace parlowen::testing {

/// A window that writes down what a user would see and answers from a queue: "yes", "no", "cancel",
/// "file:PATH", "raw:PATH" (the second filter), "ok:VALUE" (of the first field), "last:VALUE", "set:VALUE,VALUE" (of the first two).
/// With no answer left, everything is cancelled. It keeps the tool window that was opened last, as both programs do.
class FakeWindow : public Window {
 public:
  std::vector<std::string> log;
  std::deque<std::string> answers;
  std::unique_ptr<ToolWindow> tool;
  int repainted = 0;

  void ShowMessage(const std::string& text, const std::string& caption, Icon icon) override {
    constexpr const char* kIcons[] = {"none", "info", "question", "warning", "error"};
    log.push_back(std::string(kIcons[static_cast<int>(icon)]) + "|" + caption + "|" + text);
  }
  bool AskYesNo(const std::string& text, const std::string& caption) override {
    log.push_back("ask|" + caption + "|" + text);
    return Next() == "yes";
  }
  std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) override { return AskFile("open", dialog); }
  std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) override { return AskFile("save", dialog); }
  bool AskInput(InputForm& form) override {
    log.push_back("input|" + form.title + "|" + form.fields[0].label + form.fields[0].value);
    const std::string answer = Next();
    if (answer.starts_with("set:")) {
      const std::size_t comma = answer.find(',');
      form.fields[0].value = answer.substr(4, comma - 4);
      form.fields[1].value = answer.substr(comma + 1);
      return true;
    }
    const bool last = answer.starts_with("last:");
    if (!last && !answer.starts_with("ok:")) return false;
    (last ? form.fields.back() : form.fields[0]).value = answer.substr(answer.find(':') + 1);
    return true;
  }
  void ShowStatus(const std::string& text) override { log.push_back("status|" + text); }
  void SetCaption(const std::string& text) override { caption_ = text; }
  const std::string& Caption() const override { return caption_; }
  void OpenInEditor(const std::string& path) override { log.push_back("editor|" + path); }
  void Repaint(std::optional<Pane>) override { ++repainted; }
  void OpenToolWindow(std::unique_ptr<ToolWindow> opened) override {
    if (tool) tool->Closed(*this);
    tool = std::move(opened);
  }
  void CloseTool() { std::exchange(tool, nullptr)->Closed(*this); }
  void RunModal(ToolWindow&) override {}
  bool Progress(double) override { return true; }
  void CopyRegion(const PaneRegion&) override { log.push_back("region"); }
  void Quit() override { log.push_back("quit"); }

  /// What was written down since the last call.
  std::vector<std::string> Log() { return std::exchange(log, {}); }

 private:
  std::string Next() {
    if (answers.empty()) return "cancel";
    const std::string answer = answers.front();
    answers.pop_front();
    return answer;
  }
  std::optional<FileChoice> AskFile(const char* kind, const FileDialog& dialog) {
    log.push_back(std::string(kind) + "|" + dialog.title + "|" + dialog.proposed);
    const std::string answer = Next();
    if (answer.starts_with("file:")) return FileChoice{answer.substr(5), 0};
    if (answer.starts_with("raw:")) return FileChoice{answer.substr(4), 1};
    return {};
  }
  std::string caption_ = "Parlowen(Tessiran)";
};

using Texts = std::vector<std::string>;

}  // namespace parlowen::testing
