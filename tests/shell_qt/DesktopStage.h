// The desktop as the stage of a script: what a script says is done with menu, mouse, keys and buttons, and its answers
// are typed into the real dialogs.
#pragma once
#include <QObject>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <utility>

#include "shell/headless/ScriptStage.h"
#include "shell/qt/MainWindow.h"
#include "shell/qt/Preferences.h"

namespace parlowen {

/// The desktop's window, which writes down what happens and answers for the user. What the desktop asks beyond the
/// script (about loss, about replacing) is answered by the last button before Cancel: go on.
class AnsweredWindow : public QtWindow, public ScriptTalk {
 public:
  AnsweredWindow(QWidget& host, ActionGate& gate, Preferences& preferences, std::ostream& events);

  void ShowMessage(const std::string& text, const std::string& caption, Icon icon) override;
  bool AskYesNo(const std::string& text, const std::string& caption) override;
  std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) override { return AskFile(dialog, false); }
  std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) override { return AskFile(dialog, true); }
  bool AskInput(InputForm& form) override;
  void ShowStatus(const std::string& text) override;
  void SetCaption(const std::string& text) override;
  void OpenInEditor(const std::string& path) override;
  void OpenToolWindow(std::unique_ptr<ToolWindow> tool) override;
  void RunModal(ToolWindow& tool) override;
  void CopyRegion(const PaneRegion& region) override;
  void Quit() override;
  bool GivenUp() const override { return !failure().empty(); }
  int Choose(const std::string& text, const std::string& caption, std::span<const UiText> buttons,
             int byDefault, QWidget* parent) override;

  ToolWidget* WidgetOf(const ToolWindow& tool) const;
  /// What was asked beyond the script, and which forms were refused, a line each.
  const std::string& asked() const { return asked_; }

  /// Fills the next form, in place of the script: the desktop's own question for a selection.
  std::function<void(InputForm& form)> fillForm;
  std::function<void(QWidget& form)> onForm;  ///< it has come up

 protected:
  void AfterClosed(const ToolWindow& tool) override { NoteClosed(tool); }

 private:
  std::optional<FileChoice> AskFile(const FileDialog& dialog, bool save);
  /// Does something to the dialog that is about to open, once it waits; it is to be closed then.
  void WhenOpen(std::function<void(QWidget&)> act);
  std::string asked_;
};

/// What several places showed, a line for every change of one of them; a place shows nothing at first.
class Changes {
 public:
  void See(const std::string& where, const std::string& what) {
    std::string& last = last_[where];
    if (std::exchange(last, what) != what) text_ += where + ": " + what + "\n";
  }
  const std::string& Text() const { return text_; }

 private:
  std::map<std::string, std::string> last_;
  std::string text_;
};

class DesktopStage : public QObject, public ScriptStage {
 public:
  /// The story names the files of PARLOWEN_RECORDS.
  DesktopStage(std::ostream& events, const QString& settings, int paneWidth, std::string story);
  ~DesktopStage() override;

  Workstation& Station() override { return window_.Station(); }
  ScriptTalk& Talk() override { return *dialogs_; }
  const std::string& Asked() const { return dialogs_->asked(); }
  /// What the pointer would have read after each step, and the overview.
  const std::string& Seen() const { return seen_.Text(); }
  /// Bytes and digest of the records of what the widgets painted, and what stood on labels and buttons.
  const std::string& Painted() const { return painted_.Text(); }
  bool Choose(int command) override;
  void Select(int start, int end) override;
  void Click(Pane pane, Point at, MouseButton button, bool shift) override;
  void EditLabel(Point at) override;
  bool KeyInLabels(const std::string& key) override;
  void ClickTool(ToolWindow& tool, Point at, MouseButton button, bool shift) override;
  void Key(const std::string& key) override;
  void Press(ToolWindow& tool, const ToolControl& control) override;
  void CloseTool() override;
  void InputDevicesChanged() override { window_.InputDevicesChanged(); }
  void Settle() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FitPanes(int paneWidth);
  Point InLabels(Point at);
  void LookAtAPane();
  void PointAtAll();
  void PointAtAPlace();
  void RecordAll();
  void Keep(const std::string& where, const std::string& text);
  void Record(const std::string& where, QWidget& widget, const std::string& behind = {});

  const std::string story_;
  Preferences preferences_;
  AnsweredWindow* dialogs_ = nullptr;
  MainWindow window_;
  PaneWidget* dragged_ = nullptr;  ///< where a region was begun, between its corners
  std::size_t looks_ = 0, records_ = 0;
  Changes seen_, painted_;
};

}  // namespace parlowen
