#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "prosody/GroupFile.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

// What all statistics say that are kept in groups.
inline constexpr UiText kGroupNameTitle = "输入统计组名", kGroupNameLabel = "输入组名（最长6字符）";
inline constexpr UiText kCannotOpenGroups = "文件打开错误，请重试！", kNoSuchGroup = "无此组名！";

/// What one kind of statistics says and keeps.
struct GroupKind {
  GroupLayout layout;
  FileDialog dialog;
  UiText damaged;           ///< the file is no group file of this kind
  UiText missing;           ///< the report's file cannot be opened
  bool asksSign = false;    ///< a new group is positive or negative
  bool clearsRest = false;  ///< a value added by name zeroes the slots behind it
};

/// The group that the last value went to, kept between commands.
struct CurrentGroup {
  bool known = false;
  std::string path;
  int index = 0;
  std::string name;  ///< GBK
};

/// Adds one slot of values to a group file:
///   1. the current group, when there is one and the user agrees;
///   2. else a file, which need not exist yet;
///   3. a new group or one of the file's, found by its name.
/// Everything is asked before anything is written, and the file is read again just before that: what another
/// program added meanwhile stays. It is replaced whole; after a refusal or a failure it is as it was. The
/// file's group becomes the current one. False when nothing was added.
bool AddToGroups(Window& window, CurrentGroup& current, const GroupKind& kind,
                 std::span<const std::uint16_t> slot);

/// The groups of a file; nothing when it is refused, with its message.
std::optional<std::vector<ValueGroup>> ReadGroupsOf(Window& window, const GroupKind& kind,
                                                    const std::string& path);

/// Asks for a group file and reads it; nothing when it was cancelled or refused, with its message.
std::optional<std::vector<ValueGroup>> AskForGroups(Window& window, const GroupKind& kind);

}  // namespace parlowen
