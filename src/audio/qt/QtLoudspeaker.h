#pragma once
#include <QObject>

#include "audio/SoundDevice.h"
#include "audio/qt/SoundProcess.h"

namespace parlowen {

/// The system's default loudspeaker. A sound server may move a play to another device; a device that is gone,
/// or plays nothing for three seconds, has failed.
class QtLoudspeaker : public QObject, public SoundOutput {
  Q_OBJECT
 public:
  /// `process` outlives it.
  explicit QtLoudspeaker(SoundProcess& process);
  ~QtLoudspeaker() override;

  std::string Open(int sampleRate) override;
  bool Prepare(std::span<const std::int16_t> samples) override;
  bool Write() override;
  int Position() const override { return position_; }
  bool Reset() override;
  bool Close() override;

 private:
  void Take(const SoundMessage& reply);

  SoundProcess& process_;
  int sampleRate_ = 0;
  std::span<const std::int16_t> samples_;
  int number_ = 0;  ///< of the play; 0: none
  int position_ = 0;
};

}  // namespace parlowen
