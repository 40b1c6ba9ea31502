#pragma once
#include <QByteArray>
#include <QObject>
#include <deque>

#include "audio/SoundDevice.h"
#include "audio/qt/SoundProcess.h"

namespace parlowen {

/// The system's default microphone. Sound waits in the sound process while the window is busy; what arrives is
/// cut into the queued blocks. A sound server may move a recording to another device; one that is gone, or
/// sends nothing for three seconds, is lost, and what has arrived by then comes as a last, shorter block.
class QtMicrophone : public QObject, public SoundInput {
  Q_OBJECT
 public:
  /// `process` outlives it.
  explicit QtMicrophone(SoundProcess& process);
  ~QtMicrophone() override;

  bool IsPresent() const override { return process_.HasMicrophone(); }
  bool Open(int sampleRate, int channels) override;
  bool Prepare(std::span<std::int16_t>) override { return true; }
  bool Queue(std::span<std::int16_t> block) override;
  bool Start() override;
  void Close() override;

 Q_SIGNALS:
  void PresenceChanged();

 private:
  void Take(const SoundMessage& reply);
  void FillBlocks();
  void FillLastBlock();

  SoundProcess& process_;
  int sampleRate_ = 0, channels_ = 1;
  int number_ = 0;  ///< of the recording; 0: none
  bool open_ = false;
  std::deque<std::span<std::int16_t>> queue_;
  QByteArray taken_;  ///< sound that fills no block yet
};

}  // namespace parlowen
