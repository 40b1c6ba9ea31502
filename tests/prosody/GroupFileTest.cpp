#include "prosody/GroupFile.h"

#include <gtest/gtest.h>

#include <span>

#include "base/Gbk.h"
#include "prosody/Durations.h"

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr GroupLayout kPairs{8, 2, 47};  // as the vowel groups have it

Bytes FileOf(const GroupLayout& layout, int groups, int used) {
  Bytes file(layout.OffsetOf(groups));
  file[0] = static_cast<std::uint8_t>(groups);
  for (int g = 0; g < groups; ++g) {
    file[layout.OffsetOf(g)] = static_cast<std::uint8_t>('a' + g);
    file[layout.OffsetOf(g) + 8] = static_cast<std::uint8_t>(used);
  }
  return file;
}

TEST(GroupFile, ANewGroupOfThreeHanziIsTheseBytes) {
  Bytes file(2);
  const std::uint16_t duration = 0x2710;
  ASSERT_EQ(AppendGroup(kDurationLayout, file, ToGbk("普通话"), true, {&duration, 1}), 0);
  Bytes expected(202);
  // 普 C6D5, 通 CDA8, 话 BBB0
  const Bytes head = {1, 0, 0xC6, 0xD5, 0xCD, 0xA8, 0xBB, 0xB0, 0, 1, 1, 0, 0x10, 0x27};
  std::copy(head.begin(), head.end(), expected.begin());
  EXPECT_EQ(file, expected);

  const std::uint16_t pair[] = {283, 65535};
  ASSERT_EQ(AppendGroup(kPairs, file = Bytes(2), "i", true, pair), 0);
  expected.assign(200, 0);
  const Bytes pairHead = {1, 0, 'i', 0, 0, 0, 0, 0, 0, 0, 1, 0, 0x1B, 0x01, 0xFF, 0xFF};
  std::copy(pairHead.begin(), pairHead.end(), expected.begin());
  EXPECT_EQ(file, expected) << "no sign byte in the longer name";
}

TEST(GroupFile, ANameIsCutAtTheEndOfACharacter) {
  Bytes file(2);
  const std::uint16_t one = 1;
  AppendGroup(kDurationLayout, file, ToGbk("a普通话"), false, {&one, 1});
  EXPECT_EQ(ReadGroups(kDurationLayout, file)->at(0).name, ToGbk("a普通"));
  EXPECT_EQ(FindGroup(kDurationLayout, file, ToGbk("a普通")), 0);
  EXPECT_EQ(FindGroup(kDurationLayout, file, ToGbk("A普通")), -1);
  EXPECT_EQ(FindGroup(kDurationLayout, file, ToGbk("a普")), -1);
}

TEST(GroupFile, ANameThatFillsItsFieldEndsThere) {
  Bytes file = FileOf(kDurationLayout, 2, 1);
  std::fill_n(file.begin() + 202, 7, std::uint8_t{'x'});
  EXPECT_EQ(ReadGroups(kDurationLayout, file)->at(1).name, "xxxxxxx");
}

TEST(GroupFile, TheLastSlotIsUsedAndNoneBehindIt) {
  for (const GroupLayout& layout : {kDurationLayout, kPairs}) {
    SCOPED_TRACE(layout.slots);
    Bytes file = FileOf(layout, 3, layout.slots - 1);
    file[layout.OffsetOf(2)] = 'z';
    const std::uint16_t slot[] = {0xABCD, 0x1234};
    const std::span<const std::uint16_t> entry(slot, static_cast<std::size_t>(layout.valuesPerSlot));
    ASSERT_TRUE(AppendToGroup(layout, file, 1, entry, true));
    EXPECT_EQ(ReadGroups(layout, file)->at(1).values.back(), slot[layout.valuesPerSlot - 1]);
    EXPECT_EQ(file[layout.OffsetOf(1) + 8], layout.slots);
    EXPECT_EQ(file[layout.OffsetOf(2)], 'z') << "the neighbour's name";
    const Bytes full = file;
    EXPECT_FALSE(AppendToGroup(layout, file, 1, entry, true));
    EXPECT_EQ(file, full);
  }
}

TEST(GroupFile, ClearingTheRestIsAChoice) {
  Bytes file = FileOf(kDurationLayout, 1, 2);
  for (int slot = 0; slot < 95; ++slot) file[static_cast<std::size_t>(12 + 2 * slot)] = 7;
  const std::uint16_t value = 9;
  Bytes cleared = file;
  AppendToGroup(kDurationLayout, file, 0, {&value, 1}, false);
  AppendToGroup(kDurationLayout, cleared, 0, {&value, 1}, true);
  EXPECT_EQ(file[16], 9);
  EXPECT_EQ(file[18], 7);
  EXPECT_EQ(cleared[14], 7);
  EXPECT_EQ(cleared[16], 9);
  EXPECT_EQ(std::count(cleared.begin() + 18, cleared.end(), 0), 202 - 18);
}

TEST(GroupFile, ADamagedFileIsSeen) {
  const auto with = [](Bytes file, std::size_t at, std::uint8_t low, std::uint8_t high = 0) {
    file[at] = low;
    file[at + 1] = high;
    return file;
  };
  const Bytes one = FileOf(kPairs, 1, 1), two = FileOf(kPairs, 2, 5);
  Bytes longer = one;
  longer.push_back(0);
  const struct {
    const char* why;
    Bytes file;
    bool good;
  } cases[] = {
      {"two groups", FileOf(kPairs, 2, 47), true},
      {"nothing", {}, false},
      {"half a count", {0}, false},
      {"no group", {0, 0}, true},
      {"no group and something behind", {0, 0, 1, 2, 3}, true},
      {"198·G + 3 bytes", longer, false},
      {"a byte short", Bytes(one.begin(), one.end() - 1), false},
      {"the other kind", FileOf(kDurationLayout, 1, 1), false},
      {"a negative count", with(one, 0, 1, 0x80), false},
      {"a count beyond the file", with(one, 0, 1, 0x7F), false},
      {"48 points", FileOf(kPairs, 2, 48), false},
      {"no points in the second group", with(two, 208, 0), false},
      {"−1 points", with(two, 208, 0xFF, 0xFF), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(GroupCountOf(kPairs, c.file).has_value(), c.good) << c.why;
    EXPECT_EQ(ReadGroups(kPairs, c.file).has_value(), c.good) << c.why;
  }
}

TEST(GroupFile, WhatStandsBehindACountOfZeroGoes) {
  Bytes file = {0, 0, 1, 2, 3};
  const std::uint16_t one = 1;
  EXPECT_EQ(AppendGroup(kDurationLayout, file, "a", false, {&one, 1}), 0);
  EXPECT_EQ(file.size(), 202u);
  EXPECT_EQ(file[3], 0);
}

TEST(GroupFile, TheCountStopsAt32767) {
  Bytes file = FileOf(kPairs, 0, 1);
  file.resize(kPairs.OffsetOf(32767));
  file[0] = 0xFF;
  file[1] = 0x7F;
  for (int g = 0; g < 32767; ++g) file[kPairs.OffsetOf(g) + 8] = 1;
  const std::uint16_t pair[] = {1, 2};
  const std::size_t size = file.size();
  EXPECT_EQ(AppendGroup(kPairs, file, "a", false, pair), -1);
  EXPECT_EQ(file.size(), size);
}

}  // namespace
}  // namespace parlowen
