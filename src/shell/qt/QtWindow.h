#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "shell/qt/ActionGate.h"
#include "ui/Window.h"

class QProgressDialog;
class QUrl;
class QWidget;

namespace parlowen {

class Preferences;
class ToolWidget;

/// The window that the handlers ask, made of dialogs over a host widget. What concerns the main window itself
/// (its caption, its panes, its end) goes out as signals.
class QtWindow : public QObject, public Window {
  Q_OBJECT
 public:
  QtWindow(QWidget& host, ActionGate& gate, Preferences& preferences);
  ~QtWindow() override;

  void ShowMessage(const std::string& text, const std::string& caption, Icon icon) override;
  bool AskYesNo(const std::string& text, const std::string& caption) override;
  std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) override;
  std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) override;
  bool AskInput(InputForm& form) override;
  void ShowStatus(const std::string& text) override;
  void SetCaption(const std::string& text) override;
  const std::string& Caption() const override { return caption_; }
  void Saved(const std::string& path) override;
  void OpenInEditor(const std::string& path) override;
  void Repaint(std::optional<Pane> pane = {}) override;
  void OpenToolWindow(std::unique_ptr<ToolWindow> tool) override;
  bool CloseToolWindow(const std::string& name) override;
  void RunModal(ToolWindow& tool) override;
  bool Progress(double share) override;
  void CopyRegion(const PaneRegion& region) override;
  void Quit() override;

  /// A question with buttons of its own: the index of the one that was pressed. The last one is Cancel, and
  /// Escape and the window's cross are it.
  virtual int Choose(const std::string& text, const std::string& caption, std::span<const UiText> buttons,
                     int byDefault, QWidget* parent = nullptr);
  /// True when no such file exists or the user lets it be replaced.
  bool MayReplace(const std::string& path, QWidget* parent = nullptr);

  /// Failures shown and file dialogs cancelled so far: a command that adds none has done its work.
  int Setbacks() const { return setbacks_; }
  int FilesSaved() const { return filesSaved_; }
  ToolWidget* FindToolWindow(const std::string& name) const;
  void CloseAllToolWindows();
  /// The cursor of a play has moved.
  void UpdatePlay() const;

  /// The answer to the next Yes/No question, given before it is asked; it is not shown then.
  std::optional<bool> answerNext;

  /// Called before a dialog or a modal tool window opens.
  std::function<void()> beforeModal;

  /// Fills a form with a place of its own there; false when it was cancelled. Without it, or while the place is out
  /// of sight, there is a dialog.
  std::function<bool(InputForm& form)> askInDrawing;

  /// The name that a save begins with whose handler proposes none; "" for none.
  std::function<std::string(const FileKind& kind)> nameFor;

  /// What hands a file to the system; true when something took it. Tests put their own here.
  std::function<bool(const QUrl&)> openExternally;
  /// Work shorter than this shows no progress.
  int quietMilliseconds = 500;

 Q_SIGNALS:
  void CaptionChanged(const QString& caption);
  void StatusShown(const QString& text);
  void RepaintAsked(std::optional<parlowen::Pane> pane);
  void FileChosen(const QString& path);  ///< in a file dialog
  void FileSaved(const QString& path);
  void EditorAsked();
  void RegionCopied(const parlowen::PaneRegion& region);
  void KeyUnused(const std::string& key);  ///< a key that a tool window had no use for
  void QuitAsked();

 protected:
  /// A tool that was not modal has closed and told its room so.
  virtual void AfterClosed(const ToolWindow&) {}

 private:
  struct OpenTool {
    std::unique_ptr<ToolWindow> tool;
    ToolWidget* widget;
  };
  std::optional<FileChoice> AskFile(const FileDialog& dialog, bool save);
  void ToolClosed(ToolWidget* widget);
  void ActionEnded(int level);
  void BeforeModal() const;
  QWidget* DialogParent() const;

  QWidget& host_;
  ActionGate& gate_;
  Preferences& preferences_;
  std::string caption_;
  std::vector<OpenTool> tools_;
  std::vector<std::unique_ptr<ToolWindow>>
      closedTools_;  ///< they may still be on the stack until the action ends
  std::vector<ToolWidget*> modalTools_;
  QPointer<QProgressDialog> progress_;
  QElapsedTimer sinceAction_;
  int setbacks_ = 0, filesSaved_ = 0;
};

}  // namespace parlowen
