#pragma once
#include "document/SoundDocument.h"

namespace parlowen {

// Sample edits of channel 1. They change the document, its contour and its undo record and tell what they did;
// the view, the command states and what else follows an edit are the commands' business.

/// Keeps a copy of the selection as the clip. False, and nothing changed, when the selection is empty.
bool CopySelection(SoundDocument& document);

/// Takes the selection out of the sound into the clip; clears the selection. No edit when it is empty.
Edit CutSelection(SoundDocument& document);

/// Inserts the clip at the insert point. What is pushed beyond the capacity is kept for the undo only.
Edit PasteClip(SoundDocument& document);

/// Takes the last cut or paste back. No edit when there is none.
Edit UndoEdit(SoundDocument& document);

/// Doubles the selection: |x| below 16384 becomes 2x, other values the end of the range they are nearer to.
/// True when a sample was clipped.
bool AmplifySelection(SoundDocument& document);

/// Halves the selection, toward zero.
void AttenuateSelection(SoundDocument& document);

}  // namespace parlowen
