#include "prosody/GroupFile.h"

#include <algorithm>

#include "base/Gbk.h"

namespace parlowen {
namespace {

constexpr std::size_t kSignOffset = 7, kUsedOffset = 8, kSlotsOffset = 10;

int UsedSlots(const GroupLayout& layout, ByteSpan file, int group) {
  ByteReader reader(file);
  reader.SeekTo(layout.OffsetOf(group) + kUsedOffset);
  return reader.TakeInt16LE();
}

std::string_view NameOf(const GroupLayout& layout, ByteSpan file, int group) {
  const char* name = reinterpret_cast<const char*>(file.data()) + layout.OffsetOf(group);
  return {name, static_cast<std::size_t>(std::find(name, name + layout.nameBytes, '\0') - name)};
}

void Store16(std::uint8_t* at, int value) {
  at[0] = static_cast<std::uint8_t>(value);
  at[1] = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace

std::optional<int> GroupCountOf(const GroupLayout& layout, ByteSpan file) {
  ByteReader reader(file);
  const int count = reader.TakeInt16LE();
  if (reader.failed() || count < 0) return {};
  if (count > 0 && file.size() != layout.OffsetOf(count)) return {};
  for (int group = 0; group < count; ++group) {
    const int used = UsedSlots(layout, file, group);
    if (used < 1 || used > layout.slots) return {};
  }
  return count;
}

std::optional<std::vector<ValueGroup>> ReadGroups(const GroupLayout& layout, ByteSpan file) {
  const auto count = GroupCountOf(layout, file);
  if (!count) return {};
  std::vector<ValueGroup> groups(static_cast<std::size_t>(*count));
  for (int g = 0; g < *count; ++g) {
    ValueGroup& group = groups[static_cast<std::size_t>(g)];
    group.name = NameOf(layout, file, g);
    group.negative = layout.HasSign() && file[layout.OffsetOf(g) + kSignOffset] != 0;
    ByteReader reader(file);
    reader.SeekTo(layout.OffsetOf(g) + kSlotsOffset);
    group.values.resize(static_cast<std::size_t>(UsedSlots(layout, file, g) * layout.valuesPerSlot));
    for (std::uint16_t& value : group.values) value = reader.TakeUint16LE();
  }
  return groups;
}

int FindGroup(const GroupLayout& layout, ByteSpan file, std::string_view gbkName) {
  const int count = GroupCountOf(layout, file).value_or(0);
  for (int group = 0; group < count; ++group)
    if (NameOf(layout, file, group) == gbkName) return group;
  return -1;
}

bool AppendToGroup(const GroupLayout& layout, std::vector<std::uint8_t>& file, int group,
                   std::span<const std::uint16_t> slot, bool clearRest) {
  const int used = UsedSlots(layout, file, group);
  if (used >= layout.slots) return false;
  std::uint8_t* const record = file.data() + layout.OffsetOf(group);
  std::uint8_t* at = record + kSlotsOffset + static_cast<std::size_t>(used) * layout.SlotBytes();
  for (const std::uint16_t value : slot) {
    Store16(at, value);
    at += 2;
  }
  if (clearRest) std::fill(at, record + layout.RecordBytes(), std::uint8_t{0});
  Store16(record + kUsedOffset, used + 1);
  return true;
}

int AppendGroup(const GroupLayout& layout, std::vector<std::uint8_t>& file, std::string_view gbkName,
                bool negative, std::span<const std::uint16_t> slot) {
  const int count = GroupCountOf(layout, file).value_or(0);
  if (count >= kMostGroups) return -1;
  file.resize(layout.OffsetOf(count));
  file.resize(layout.OffsetOf(count + 1));
  std::uint8_t* const record = file.data() + layout.OffsetOf(count);
  const std::string_view name = CutGbk(gbkName, kGroupNameBytes);
  std::copy(name.begin(), name.end(), record);
  if (layout.HasSign()) record[kSignOffset] = negative ? 1 : 0;
  Store16(record + kUsedOffset, 1);
  std::uint8_t* at = record + kSlotsOffset;
  for (const std::uint16_t value : slot) {
    Store16(at, value);
    at += 2;
  }
  Store16(file.data(), count + 1);
  return count;
}

}  // namespace parlowen
