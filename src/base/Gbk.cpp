#include "base/Gbk.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "base/Utf8.h"

namespace parlowen {
namespace {

// One row a lead byte 0x81..0xFE, 190 trail bytes 0x40..0xFE without 0x7F; 0 where there is no character.
constexpr int kFirstLead = 0x81, kLeads = 126, kTrails = 190;
constexpr std::uint16_t kGbkTable[kLeads * kTrails] = {
#include "base/GbkTable.inc"
};

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
        if (unicode != 0)
          made.push_back({unicode, static_cast<std::uint16_t>(((lead + kFirstLead) << 8) | second)});
      }
    std::sort(made.begin(), made.end(), [](CodePair a, CodePair b) {
      return a.unicode != b.unicode ? a.unicode < b.unicode : a.gbk < b.gbk;
    });
    return made;
  }();
  return pairs;
}

/// The two-byte code, or 0.
std::uint16_t GbkCodeOf(char32_t character) {
  if (character < 0x80 || character > 0xFFFF) return 0;
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
      gbk.push_back(static_cast<char>(code >> 8));
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
    const auto lead = static_cast<std::uint8_t>(gbk[at]);
    if (lead < 0x80) {
      utf8.push_back(gbk[at]);
      continue;
    }
    // 0x80 and 0xFF begin no pair: what follows them is read by itself.
    const bool begins = lead >= kFirstLead && lead < kFirstLead + kLeads && at + 1 < gbk.size();
    const int trail = begins ? TrailIndex(static_cast<std::uint8_t>(gbk[at + 1])) : -1;
    char32_t character = 0;
    if (trail >= 0) character = kGbkTable[(lead - kFirstLead) * kTrails + trail];
    AppendUtf8(utf8, character != 0 ? character : kReplacementCharacter);
    // An impossible trail byte is read again: it may be an ordinary character.
    if (trail >= 0) ++at;
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
    const std::size_t next =
        end + (static_cast<std::uint8_t>(gbk[end]) >= 0x81 && end + 1 < gbk.size() ? 2 : 1);
    if (next > bytes) break;
    end = next;
  }
  return gbk.substr(0, end);
}

}  // namespace parlowen
