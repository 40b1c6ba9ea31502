#pragma once
#include <memory>
#include <optional>
#include <string>

#include "ui/Window.h"

namespace parlowen {

/// A window that agrees with everything and shows nothing.
class SilentWindow : public Window {
 public:
  void ShowMessage(const std::string&, const std::string&, Icon) override {}
  bool AskYesNo(const std::string&, const std::string&) override { return false; }
  std::optional<FileChoice> AskOpenFile(const FileDialog&) override { return {}; }
  std::optional<FileChoice> AskSaveFile(const FileDialog&) override { return {}; }
  bool AskInput(InputForm&) override { return false; }
  void ShowStatus(const std::string&) override {}
  void SetCaption(const std::string&) override {}
  const std::string& Caption() const override { return caption_; }
  void OpenInEditor(const std::string&) override {}
  void Repaint(std::optional<Pane>) override {}
  void OpenToolWindow(std::unique_ptr<ToolWindow>) override {}
  void RunModal(ToolWindow&) override {}
  bool Progress(double) override { return true; }
  void CopyRegion(const PaneRegion&) override {}
  void Quit() override {}

 private:
  std::string caption_;
};

}  // namespace parlowen
