#pragma once
#include <QAudioSource>
#include <QByteArray>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QTimer>
#include <deque>
#include <memory>

#include "audio/SoundDevice.h"

namespace parlowen {

/// The system's default microphone. The sound library keeps seconds of sound while the window is busy; what
/// arrives is cut into the queued blocks. A sound server may move a recording to another device; one that is
/// gone, or sends nothing for three seconds, is lost.
class QtMicrophone : public QObject, public SoundInput {
  Q_OBJECT
 public:
  QtMicrophone();
  ~QtMicrophone() override;

  bool IsPresent() const override;
  bool Open(int sampleRate, int channels) override;
  bool Prepare(std::span<std::int16_t>) override { return true; }
  bool Queue(std::span<std::int16_t> block) override;
  bool Start() override;
  void Close() override;

 Q_SIGNALS:
  void PresenceChanged();

 private:
  void TakeSound();
  void Watch();
  void Lose();

  QMediaDevices devices_;
  std::unique_ptr<QAudioSource> source_;
  QIODevice* stream_ = nullptr;  ///< the source's own
  std::deque<std::span<std::int16_t>> queue_;
  QByteArray taken_;  ///< sound that fills no block yet
  QTimer watch_;
  QElapsedTimer sinceSound_;
};

}  // namespace parlowen
