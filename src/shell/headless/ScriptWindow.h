#pragma once
#include <memory>
#include <string>
#include <vector>

#include "shell/headless/ScriptTalk.h"

namespace parlowen {

/// The window of the headless program: it shows nothing, and its questions are answered by the script.
class ScriptWindow : public Window, public ScriptTalk {
 public:
  using ScriptTalk::ScriptTalk;

  void CloseCurrentTool();

  void ShowMessage(const std::string& text, const std::string& caption, Icon icon) override;
  bool AskYesNo(const std::string& text, const std::string& caption) override;
  std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) override { return AskFile("open", dialog); }
  std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) override { return AskFile("save", dialog); }
  bool AskInput(InputForm& form) override;
  void ShowStatus(const std::string& text) override { PrintStatus(text); }
  void SetCaption(const std::string& text) override;
  const std::string& Caption() const override { return caption_; }
  void OpenInEditor(const std::string& path) override { PrintEditor(path); }
  void Repaint(std::optional<Pane>) override {}
  void OpenToolWindow(std::unique_ptr<ToolWindow> tool) override;
  bool CloseToolWindow(const std::string& name) override;
  void RunModal(ToolWindow& tool) override;
  bool Progress(double) override { return !GivenUp(); }
  bool GivenUp() const override { return !failure().empty(); }
  void CopyRegion(const PaneRegion& region) override;
  void Quit() override { End(); }

 private:
  std::optional<FileChoice> AskFile(const char* kind, const FileDialog& dialog);
  void CloseTool(std::size_t index);

  std::vector<std::unique_ptr<ToolWindow>> tools_;
  std::string caption_ = "Parlowen(Tessiran)";
};

}  // namespace parlowen
