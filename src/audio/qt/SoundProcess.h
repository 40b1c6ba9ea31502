#pragma once
#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QTimer>
#include <map>

#include "audio/qt/SoundMessage.h"

namespace parlowen {

/// The desktop's end of a process of its own that holds the sound library. A sound server that hangs or dies
/// takes the library's calls with it: they wait for ever, or end the program. Here they do so in a process that
/// can be ended, and the window neither waits nor loses anything. A process that has failed, or no longer
/// answers, is replaced: a server that comes back is found without a restart of the program.
///
/// All notices are queued events of this thread; no call waits for more than a few milliseconds.
class SoundProcess : public QObject {
  Q_OBJECT
 public:
  /// Starts the process: `program`, or this one, with kSoundWorkerArgument.
  explicit SoundProcess(const QString& program = {});
  ~SoundProcess() override;

  /// Whether there is a device, as far as the process has said. `MayPlay` is true while it has not: a play then
  /// shows it.
  bool MayPlay() const { return !known_ || hasOutput_; }
  bool HasMicrophone() const { return known_ && hasInput_; }

  /// Sends a request (Play, Record); its number, or −1 when there is no process. A device that does not open is
  /// tried once more by a new process: the old one's connection may be to a server that is no more. A request
  /// without any reply for three seconds fails.
  int Request(SoundMessageKind kind, const QByteArray& payload);
  /// Ends a request; no more of its replies come. A process that does not confirm it is replaced, so that there
  /// is silence in any case.
  void End(int number);

  qint64 Pid() const;  ///< 0 while there is none

 Q_SIGNALS:
  /// A reply to a request that runs. Failed also comes when the process had to be replaced.
  void Replied(const SoundMessage& message);
  void DevicesChanged();

 private:
  struct Open {
    QByteArray request;  ///< kept until the first reply
    bool ended = false, tried = false;
    int silence = 0;  ///< ticks of the watch since its last reply
  };
  void Start();
  void Leave();
  bool Write(const QByteArray& bytes);
  std::map<int, Open> Replace();
  void Fail(const std::map<int, Open>& requests, SoundFailure failure);
  void Dispatch();
  void Take(const SoundMessage& message);
  void Watch();

  QString program_;
  QProcess* process_ = nullptr;
  QByteArray received_;
  std::map<int, Open> open_;
  QTimer watch_, restart_;
  int lastNumber_ = 0;
  bool known_ = false, hasOutput_ = false, hasInput_ = false;
};

}  // namespace parlowen
