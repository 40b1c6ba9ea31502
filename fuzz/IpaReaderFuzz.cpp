// The records of .ipa files over any bytes: no harm, annotations and periods within their bounds, and records
// that come back the same when they are saved.

#include <string>

#include "Mutants.h"
#include "annotation/IpaFile.h"
#include "base/IpaCodes.h"
#include "document/WavFile.h"
#include "support/WavBytes.h"

using namespace parlowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static SoundDocument document;
  document.sampleRate = 8000;
  const IpaRecords records = ReadIpaRecords({data, size});
  Require(records.annotations.size() <= kMostAnnotations, "no more annotations than there may be");
  for (const Annotation& annotation : records.annotations)
    Require(IpaToGbk(annotation.text).size() <= kAnnotationBytes, "a text fits");
  if (records.periods) {
    Require(records.periods->size() <= kContourFrames, "no more periods than a contour has");
    TakeStoredContour(*records.periods, document);
    for (const float period : document.pitch)
      Require(period == kNoValue || (period >= 0 && period <= 8000), "a period is one");
  }
  const auto saved = IpaBytesOf(document, records.annotations, false);
  Require(saved.size() == kWavHeaderBytes + 18 * records.annotations.size(),
          "each annotation has its 18 bytes");
  const IpaRecords again = ReadIpaRecords(ByteSpan(saved).subspan(kWavHeaderBytes));
  // What was no character is a question mark from the first saving on.
  Require(IpaBytesOf(document, again.annotations, false) == saved, "and they come back the same");
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
int main() {
  const std::string record =
      std::string("IPA\0", 4) + "t\xAA\xE4\xAA\xF4\xAA\xD4" + std::string(3, '\0') + testing::Little(700, 4);
  std::string tooMany;
  for (int i = 0; i < 600; ++i) tooMany += record;
  const std::string good = record + record + testing::PitchTail({80, 0, -1, 90}) + record;
  Try(tooMany);
  return TryMutants({good}, 20000);
}
#endif
