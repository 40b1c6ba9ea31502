#pragma once
#include <deque>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "base/JsonLine.h"
#include "shell/headless/Script.h"
#include "ui/Window.h"

namespace parlowen {

/// What a script says and hears, whatever window stands behind it: the answers queued for its questions, a line of JSON
/// for everything that a user would see, the tool windows that are open.
class ScriptTalk {
 public:
  explicit ScriptTalk(std::ostream& events) : events_(events) {}

  void Queue(ScriptAnswer answer) { answers_.push_back(std::move(answer)); }
  void PrintEvent(const JsonObject& event);
  /// The `error` event; printed whatever has failed before.
  void PrintError(int line, const std::string& text);

  /// The script is to end.
  void End() { ended_ = true; }
  bool ended() const { return ended_; }
  bool ranOutOfAnswers() const { return ranOutOfAnswers_; }
  /// What an answer of the wrong kind did; "" while all is well. From then on nothing is printed.
  const std::string& failure() const { return failure_; }

  /// The one that is modal, else the one opened last; null for none.
  ToolWindow* CurrentTool() const;
  bool InModal() const { return !modal_.empty(); }
  ToolWindow* ToolNamed(const std::string& name) const;
  // The label pane can have the keys, until a tool window opens or is clicked; they are its again when that closes.
  void TakeKeysFromTools() { below_ = open_.size(); }
  void GiveKeysToTools() { below_ = 0; }
  bool ToolHasKeys() const { return InModal() || open_.size() > below_; }
  /// Runs the steps that belong to a modal tool window until it is closed; set by whoever reads the script.
  std::function<void()> runModalSteps;

 protected:
  // The next answer, for the window that asks. With none left, or one of the wrong kind, everything is cancelled.

  bool TakeYes();
  /// As it is written; nothing: cancelled.
  std::optional<std::string> TakePath();
  /// Fills the form; false, and the form as it was: cancelled.
  bool TakeEntries(InputForm& form);
  /// What a dialog that checks nothing makes of a path as it is written.
  static FileChoice ChoiceOf(const FileDialog& dialog, std::string path);

  void PrintMessage(const std::string& text, const std::string& caption, Icon icon);
  void PrintQuestion(const std::string& text, const std::string& caption, bool yes);
  void PrintFileDialog(const char* kind, const FileDialog& dialog, const std::optional<std::string>& path);
  /// `form` as it was when the dialog opened.
  void PrintInput(const InputForm& form, bool ok);
  void PrintStatus(const std::string& text);
  void PrintCaption(const std::string& text);
  void PrintEditor(const std::string& path);
  void NoteOpened(ToolWindow& tool, bool modal);
  void NoteClosed(const ToolWindow& tool);

 private:
  std::optional<ScriptAnswer> TakeAnswer();
  void Fail(const std::string& text);
  void PrintWindow(const ToolWindow& tool, const char* state);

  std::ostream& events_;
  std::deque<ScriptAnswer> answers_;
  std::vector<ToolWindow*> open_, modal_;  ///< in the order in which they were opened
  std::size_t below_ = 0;                  ///< so many of `open_` have no keys
  std::string failure_;
  bool ended_ = false, ranOutOfAnswers_ = false;
};

/// Applies the words of an `ok` answer to a form; "" or what is wrong with them.
std::string ApplyEntries(const std::vector<std::string>& entries, InputForm& form);

}  // namespace parlowen
