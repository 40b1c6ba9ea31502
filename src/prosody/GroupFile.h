#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Bytes.h"

namespace parlowen {

/// How a kind of statistics keeps its named groups in a file. Little-endian: int16 number of groups, then one
/// record of 10 + slots·valuesPerSlot·2 bytes a group:
///
///   0   nameBytes   name in GBK, NUL-terminated
///   7   1           sign, 1 = negative; only where nameBytes is 7
///   8   2           int16 n, slots in use, 1..slots
///   10              slots of 16-bit values, unsigned; those from n on are 0
struct GroupLayout {
  int nameBytes = 8;
  int valuesPerSlot = 1;
  int slots = 0;

  constexpr bool HasSign() const { return nameBytes == 7; }
  constexpr std::size_t SlotBytes() const { return static_cast<std::size_t>(valuesPerSlot) * 2; }
  constexpr std::size_t RecordBytes() const { return 10 + static_cast<std::size_t>(slots) * SlotBytes(); }
  constexpr std::size_t OffsetOf(int group) const {
    return 2 + static_cast<std::size_t>(group) * RecordBytes();
  }
};

/// Names hold at most this many GBK bytes: three hanzi.
inline constexpr std::size_t kGroupNameBytes = 6;
inline constexpr int kMostGroups = INT16_MAX;

struct ValueGroup {
  std::string name;  ///< GBK, as it stands in the file
  bool negative = false;
  std::vector<std::uint16_t> values;  ///< valuesPerSlot for every slot in use
};

/// The number of groups; nothing when the bytes are no group file: a size that the count does not explain
/// (with no group, every size from 2 on will do), a negative count, a group whose n is not 1..slots.
std::optional<int> GroupCountOf(const GroupLayout& layout, ByteSpan file);

/// All groups in file order; nothing when GroupCountOf gives nothing.
std::optional<std::vector<ValueGroup>> ReadGroups(const GroupLayout& layout, ByteSpan file);

/// The first group whose name is exactly that; −1 when there is none. The file is a good one.
int FindGroup(const GroupLayout& layout, ByteSpan file, std::string_view gbkName);

/// Adds one slot of values to a group of a good file; `clearRest` zeroes the slots behind it. False, and
/// nothing changed, when the group is full.
bool AppendToGroup(const GroupLayout& layout, std::vector<std::uint8_t>& file, int group,
                   std::span<const std::uint16_t> slot, bool clearRest);

/// Adds a group with one slot of values to a good file and returns its index; −1, and nothing changed, when
/// the file has kMostGroups. The name is cut to kGroupNameBytes at a character's end. What stands behind a
/// count of 0 goes.
int AppendGroup(const GroupLayout& layout, std::vector<std::uint8_t>& file, std::string_view gbkName,
                bool negative, std::span<const std::uint16_t> slot);

}  // namespace parlowen
