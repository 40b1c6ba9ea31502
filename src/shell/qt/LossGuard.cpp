#include "shell/qt/LossGuard.h"

#include <algorithm>
#include <iterator>

#include "document/SoundDocument.h"

namespace parlowen {
namespace {

constexpr int kOpening[] = {110, 40093, 40078, 40060, 40110, 40116};
constexpr int kRecording[] = {272, 40022, 40112};
constexpr int kSaving[] = {120, 130, 40113, 40079};

template <std::size_t N>
bool IsOneOf(const int (&commands)[N], int command) {
  return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

}  // namespace

bool LossGuard::Replaces(int command) { return IsOneOf(kOpening, command) || IsOneOf(kRecording, command); }

LossGuard::LossGuard(const SoundDocument& document) : document_(document) { TakeAsUnchanged(); }

bool LossGuard::SoundChanged() const { return document_.samplesVersion != unchangedVersion_; }

void LossGuard::CommandBegins(int errorsShown) {
  generationBefore_ = document_.soundGeneration;
  errorsBefore_ = errorsShown;
}

void LossGuard::CommandEnded(int command, int errorsShown) {
  const bool opened = IsOneOf(kOpening, command) && document_.soundGeneration != generationBefore_;
  const bool saved = IsOneOf(kSaving, command) && errorsShown == errorsBefore_;
  if (opened || saved) TakeAsUnchanged();
}

void LossGuard::FileOpened() {
  if (document_.soundGeneration != generationBefore_) TakeAsUnchanged();
}

void LossGuard::TakeAsUnchanged() { unchangedVersion_ = document_.samplesVersion; }

}  // namespace parlowen
