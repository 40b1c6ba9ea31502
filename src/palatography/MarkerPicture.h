#pragma once
#include <functional>

#include "palatography/PalateState.h"
#include "ui/Picture.h"

namespace parlowen {

/// Adds the markers of the palate recording: a line with its label, from column `left` on. `columnOf` tells
/// the column of a sample. Nothing when the document's samples are not the file's any more.
void AddEpgMarkers(Picture& picture, const PalateState& palate, const SoundDocument& document, int left,
                   const std::function<int(int)>& columnOf);

}  // namespace parlowen
