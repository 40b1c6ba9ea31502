#pragma once
#include <QDialog>
#include <QTimer>
#include <string>
#include <vector>

#include "shell/qt/WheelSteps.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPushButton;
class QScrollBar;
class QVBoxLayout;

namespace parlowen {

class ActionGate;
class ToolCanvas;
class Window;

/// The window over a room's tool: its drawing, its buttons, the readout of the pointer. Modeless, or modal by
/// exec().
class ToolWidget : public QDialog {
  Q_OBJECT
 public:
  /// `level` is the depth of open actions at which this window may act: 0 for a modeless one.
  ToolWidget(ToolWindow& tool, Window& window, ActionGate& gate, int level, QWidget* parent);

  /// Takes over title, buttons and drawing from the tool.
  void Renew();
  /// Closes without asking whether something else is open.
  void CloseNow();
  /// The tool is gone: the window shows nothing more and asks nothing.
  void Detach() { tool_ = nullptr; }

  /// The cursor of a play has moved.
  void UpdatePlay() const;

  QWidget* Canvas() const;
  /// The size at which the drawing is as large as its coordinates say, in place of the tool's own.
  void Prefer(Point size);
  QPushButton* Button(const std::string& text) const;
  Picture Shown() const;

 Q_SIGNALS:
  void KeyUnused(const std::string& key);

 public Q_SLOTS:
  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  friend class ToolCanvas;
  void PressButton(int number, const std::string& text);
  void ShowMenu(QPoint global);
  /// The tool's figures to the clipboard.
  void CopyText();
  void MakeButtons(const std::vector<ToolControl>& controls);
  void RenewScrollBar();
  /// Does one thing in the tool, shows what became of it, and closes when the tool wants to; false when it
  /// was dropped.
  template <typename F>
  bool Act(F&& action);

  ToolWindow* tool_;
  Window& window_;
  ActionGate& gate_;
  const int level_;
  ToolCanvas* canvas_;
  QScrollBar* scrollBar_;
  QLabel* readout_;
  QVBoxLayout* buttonColumn_;
  std::vector<ToolControl> controls_;
  std::vector<QPushButton*> buttons_;
  WheelSteps wheel_;
  QTimer tick_;  ///< of a tool that moves by itself
};

}  // namespace parlowen
