#include "document/EditCommands.h"

#include <algorithm>

#include "document/Editing.h"

namespace parlowen {
namespace {

constexpr const char* kBreaksChannels = "此操作将破坏双声道数据的同步，继续吗？";
constexpr const char* kClipped = "数据太大，产生限幅失真";
constexpr const char* kWarning = "警告";
constexpr const char* kNoTwoChannels = "没有双声道数据！";

/// Cut and paste work on one channel; a two-channel document becomes a mono one when the user agrees.
bool MayBreakChannels(Window& window, SoundDocument& document, CommandStates& states) {
  if (!document.twoChannel) return true;
  if (!window.AskYesNo(kBreaksChannels, window.Caption())) return false;
  document.twoChannel = false;
  states.onTwoChannelChanged(false);
  return true;
}

/// A shifted contour would be saved as if it were right.
void DropContour(SoundDocument& document, CommandStates& states) {
  document.resetPitch();
  states.onContourChanged(document.SelectionFacts());
}

void ApplySelectionRules(SoundDocument& document, CommandStates& states) {
  if (document.selectionStart >= 0) document.insertPoint = document.selectionStart;
  states.onSelectionChanged(document.SelectionFacts());
}

}  // namespace

bool RequireTwoChannels(Window& window, const SoundDocument& document) {
  if (!document.twoChannel) window.Notify(kNoTwoChannels);
  return document.twoChannel;
}

void CutCommand(Window& window, SoundDocument& document, CommandStates& states) {
  if (!MayBreakChannels(window, document, states)) return;
  if (!CutSelection(document)) return;
  states.onSelectionChanged(document.SelectionFacts());
  states.onCut();
  document.setView(states);
  DropContour(document, states);
  window.Repaint();
}

void CopyCommand(SoundDocument& document, CommandStates& states) {
  if (CopySelection(document)) states.onCopy();
}

void PasteCommand(Window& window, SoundDocument& document, CommandStates& states) {
  if (!MayBreakChannels(window, document, states)) return;
  PasteClip(document);
  document.setView(states);
  DropContour(document, states);
  states.onPaste();
  if (document.sampleCount > 6LL * document.sampleRate) states.onViewChanged(true);
  window.Repaint();
}

void UndoCommand(Window& window, SoundDocument& document, CommandStates& states) {
  UndoEdit(document);
  if (document.selectionEnd > document.sampleCount) {
    document.selectionEnd = document.sampleCount;
    document.selectionStart = std::min(document.selectionStart, document.sampleCount);
    states.onSelectionChanged(document.SelectionFacts());
  }
  document.setView(states);
  DropContour(document, states);
  states.onUndo();
  window.Repaint();
}

void AmplifyCommand(Window& window, SoundDocument& document) {
  const bool clipped = AmplifySelection(document);
  if (clipped) window.ShowMessage(kClipped, kWarning, Icon::Warning);
  window.Repaint();
}

void AttenuateCommand(Window& window, SoundDocument& document) {
  AttenuateSelection(document);
  window.Repaint();
}

void SelectAllCommand(Window& window, SoundDocument& document, CommandStates& states) {
  document.selectionStart = 0;
  document.selectionEnd = document.sampleCount;
  states.onSelectionChanged(document.SelectionFacts());
  window.Repaint();
}

void ClearSelectionCommand(Window& window, SoundDocument& document, CommandStates& states) {
  document.ClearSelection();
  states.onSelectionChanged(document.SelectionFacts());
  window.Repaint();
}

void SwapChannelsCommand(Window& window, SoundDocument& document, CommandStates& states) {
  if (!RequireTwoChannels(window, document)) return;
  std::swap(document.samples, document.samples2);
  document.SamplesChanged();
  DropContour(document, states);  // it was the other channel's
  window.Repaint();
}

void MarkStart(SoundDocument& document, CommandStates& states, int sample) {
  document.selectionStart = std::clamp(sample, 0, document.sampleCount);
  document.selectionEnd = std::max(document.selectionEnd, document.selectionStart);
  ApplySelectionRules(document, states);
}

void MarkEnd(SoundDocument& document, CommandStates& states, int sample) {
  document.selectionEnd = std::clamp(sample, 0, document.sampleCount);
  ApplySelectionRules(document, states);
}

}  // namespace parlowen
