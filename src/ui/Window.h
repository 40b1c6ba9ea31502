#pragma once
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/FileKind.h"
#include "ui/InputForm.h"
#include "ui/ToolWindow.h"

namespace parlowen {

enum class Icon { None, Info, Question, Warning, Error };

/// What a file dialog says.
struct FileDialog {
  std::string title;
  std::vector<FileKind> kinds;
  std::string defaultExtension{};  ///< appended to a name without a dot; "" for none
  /// The name a save dialog begins with; "": the desktop makes one of the sound's.
  std::string proposed{};
  /// What the handler makes of the name that was chosen; null: that name. So the question about replacing a
  /// file is about the file that will be written.
  std::string (*nameWritten)(const std::string& path) = nullptr;
};

struct FileChoice {
  std::string path;  ///< absolute
  int filter = 0;    ///< which of the filters was chosen, from 0
};

/// Parts of the main window; `Labels` shows markers, labels and annotations, `Chart` is a drawing that stands over the three lower panes.
enum class Pane { Amplitude, Pitch, Analysis, Waveform, Labels, Chart };

/// A rectangle of one pane, corners in any order.
struct PaneRegion {
  Pane pane = Pane::Waveform;
  Point from, to;
};

/// What a command's handler can ask of the world. Every call waits for its answer; while one is open no
/// other command starts. The desktop answers with dialogs, the headless program from its script.
class Window {
 public:
  virtual ~Window() = default;

  /// A notice with an OK button. Without a caption the main window's title stands there.
  virtual void ShowMessage(const std::string& text, const std::string& caption, Icon icon) = 0;
  /// A Yes/No box; Escape is No.
  virtual bool AskYesNo(const std::string& text, const std::string& caption) = 0;
  virtual std::optional<FileChoice> AskOpenFile(const FileDialog& dialog) = 0;
  virtual std::optional<FileChoice> AskSaveFile(const FileDialog& dialog) = 0;
  /// Fills the form; false when it was cancelled.
  virtual bool AskInput(InputForm& form) = 0;
  virtual void ShowStatus(const std::string& text) = 0;
  virtual void SetCaption(const std::string& text) = 0;
  virtual const std::string& Caption() const = 0;
  /// A file was written, whole, in the user's name. The desktop says which; a script's events know nothing of
  /// it.
  virtual void Saved(const std::string& /*path*/) {}
  /// Hands a text export or a help page to the system's viewer.
  virtual void OpenInEditor(const std::string& path) = 0;
  /// Shows that the data behind a pane (all when none is named) has changed.
  virtual void Repaint(std::optional<Pane> pane = {}) = 0;
  virtual void OpenToolWindow(std::unique_ptr<ToolWindow> tool) = 0;
  /// Closes the tool window of that name; false when none is open.
  virtual bool CloseToolWindow(const std::string& /*name*/) { return false; }
  /// Shows a modal tool window until it is closed.
  virtual void RunModal(ToolWindow& tool) = 0;
  /// The share done, 0..1, of work longer than half a second; false asks it to stop.
  virtual bool Progress(double share) = 0;
  virtual void CopyRegion(const PaneRegion& region) = 0;
  virtual void Quit() = 0;

  /// True once a question was given something that is no answer to it. Everything that is asked from then on
  /// counts as cancelled.
  virtual bool GivenUp() const { return false; }

  /// A question on which a file is written either way: nothing when it could not be answered, and then nothing
  /// is to be written.
  std::optional<bool> AskBeforeWriting(const std::string& text, const std::string& caption) {
    const bool yes = AskYesNo(text, caption);
    return GivenUp() ? std::nullopt : std::optional(yes);
  }

  /// A failure, with the system's own error caption.
  void ShowError(const std::string& text, const std::string& caption = {}) {
    ShowMessage(text, caption, Icon::Error);
  }
  /// A notice or refusal under the main window's title.
  void Notify(const std::string& text, Icon icon = Icon::None) { ShowMessage(text, Caption(), icon); }
  /// The same, for handlers that answer whether something was done: false.
  bool Refuse(const std::string& text, Icon icon = Icon::None) {
    Notify(text, icon);
    return false;
  }
};

}  // namespace parlowen
