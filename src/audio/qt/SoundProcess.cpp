#include "audio/qt/SoundProcess.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <algorithm>
#include <utility>

#include "audio/qt/SoundWorker.h"

namespace parlowen {
namespace {

constexpr int kWatchMilliseconds = 50;
// In ticks of the watch, not by the clock: while the window is busy no reply can be taken either.
constexpr int kPatience = 60, kPatienceWithStop = 2;
constexpr int kRestartMilliseconds = 1000, kLongestRestartMilliseconds = 60000;
constexpr int kFlushMilliseconds = 5;

}  // namespace

SoundProcess::SoundProcess(const QString& program)
    : program_(program.isEmpty() ? QCoreApplication::applicationFilePath() : program) {
  watch_.setInterval(kWatchMilliseconds);
  connect(&watch_, &QTimer::timeout, this, &SoundProcess::Watch);
  restart_.setSingleShot(true);
  restart_.setInterval(kRestartMilliseconds);
  connect(&restart_, &QTimer::timeout, this, &SoundProcess::Start);
  Start();
}

SoundProcess::~SoundProcess() {
  Leave();
  for (QProcess* process : findChildren<QProcess*>()) process->waitForFinished(kRestartMilliseconds);
}

qint64 SoundProcess::Pid() const { return process_ != nullptr ? process_->processId() : 0; }

void SoundProcess::Start() {
  restart_.stop();
  process_ = new QProcess(this);
  QProcess* const process = process_;
  process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
  connect(process, &QProcess::readyReadStandardOutput, this, [this, process] {
    if (process != process_) return;
    received_ += process->readAllStandardOutput();
    QMetaObject::invokeMethod(this, &SoundProcess::Dispatch, Qt::QueuedConnection);
  });
  const auto ended = [this, process] {
    process->deleteLater();
    if (process == process_) Dispatch();  // what it still had to say
    if (process != process_) return;
    process_ = nullptr;
    Fail(Replace(), SoundFailure::Gone);
  };
  connect(process, &QProcess::finished, this, ended);
  connect(
      process, &QProcess::errorOccurred, this,
      [ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) ended();
      },
      Qt::QueuedConnection);
  process->start(program_, {kSoundWorkerArgument});
}

/// Ends the process without waiting for it.
void SoundProcess::Leave() {
  received_.clear();
  if (process_ == nullptr) return;
  std::exchange(process_, nullptr)->kill();
}

/// Returns the requests that ran.
std::map<int, SoundProcess::Open> SoundProcess::Replace() {
  const bool endedItself = process_ == nullptr;
  Leave();
  // One that cannot even begin is started less and less often.
  if (!endedItself) {
    Start();
  } else if (known_) {
    restart_.start(kRestartMilliseconds);
  } else {
    restart_.start(std::min(2 * restart_.interval(), kLongestRestartMilliseconds));
  }
  watch_.stop();
  const bool heard = HasMicrophone();
  known_ = hasOutput_ = hasInput_ = false;
  if (heard) Q_EMIT DevicesChanged();
  return std::exchange(open_, {});
}

void SoundProcess::Fail(const std::map<int, Open>& requests, SoundFailure failure) {
  for (const auto& [number, state] : requests)
    if (!state.ended)
      Q_EMIT Replied({SoundMessageKind::Failed, number, PackNumbers({static_cast<std::int32_t>(failure)})});
}

int SoundProcess::Request(SoundMessageKind kind, const QByteArray& payload) {
  if (process_ == nullptr) Start();
  const int number = ++lastNumber_;
  const QByteArray request = PackMessage({kind, number, payload});
  if (!Write(request)) return -1;
  open_[number] = {request};
  if (!watch_.isActive()) watch_.start();
  return number;
}

void SoundProcess::End(int number) {
  const auto found = open_.find(number);
  if (found == open_.end() || found->second.ended) return;
  found->second = {{}, true};
  Write(PackMessage({SoundMessageKind::Stop, number, {}}));
}

/// The beginning goes at once, also when the window is busy next.
bool SoundProcess::Write(const QByteArray& bytes) {
  if (process_ == nullptr || process_->write(bytes) < 0) return false;
  process_->waitForBytesWritten(kFlushMilliseconds);
  return true;
}

/// A reply may open a box, and the next replies come while it is open.
void SoundProcess::Dispatch() {
  while (const auto message = TakeMessage(received_)) Take(*message);
}

void SoundProcess::Take(const SoundMessage& message) {
  if (message.kind == SoundMessageKind::Devices) {
    known_ = true;
    hasOutput_ = message.NumberAt(0) != 0;
    hasInput_ = message.NumberAt(1) != 0;
    return Q_EMIT DevicesChanged();
  }
  const auto found = open_.find(message.number);
  if (found == open_.end()) return;
  const Open state = found->second;
  open_.erase(found);
  const bool failed = message.kind == SoundMessageKind::Failed;
  const bool last =
      failed || message.kind == SoundMessageKind::Played || message.kind == SoundMessageKind::Stopped;
  if (!last) open_[message.number] = {{}, state.ended};
  if (open_.empty()) watch_.stop();
  std::map<int, Open> others;
  if (failed && message.Failure() >= SoundFailure::NotOpened) {
    others = Replace();  // the library may be left with half a connection
    if (!state.request.isEmpty() && !state.tried && Write(state.request)) {
      open_[message.number] = {state.request, false, true};
      watch_.start();
      return Fail(others, SoundFailure::Gone);
    }
  }
  // From here on a box may be open, and anything happen.
  if (!state.ended) Q_EMIT Replied(message);
  Fail(others, SoundFailure::Gone);
}

void SoundProcess::Watch() {
  for (auto& [number, state] : open_)
    if (++state.silence > (state.ended ? kPatienceWithStop : kPatience))
      return Fail(Replace(), SoundFailure::NoAnswer);
}

}  // namespace parlowen
