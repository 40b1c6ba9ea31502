#include "ui/FileKind.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/Files.h"

namespace parlowen {

const FileKind* OpenedKindOf(std::string_view path) {
  const auto opens = [path](const FileKind& kind) {
    std::string ending = std::string(".") + kind.extension;
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return kind.open != 0 && HasEnding(path, ending);
  };
  const auto* found = std::find_if(std::begin(kFileKinds), std::end(kFileKinds), opens);
  return found != std::end(kFileKinds) ? found : nullptr;
}

}  // namespace parlowen
