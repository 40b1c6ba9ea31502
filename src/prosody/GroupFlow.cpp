#include "prosody/GroupFlow.h"

#include "base/Files.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kSameGroup = "加入现在的统计组（Yes)?加入到别的组（No)？";
constexpr UiText kSameGroupCaption = "别的统计组？";
constexpr UiText kNewGroup = "新的统计组（Yes)?添加到已有的组中（No)？";
constexpr UiText kNewGroupCaption = "新统计组？";
constexpr UiText kSign = "使用正音长（Yes)?负音长（No)？";
constexpr UiText kSignCaption = "音长符号？";

using Bytes = std::vector<std::uint8_t>;

/// What stands against a step, told when the turn at the file has ended.
struct Obstacle {
  UiText text;
  Icon icon = Icon::Error;
};

/// The bytes of a good group file; else nothing, and what is to be said.
std::optional<Bytes> OpenGroups(const GroupKind& kind, const std::string& path, UiText cannotOpen,
                                std::optional<Obstacle>& obstacle) {
  auto bytes = ReadWholeFile(path);
  if (!bytes || !CanReplaceFile(path)) {
    obstacle = {cannotOpen};
    return {};
  }
  if (!GroupCountOf(kind.layout, *bytes)) {
    obstacle = {kind.damaged};
    return {};
  }
  return bytes;
}

/// The name in GBK; nothing when it was cancelled. Text that cannot be stored keeps the dialog open.
std::optional<std::string> AskGroupName(Window& window) {
  InputForm form = OneFieldForm(kGroupNameTitle, kGroupNameLabel, "", FieldKind::Text);
  form.fields[0].maxGbkBytes = static_cast<int>(kGroupNameBytes);
  form.fields[0].phonetic = true;
  while (window.AskInput(form)) {
    const std::string& text = form.ValueOf(1000);
    if (HasIpaCodes(text)) return std::string(CutGbk(IpaToGbk(text), kGroupNameBytes));
    window.Notify(messages::kNoGbkCode);
  }
  return {};
}

/// Reads the groups, changes them and writes them, in a turn of its own. `change` gets the bytes, those of no groups where
/// `mayMake` and there is no file; it says what stands against it.
template <typename Change>
bool ChangeGroups(Window& window, const GroupKind& kind, const std::string& path, UiText cannotOpen,
                  bool mayMake, Change&& change) {
  std::optional<Obstacle> obstacle;
  {
    const FileTurn turn(path);
    std::optional<Bytes> bytes =
        mayMake && !FileExists(path) ? std::optional(Bytes(2)) : OpenGroups(kind, path, cannotOpen, obstacle);
    if (bytes) obstacle = change(*bytes);
    if (!obstacle && SaveFile(window, path, *bytes) < 0) obstacle = {cannotOpen};
  }
  return !obstacle || window.Refuse(obstacle->text, obstacle->icon);
}

constexpr Obstacle kFull{messages::kTooMuchData, Icon::None};

bool AddToCurrent(Window& window, const CurrentGroup& current, const GroupKind& kind,
                  std::span<const std::uint16_t> slot) {
  return ChangeGroups(window, kind, current.path, messages::kNoSuchFile, false,
                      [&](Bytes& bytes) -> std::optional<Obstacle> {
                        const auto groups = ReadGroups(kind.layout, bytes);
                        if (!groups) return Obstacle{kind.damaged};
                        // Another program may have begun the file anew.
                        if (current.index >= std::ssize(*groups) ||
                            (*groups)[static_cast<std::size_t>(current.index)].name != current.name)
                          return Obstacle{kNoSuchGroup, Icon::None};
                        if (!AppendToGroup(kind.layout, bytes, current.index, slot, false)) return kFull;
                        return {};
                      });
}

bool AddNewGroup(Window& window, CurrentGroup& current, const GroupKind& kind, const std::string& path,
                 std::span<const std::uint16_t> slot) {
  const bool negative = kind.asksSign && !window.AskYesNo(kSign, kSignCaption);
  const auto name = AskGroupName(window);
  if (!name) return false;
  int index = -1;
  const auto append = [&](Bytes& bytes) -> std::optional<Obstacle> {
    index = AppendGroup(kind.layout, bytes, *name, negative, slot);
    if (index < 0) return kFull;
    return {};
  };
  if (!ChangeGroups(window, kind, path, kCannotOpenGroups, true, append)) return false;
  current = {true, path, index, *name};
  return true;
}

bool AddByName(Window& window, CurrentGroup& current, const GroupKind& kind, const std::string& path,
               std::span<const std::uint16_t> slot) {
  const auto name = AskGroupName(window);
  if (!name) return false;
  int index = -1;
  const auto append = [&](Bytes& bytes) -> std::optional<Obstacle> {
    index = FindGroup(kind.layout, bytes, *name);
    if (index < 0) return Obstacle{kNoSuchGroup, Icon::None};
    if (!AppendToGroup(kind.layout, bytes, index, slot, kind.clearsRest)) return kFull;
    return {};
  };
  if (!ChangeGroups(window, kind, path, kCannotOpenGroups, false, append)) return false;
  current = {true, path, index, *name};
  return true;
}

}  // namespace

bool AddToGroups(Window& window, CurrentGroup& current, const GroupKind& kind,
                 std::span<const std::uint16_t> slot) {
  if (current.known) {
    if (window.AskYesNo(kSameGroup, kSameGroupCaption)) return AddToCurrent(window, current, kind, slot);
    current.known = false;
  }
  const auto choice = window.AskOpenFile(kind.dialog);
  if (!choice || choice->path.empty()) return false;
  const std::string& path = choice->path;
  // The file is tried before the questions, so that nobody answers in vain.
  if (!FileExists(path)) {
    if (!CanReplaceFile(path)) return window.Refuse(kCannotOpenGroups, Icon::Error);
    return AddNewGroup(window, current, kind, path, slot);
  }
  std::optional<Obstacle> obstacle;
  if (!OpenGroups(kind, path, kCannotOpenGroups, obstacle))
    return window.Refuse(obstacle->text, obstacle->icon);
  if (window.AskYesNo(kNewGroup, kNewGroupCaption)) return AddNewGroup(window, current, kind, path, slot);
  return AddByName(window, current, kind, path, slot);
}

std::optional<std::vector<ValueGroup>> AskForGroups(Window& window, const GroupKind& kind) {
  const auto choice = window.AskOpenFile(kind.dialog);
  if (!choice || choice->path.empty()) return {};
  return ReadGroupsOf(window, kind, choice->path);
}

std::optional<std::vector<ValueGroup>> ReadGroupsOf(Window& window, const GroupKind& kind,
                                                    const std::string& path) {
  const auto bytes = ReadWholeFile(path);
  if (!bytes) {
    window.Notify(kind.missing, Icon::Error);
    return {};
  }
  auto groups = ReadGroups(kind.layout, *bytes);
  if (!groups) window.Notify(kind.damaged, Icon::Error);
  return groups;
}

}  // namespace parlowen
