#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "prosody/GroupFlow.h"

namespace parlowen {

const GroupKind& DurationKind();

/// 40074: adds the length of the selection to a group.
void AddDurationCommand(Window& window, const SoundDocument& document, CurrentGroup& current);

/// 40076: the text "WvLength.txt" in `exportFolder` and the bar chart of a file.
void ShowDurationsCommand(Window& window, const std::string& exportFolder);

}  // namespace parlowen
