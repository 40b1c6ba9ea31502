// Both WAV readers and the raw reader over any bytes: no harm, a document that keeps its promises, and a save
// that loads again as it was.

#include <sys/mman.h>
#include <unistd.h>

#include "Mutants.h"
#include "base/Format.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "support/FakeWindow.h"
#include "support/WavBytes.h"

namespace {

using namespace parlowen;

/// Bytes as a file in memory that can be opened by its name.
class MemoryFile {
 public:
  explicit MemoryFile(ByteSpan bytes) : descriptor_(::memfd_create("sound", 0)) {
    Require(::write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
            "the file is written");
  }
  ~MemoryFile() { ::close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  std::string Path() const { return Format("/proc/self/fd/%d", descriptor_); }

 private:
  int descriptor_;
};

void CheckPromises(const SoundDocument& d) {
  Require(d.sampleCount >= 0 && d.sampleCount <= kMaxSamples, "the count lies in the capacity");
  Require(d.sampleCount == 0 || (d.sampleRate >= kSmallestRate && d.sampleRate <= kLargestRate),
          "a loaded sound has a usable rate");
  Require(d.viewStart >= 0 && d.viewLength >= 0 && d.viewStart + d.viewLength <= d.sampleCount,
          "the view lies in the sound");
  for (int i = d.sampleCount; i < d.sampleCount + 5000; ++i)
    Require(d.samples[i] == 0 && d.samples2[i] == 0, "silence behind the end");
  for (const float period : d.pitch)
    Require(period == kNoValue || (period >= 0 && period <= static_cast<float>(kLargestRate)),
            "a period is one");
}

void CheckReload(const SoundDocument& d, SoundDocument& again, CommandStates& states,
                 testing::FakeWindow& window) {
  const MemoryFile copy(WavBytesOf(d, false));
  openPath(window, again, states, copy.Path(), d.twoChannel ? ChannelMode::Two : ChannelMode::One, false);
  Require(again.sampleCount == d.sampleCount && again.sampleRate == d.sampleRate,
          "a saved sound loads again");
  for (int i = 0; i < d.sampleCount; ++i) Require(again.samples[i] == d.samples[i], "with its samples");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static SoundDocument document, again;
  static CommandStates states;
  static testing::FakeWindow window;
  const MemoryFile file({data, size});
  for (int reader = 0; reader < 4; ++reader) {
    window.answers = {"ok:" + std::to_string(size)};
    if (reader == 3) {
      openByName(window, document, states, file.Path());
    } else {
      openPath(window, document, states, file.Path(), reader == 1 ? ChannelMode::Two : ChannelMode::One,
               reader == 2);
    }
    CheckPromises(document);
  }
  if (document.sampleRate != 0) CheckReload(document, again, states, window);
  window.log.clear();
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
namespace {

std::vector<std::string> Seeds() {
  testing::WavBytes mono, stereo, chunked, tailed;
  stereo.blockAlign = 4;
  stereo.samples.resize(64, -5);
  chunked.between = "LIST" + testing::Little(5, 4) + std::string("abcde\0", 6);
  chunked.fmtExtra = "xx";
  tailed.samples.resize(1600, 100);
  tailed.behind = testing::PitchTail(std::vector<float>(12, 80.0f));
  return {mono.Bytes(), stereo.Bytes(), chunked.Bytes(), tailed.Bytes(), std::string(200, 'r')};
}

}  // namespace

int main() {
  Mutator mutate;
  mutate.head = 60;
  return TryMutants(Seeds(), 6000, mutate);
}
#endif
