#pragma once
#include <deque>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "shell/headless/JsonLine.h"
#include "shell/headless/Script.h"
#include "ui/Window.h"

namespace parlowen {

/// The window of the headless program: questions are answered from a queue, everything that a user would see
/// becomes a line of JSON.
class ScriptWindow : public Window {
 public:
  explicit ScriptWindow(std::ostream& events) : events_(events) {}

  void Queue(ScriptAnswer answer) { answers_.push_back(std::move(answer)); }
  void PrintEvent(const JsonObject& event);
  /// The `error` event; printed whatever has failed before.
  void PrintError(int line, const std::string& text);

  bool quit() const { return quit_; }
  bool ranOutOfAnswers() const { return ranOutOfAnswers_; }
  /// What an answer of the wrong kind did; "" while all is well. From then on nothing is printed.
  const std::string& failure() const { return failure_; }

  ToolWindow* CurrentTool() const;
  bool InModal() const { return modal_ != nullptr; }
  ToolWindow* ToolNamed(const std::string& name) const;
  void CloseCurrentTool();
  /// Runs the steps that belong to a modal tool window until it is closed; set by whoever reads the script.
  std::function<void()> runModalSteps;

  void ShowMessage(const std::string& text, const std::string& caption, Icon icon) override;
  bool AskYesNo(const std::string& text, const std::string& caption) override;
  std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) override { return AskFile("open", dialog); }
  std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) override { return AskFile("save", dialog); }
  bool AskInput(InputForm& form) override;
  void ShowStatus(const std::string& text) override;
  void SetCaption(const std::string& text) override;
  const std::string& Caption() const override { return caption_; }
  void OpenInEditor(const std::string& path) override;
  void Repaint(std::optional<Pane>) override {}
  void OpenToolWindow(std::unique_ptr<ToolWindow> tool) override;
  bool CloseToolWindow(const std::string& name) override;
  void RunModal(ToolWindow& tool) override;
  bool Progress(double) override { return !GivenUp(); }
  bool GivenUp() const override { return !failure_.empty(); }
  void CopyRegion(const PaneRegion& region) override;
  void Quit() override { quit_ = true; }

 private:
  std::optional<ScriptAnswer> TakeAnswer();
  std::optional<FileChoice> AskFile(const char* kind, const FileDialog& dialog);
  void Fail(const std::string& text);
  void PrintWindow(const ToolWindow& tool, const char* state);
  void CloseTool(std::size_t index);

  std::ostream& events_;
  std::deque<ScriptAnswer> answers_;
  std::vector<std::unique_ptr<ToolWindow>> tools_;  ///< the last one opened is the current one
  ToolWindow* modal_ = nullptr;
  std::string caption_ = "Parlowen(Tessiran)";
  std::string failure_;
  bool quit_ = false, ranOutOfAnswers_ = false;
};

/// Applies the words of an `ok` answer to a form; "" or what is wrong with them.
std::string ApplyEntries(const std::vector<std::string>& entries, InputForm& form);

}  // namespace parlowen
