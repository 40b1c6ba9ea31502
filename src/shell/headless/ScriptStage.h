#pragma once
#include <string>

#include "audio/file/FileLoudspeaker.h"
#include "audio/file/FileMicrophone.h"
#include "shell/headless/ScriptTalk.h"

namespace parlowen {

class Workstation;

/// Where a script plays: a workstation, the window before it, its sound devices, and the hands that act on them. So the
/// same script drives the headless program and, in its tests, the desktop.
class ScriptStage {
 public:
  virtual ~ScriptStage() = default;

  virtual Workstation& Station() = 0;
  virtual ScriptTalk& Talk() = 0;

  /// Chooses a command of the table; false when it is greyed.
  virtual bool Choose(int command) = 0;
  virtual void Select(int start, int end) = 0;
  virtual void Click(Pane pane, Point at, MouseButton button, bool shift) = 0;
  /// A double click and a key in the label pane; the key is false when it means nothing there.
  virtual void EditLabel(Point at) = 0;
  virtual bool KeyInLabels(const std::string& key) = 0;
  /// `at` counts from where a script's clicks into that window count from.
  virtual void ClickTool(ToolWindow& tool, Point at, MouseButton button, bool shift) = 0;
  /// Offered first to the current tool window.
  virtual void Key(const std::string& key) = 0;
  virtual void Press(ToolWindow& tool, const ToolControl& control) = 0;
  /// Closes the current tool window, which is not modal.
  virtual void CloseTool() = 0;
  virtual void InputDevicesChanged() = 0;
  /// Lets what moves by itself come to rest.
  virtual void Settle() = 0;

  FileLoudspeaker speaker;
  FileMicrophone microphone;
};

}  // namespace parlowen
