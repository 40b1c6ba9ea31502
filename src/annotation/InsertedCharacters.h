#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

inline constexpr int kMostInsertedCharacters = 100;
inline constexpr UiText kCharactersHint = "在任一窗中单击左键，在该处放置输入的字符；Esc：取消";

/// A text placed over a pane: it keeps its time and its row.
struct PlacedText {
  Pane pane = Pane::Waveform;
  int sample = 0;    ///< where it begins
  int row = 0;       ///< pane row of its middle
  std::string text;  ///< UTF-8
  int height = 0;    ///< of the type, pixels
};

/// The texts over the panes. They are for the eye alone and in no file.
struct InsertedCharacters {
  std::vector<PlacedText> items;  ///< at most kMostInsertedCharacters
  bool shown = true;
  PlacedText next;   ///< what the next click places
  SoundStamp sound;  ///< the sound they belong to: of another one they count as none
};

/// 40053: asks for a text; the next left click in a pane places it.
void BeginCharacters(Window& window, SoundDocument& document, InsertedCharacters& characters);

/// That click, at a sample and a row; hidden texts are shown again. The tool ends.
void PlaceCharacters(Window& window, SoundDocument& document, InsertedCharacters& characters, Pane pane,
                     int sample, int row);

/// 40055 and 40054: hides or shows the texts, throws them away.
void ToggleCharacters(Window& window, InsertedCharacters& characters);
void ClearCharacters(Window& window, InsertedCharacters& characters);

}  // namespace parlowen
