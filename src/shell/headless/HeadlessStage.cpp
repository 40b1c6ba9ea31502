#include "shell/headless/HeadlessStage.h"

#include "base/Arithmetic.h"
#include "shell/DataFolder.h"

namespace parlowen {

HeadlessStage::HeadlessStage(std::ostream& events, int paneWidth)
    : window_(events), workstation_(window_, DataFolder(), {&speaker, &microphone}) {
  workstation_.document.paneWidth = paneWidth;
  workstation_.pitch.paneWidth = paneWidth;
}

void HeadlessStage::Click(Pane pane, Point at, MouseButton button, bool shift) {
  workstation_.Click(pane, at, button, shift);
}

void HeadlessStage::EditLabel(Point at) { workstation_.EditLabel(at); }

bool HeadlessStage::KeyInLabels(const std::string& key) { return workstation_.KeyInLabels(key); }

void HeadlessStage::ClickTool(ToolWindow& tool, Point at, MouseButton button, bool shift) {
  const Point inDrawing{at.x, WrapAdd32(at.y, tool.ClickOrigin().y)};
  workstation_.Act([&] { tool.Click(window_, inDrawing, button, shift); });
}

void HeadlessStage::Key(const std::string& key) {
  ToolWindow* tool = window_.CurrentTool();
  bool used = false;
  if (tool != nullptr) workstation_.Act([&] { used = tool->Key(window_, key); });
  if (!used && !window_.InModal()) workstation_.Key(key);
}

void HeadlessStage::Press(ToolWindow& tool, const ToolControl& control) {
  workstation_.Act([&] { tool.Press(window_, control); });
}

void HeadlessStage::CloseTool() {
  workstation_.Act([&] { window_.CloseCurrentTool(); });
}

void HeadlessStage::Settle() {
  while (window_.CurrentTool() != nullptr && window_.CurrentTool()->TickMilliseconds() > 0)
    window_.CurrentTool()->Tick(window_);
}

}  // namespace parlowen
