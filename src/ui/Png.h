#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace parlowen {

/// A PNG file of `columns`·`rows` pixels of `channels` bytes (1 grey, 3 RGB), row by row from the top.
/// The data is stored, not compressed. `pixels` holds columns·rows·channels bytes.
std::vector<std::uint8_t> EncodePng(int columns, int rows, int channels,
                                    std::span<const std::uint8_t> pixels);

std::string ToBase64(std::span<const std::uint8_t> bytes);

}  // namespace parlowen
