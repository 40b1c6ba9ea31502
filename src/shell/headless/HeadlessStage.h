#pragma once
#include <ostream>
#include <string>

#include "shell/Workstation.h"
#include "shell/headless/ScriptStage.h"
#include "shell/headless/ScriptWindow.h"

namespace parlowen {

/// A workstation without a screen.
class HeadlessStage : public ScriptStage {
 public:
  HeadlessStage(std::ostream& events, int paneWidth);

  Workstation& Station() override { return workstation_; }
  ScriptTalk& Talk() override { return window_; }
  bool Choose(int command) override { return workstation_.dispatchCommand(command); }
  void Select(int start, int end) override { workstation_.Select(start, end); }
  void Click(Pane pane, Point at, MouseButton button, bool shift) override;
  void EditLabel(Point at) override;
  bool KeyInLabels(const std::string& key) override;
  void ClickTool(ToolWindow& tool, Point at, MouseButton button, bool shift) override;
  void Key(const std::string& key) override;
  void Press(ToolWindow& tool, const ToolControl& control) override;
  void CloseTool() override;
  void InputDevicesChanged() override { workstation_.InputDevicesChanged(); }
  void Settle() override;

 private:
  ScriptWindow window_;
  Workstation workstation_;
};

}  // namespace parlowen
