#pragma once
#include <QAudioSink>
#include <QElapsedTimer>
#include <QIODevice>
#include <QMediaDevices>
#include <QTimer>
#include <memory>

#include "audio/SoundDevice.h"

namespace parlowen {

/// The samples of a play as the sound library reads them, and behind them as much silence as its buffers
/// hold, so that the last sample has sounded when it has read everything.
class SampleReader : public QIODevice {
 public:
  void Read(std::span<const std::int16_t> samples, qint64 silenceBytes);
  bool atEnd() const override { return at_ >= size_ + silence_; }
  bool isSequential() const override { return true; }
  qint64 bytesAvailable() const override { return size_ + silence_ - at_ + QIODevice::bytesAvailable(); }

 protected:
  qint64 readData(char* target, qint64 most) override;
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  const char* bytes_ = nullptr;
  qint64 size_ = 0, silence_ = 0, at_ = 0;
};

/// The system's default loudspeaker. A timer on the window's thread looks after the play. A sound server may
/// move it to another device; one that is gone, or plays nothing for three seconds, has ended it.
class QtLoudspeaker : public QObject, public SoundOutput {
  Q_OBJECT
 public:
  QtLoudspeaker();
  ~QtLoudspeaker() override;

  std::string Open(int sampleRate) override;
  bool Prepare(std::span<const std::int16_t> samples) override;
  bool Write() override;
  int Position() const override;
  bool Reset() override;
  bool Close() override;

 private:
  void Watch();

  QMediaDevices devices_;  ///< keeps the list of devices alive between two plays
  std::unique_ptr<QAudioSink> sink_;
  SampleReader reader_;
  QTimer watch_;
  QElapsedTimer sinceStart_, sinceProgress_;
  int sampleRate_ = 0, count_ = 0;
  int lastPosition_ = 0;
  bool lost_ = false;
};

}  // namespace parlowen
