#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "channels/Nasalance.h"
#include "document/SoundDocument.h"

namespace parlowen {

/// What the two-channel service knows. The settings last as long as the program: a calibration belongs to the
/// microphones, not to a sound. The curve is measured when it is asked for.
class ChannelsState {
 public:
  NasalanceSettings settings;

  /// The curve of the selection (without one: of the whole sound), or the one of an opened file until the
  /// sound or the selection changes. Without two channels and a file it has no values.
  const NasalanceCurve& Curve(const SoundDocument& document) const;

  void ShowOpened(NasalanceCurve curve, std::string fileName, const SoundDocument& document);
  void DropOpened() { opened_.reset(); }
  /// The name of the file that the curve comes from; "" when it was measured.
  std::string OpenedName(const SoundDocument& document) const;

 private:
  struct Key {
    std::uint64_t samples = 0;  ///< version
    int start = -1, end = -1, rate = 0;
    bool fullBand = false;
    float gainRatio = 0;
    bool operator==(const Key&) const = default;
  };
  struct Opened {
    NasalanceCurve curve;
    std::string name;
    SoundStamp sound;
    int selectionStart = 0, selectionEnd = 0;
  };
  bool OpenedCounts(const SoundDocument& document) const;

  std::optional<Opened> opened_;
  mutable Key key_;
  mutable NasalanceCurve measured_;
};

}  // namespace parlowen
