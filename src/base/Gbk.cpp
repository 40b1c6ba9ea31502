#include "base/Gbk.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "base/Utf8.h"

namespace parlowen {
namespace {

// One row a lead byte 0x81..0xFE, 190 trail bytes 0x40..0xFE without 0x7F. No character stands twice.
constexpr int kFirstLead = 0x81, kLeads = 126, kTrails = 190;
constexpr std::uint16_t kGbkTable[kLeads * kTrails] = {
#include "base/GbkTable.inc"
};

constexpr char32_t kSingleBytes = 0xEF80;  // of the byte 0x80

struct CodePair {
  std::uint16_t unicode, gbk;
};

int TrailIndex(std::uint8_t trail) {
  if (trail < 0x40 || trail == 0x7F || trail == 0xFF) return -1;
  return trail < 0x7F ? trail - 0x40 : trail - 0x41;
}

const std::vector<CodePair>& ByUnicode() {
  static const std::vector<CodePair> pairs = [] {
    std::vector<CodePair> made;
    for (int lead = 0; lead < kLeads; ++lead)
      for (int trail = 0; trail < kTrails; ++trail) {
        const std::uint16_t unicode = kGbkTable[lead * kTrails + trail];
        const int second = trail + (trail < 0x3F ? 0x40 : 0x41);
        made.push_back({unicode, static_cast<std::uint16_t>(((lead + kFirstLead) << 8) | second)});
      }
    std::sort(made.begin(), made.end(), [](CodePair a, CodePair b) { return a.unicode < b.unicode; });
    return made;
  }();
  return pairs;
}

/// Index of the pair that begins at a byte in the table, −1 when none does.
int PairAt(std::string_view gbk, std::size_t at) {
  const int lead = static_cast<std::uint8_t>(gbk[at]) - kFirstLead;
  if (lead < 0 || lead >= kLeads || at + 1 >= gbk.size()) return -1;
  const int trail = TrailIndex(static_cast<std::uint8_t>(gbk[at + 1]));
  return trail < 0 ? -1 : lead * kTrails + trail;
}

/// The code of a character beyond ASCII: of two bytes, or of one below 0x100; 0 for none.
std::uint16_t GbkCodeOf(char32_t character) {
  if (character >= kSingleBytes && character < kSingleBytes + 0x80)
    return static_cast<std::uint16_t>(0x80 + (character - kSingleBytes));
  if (character > 0xFFFF) return 0;
  const auto& pairs = ByUnicode();
  const auto found = std::lower_bound(pairs.begin(), pairs.end(), character,
                                      [](CodePair pair, char32_t value) { return pair.unicode < value; });
  return found != pairs.end() && found->unicode == character ? found->gbk : std::uint16_t{0};
}

}  // namespace

std::string ToGbk(std::string_view utf8) {
  std::string gbk;
  gbk.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t character = TakeUtf8(utf8, at);
    if (character < 0x80) {
      gbk.push_back(static_cast<char>(character));
    } else if (const std::uint16_t code = GbkCodeOf(character)) {
      if (code > 0xFF) gbk.push_back(static_cast<char>(code >> 8));
      gbk.push_back(static_cast<char>(code & 0xFF));
    } else {
      gbk.push_back('?');
    }
  }
  return gbk;
}

std::string FromGbk(std::string_view gbk) {
  std::string utf8;
  utf8.reserve(gbk.size() * 3 / 2);
  for (std::size_t at = 0; at < gbk.size(); ++at) {
    const auto byte = static_cast<std::uint8_t>(gbk[at]);
    if (byte < 0x80) {
      utf8.push_back(gbk[at]);
    } else if (const int pair = PairAt(gbk, at); pair >= 0) {
      AppendUtf8(utf8, kGbkTable[pair]);
      ++at;
    } else {
      AppendUtf8(utf8, kSingleBytes + (byte - 0x80));
    }
  }
  return utf8;
}

bool HasGbkCodes(std::string_view utf8) {
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t character = TakeUtf8(utf8, at);
    if (character >= 0x80 && GbkCodeOf(character) == 0) return false;
  }
  return true;
}

std::string_view CutGbk(std::string_view gbk, std::size_t bytes) {
  std::size_t end = 0;
  while (end < gbk.size()) {
    const std::size_t next = end + (PairAt(gbk, end) < 0 ? 1 : 2);
    if (next > bytes) break;
    end = next;
  }
  return gbk.substr(0, end);
}

}  // namespace parlowen
