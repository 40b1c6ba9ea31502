#include "shell/headless/ScriptWindow.h"

#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kRegionCopied = "区域已复制到剪贴板";

}  // namespace

void ScriptWindow::ShowMessage(const std::string& text, const std::string& caption, Icon icon) {
  PrintMessage(text, caption, icon);
}

bool ScriptWindow::AskYesNo(const std::string& text, const std::string& caption) {
  const bool yes = TakeYes();
  PrintQuestion(text, caption, yes);
  return yes;
}

std::optional<FileChoice> ScriptWindow::AskFile(const char* kind, const FileDialog& dialog) {
  const auto path = TakePath();
  PrintFileDialog(kind, dialog, path);
  if (!path) return {};
  return ChoiceOf(dialog, *path);
}

bool ScriptWindow::AskInput(InputForm& form) {
  const InputForm opened = form;
  const bool ok = TakeEntries(form);
  PrintInput(opened, ok);
  return ok;
}

void ScriptWindow::SetCaption(const std::string& text) {
  if (text == caption_) return;
  caption_ = text;
  PrintCaption(text);
}

void ScriptWindow::CopyRegion(const PaneRegion&) { ShowStatus(kRegionCopied); }

void ScriptWindow::CloseTool(std::size_t index) {
  const std::unique_ptr<ToolWindow> tool = std::move(tools_[index]);
  tools_.erase(tools_.begin() + static_cast<std::ptrdiff_t>(index));
  tool->Closed(*this);
  NoteClosed(*tool);
}

void ScriptWindow::CloseCurrentTool() {
  if (!tools_.empty()) CloseTool(tools_.size() - 1);
}

void ScriptWindow::OpenToolWindow(std::unique_ptr<ToolWindow> tool) {
  CloseToolWindow(tool->Name());
  NoteOpened(*tool, false);
  tools_.push_back(std::move(tool));
}

bool ScriptWindow::CloseToolWindow(const std::string& name) {
  for (std::size_t i = 0; i < tools_.size(); ++i) {
    if (tools_[i]->Name() != name) continue;
    CloseTool(i);
    return true;
  }
  return false;
}

void ScriptWindow::RunModal(ToolWindow& tool) {
  NoteOpened(tool, true);
  if (runModalSteps) runModalSteps();
  tool.Closed(*this);
  NoteClosed(tool);
}

}  // namespace parlowen
