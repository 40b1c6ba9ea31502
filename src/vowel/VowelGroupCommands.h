#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "vowel/VowelState.h"

namespace parlowen {

const GroupKind& VowelGroupKind();

/// 40063: adds the point that was stored last to a group.
bool AddPointToGroupCommand(Window& window, const SoundDocument& document, VowelState& vowels);

/// 40064: the text "VwlPoints.txt" in `exportFolder` and the plot of a file's groups.
bool ShowVowelGroupsCommand(Window& window, const VowelDesk& desk, const std::string& exportFolder);

}  // namespace parlowen
