#pragma once
#include <string>

#include "base/Bytes.h"

namespace parlowen {

/// Text files of other programs are refused beyond this many bytes.
inline constexpr std::size_t kLargestTextFile = std::size_t{32} << 20;

struct DecodedText {
  std::string text;      ///< UTF-8 without a byte order mark
  bool fromGbk = false;  ///< the bytes were no Unicode text: a guess that the user should hear of
};

/// The text of a file whose encoding nobody has noted. In this order: a byte order mark (UTF-8, UTF-16 LE or
/// BE); zero bytes, which UTF-16 text has at its even (BE) or odd (LE) places; well-formed UTF-8; else GBK
/// with phonetic codes.
DecodedText DecodeText(ByteSpan bytes);

}  // namespace parlowen
