#pragma once
#include <cstdint>

namespace parlowen {

/// Which of the values of an enumeration hold; at most 64 values, counted from 0.
template <typename Flag>
class FlagSet {
 public:
  constexpr FlagSet() = default;
  constexpr FlagSet(Flag flag) : bits_(Bit(flag)) {}  // NOLINT: one flag is a set of one

  constexpr bool Has(Flag flag) const { return (bits_ & Bit(flag)) != 0; }
  constexpr bool Has(FlagSet all) const { return (all.bits_ & ~bits_) == 0; }
  constexpr bool operator==(const FlagSet&) const = default;
  constexpr void Set(Flag flag, bool holds) { bits_ = holds ? bits_ | Bit(flag) : bits_ & ~Bit(flag); }
  constexpr FlagSet operator|(FlagSet other) const {
    other.bits_ |= bits_;
    return other;
  }

 private:
  static constexpr std::uint64_t Bit(Flag flag) { return std::uint64_t{1} << static_cast<int>(flag); }
  std::uint64_t bits_ = 0;
};

}  // namespace parlowen
