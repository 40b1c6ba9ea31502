#include "annotation/InsertedCharacters.h"

#include "annotation/Annotations.h"
#include "annotation/InsertedText.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kFull = "字符数已满，不能再加！";

}  // namespace

void BeginCharacters(Window& window, SoundDocument& document, InsertedCharacters& characters) {
  if (characters.sound != document.Stamp()) {
    characters = {};
    characters.sound = document.Stamp();
  }
  if (characters.items.size() >= kMostInsertedCharacters) return window.Notify(kFull);
  const auto text =
      AskInsertedText(window, characters.items.empty() ? kMiddleTextHeight : characters.items.back().height);
  if (!text) return;
  characters.next.text = text->text;
  characters.next.height = text->height;
  document.activity = Activity::Characters;
  window.Repaint();
}

void PlaceCharacters(Window& window, SoundDocument& document, InsertedCharacters& characters, Pane pane,
                     int sample, int row) {
  document.activity = document.OpenTool();
  characters.items.push_back({pane, sample, row, characters.next.text, characters.next.height});
  characters.shown = true;
  window.Repaint();
}

void ToggleCharacters(Window& window, InsertedCharacters& characters) {
  characters.shown = !characters.shown;
  window.Repaint();
}

void ClearCharacters(Window& window, InsertedCharacters& characters) {
  characters.items.clear();
  window.Repaint();
}

}  // namespace parlowen
