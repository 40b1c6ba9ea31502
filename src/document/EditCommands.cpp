#include "document/EditCommands.h"

#include <algorithm>

#include "document/Editing.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kBreaksChannels = "此操作将破坏双声道数据的同步，继续吗？";
constexpr UiText kClipped = "数据太大，产生限幅失真";

/// Cut and paste work on one channel; a two-channel document becomes a mono one when the user agrees. The
/// two-channel commands stay: they say themselves that there is no second channel any more.
bool MayBreakChannels(Window& window, SoundDocument& document) {
  if (!document.twoChannel) return true;
  if (!window.AskYesNo(kBreaksChannels, window.Caption())) return false;
  document.twoChannel = false;
  return true;
}

void ApplySelectionRules(SoundDocument& document, CommandStates& states) {
  if (document.selectionStart >= 0) document.insertPoint = document.selectionStart;
  states.onSelectionChanged(document.SelectionFacts());
}

}  // namespace

bool RequireTwoChannels(Window& window, const SoundDocument& document) {
  if (!document.twoChannel) window.Notify(messages::kNoTwoChannels);
  return document.twoChannel;
}

Edit CutCommand(Window& window, SoundDocument& document, CommandStates& states) {
  if (!MayBreakChannels(window, document)) return {};
  const Edit edit = CutSelection(document);
  if (!edit) return {};
  states.onSelectionChanged(document.SelectionFacts());
  states.onCut();
  document.setView(states);
  window.Repaint();
  return edit;
}

void CopyCommand(SoundDocument& document, CommandStates& states) {
  if (CopySelection(document)) states.onCopy();
}

Edit PasteCommand(Window& window, SoundDocument& document, CommandStates& states) {
  if (!MayBreakChannels(window, document)) return {};
  const Edit edit = PasteClip(document);
  document.setView(states);
  states.onPaste();
  if (document.sampleCount > 6LL * document.sampleRate) states.onViewChanged(true);
  window.Repaint();
  return edit;
}

Edit UndoCommand(Window& window, SoundDocument& document, CommandStates& states) {
  const Edit edit = UndoEdit(document);
  if (document.selectionEnd > document.sampleCount) {
    document.selectionEnd = document.sampleCount;
    document.selectionStart = std::min(document.selectionStart, document.sampleCount);
    states.onSelectionChanged(document.SelectionFacts());
  }
  document.setView(states);
  states.onUndo();
  window.Repaint();
  return edit;
}

void AmplifyCommand(Window& window, SoundDocument& document) {
  const bool clipped = AmplifySelection(document);
  if (clipped) window.ShowMessage(kClipped, messages::kWarning, Icon::Warning);
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
  document.resetPitch();  // it was the other channel's
  states.onContourChanged(document.SelectionFacts());
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
