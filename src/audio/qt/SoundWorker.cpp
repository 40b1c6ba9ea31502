#include "audio/qt/SoundWorker.h"

#include <fcntl.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <QAudioDevice>
#include <QAudioSink>
#include <QAudioSource>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QIODevice>
#include <QMediaDevices>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "audio/qt/ServerDefaults.h"
#include "audio/qt/SoundMessage.h"

namespace parlowen {
namespace {

constexpr int kPlayBufferMilliseconds = 250;   // what a busy machine may keep it waiting
constexpr int kSilenceMilliseconds = 600;      // more than all buffers hold
constexpr int kLingerMilliseconds = 300;       // the position is an estimate: the last samples may still come
constexpr int kRecordBufferMilliseconds = 50;  // sound arrives in pieces of this length
constexpr int kWatchMilliseconds = 20;
constexpr int kDevicesMilliseconds = 1000;
constexpr qsizetype kPiece = 1 << 16;

/// The samples of a play as the sound library reads them, and behind them as much silence as its buffers
/// hold, so that the last sample has sounded when it has read everything.
class SampleReader : public QIODevice {
 public:
  SampleReader(const QByteArray& samples, qint64 silenceBytes, QObject* parent)
      : QIODevice(parent), samples_(samples), silence_(silenceBytes) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
  }
  bool atEnd() const override { return at_ >= samples_.size() + silence_; }
  bool isSequential() const override { return true; }
  qint64 bytesAvailable() const override {
    return samples_.size() + silence_ - at_ + QIODevice::bytesAvailable();
  }

 protected:
  qint64 readData(char* target, qint64 most) override {
    const qint64 sound = std::clamp<qint64>(samples_.size() - at_, 0, most);
    if (sound > 0) std::memcpy(target, samples_.constData() + at_, static_cast<std::size_t>(sound));
    const qint64 silence = std::clamp<qint64>(samples_.size() + silence_ - at_ - sound, 0, most - sound);
    std::memset(target + sound, 0, static_cast<std::size_t>(silence));
    at_ += sound + silence;
    return sound + silence;
  }
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  QByteArray samples_;
  qint64 silence_, at_ = 0;
};

QAudioFormat FormatOf(int rate, int channels) {
  QAudioFormat format;
  format.setSampleRate(rate);
  format.setChannelCount(channels);
  format.setSampleFormat(QAudioFormat::Int16);
  return format;
}

QAudioDevice Named(const QList<QAudioDevice>& devices, const QByteArray& name,
                   const QAudioDevice& otherwise) {
  const auto found =
      std::find_if(devices.begin(), devices.end(), [&](const QAudioDevice& one) { return one.id() == name; });
  return found != devices.end() ? *found : otherwise;
}

/// Plays and records as it is told. Calls of the sound library may wait for ever here.
class SoundWorker : public QObject {
 public:
  SoundWorker(int input, int output)
      : input_(input), output_(output), notifier_(input, QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &SoundWorker::ReadInput);
    watch_.setTimerType(Qt::PreciseTimer);
    connect(&watch_, &QTimer::timeout, this, &SoundWorker::Watch);
    connect(&look_, &QTimer::timeout, this, &SoundWorker::TellDevices);
    connect(&devices_, &QMediaDevices::audioInputsChanged, this, &SoundWorker::TellDevices);
    connect(&devices_, &QMediaDevices::audioOutputsChanged, this, &SoundWorker::TellDevices);
    watch_.setInterval(kWatchMilliseconds);
    look_.start(kDevicesMilliseconds);  // a device that goes is not always announced
    TellDevices();
  }

 private:
  void ReadInput();
  void Obey(const SoundMessage& message);
  void Play(const SoundMessage& message);
  void Record(const SoundMessage& message);
  void Release();
  void Watch();
  void WatchPlay();
  void SendSound();
  void TellDevices();
  void Say(SoundMessageKind kind, int number, const QByteArray& payload = {});
  void Fail(SoundFailure failure);

  int input_, output_;
  QSocketNotifier notifier_;
  const bool hasServer_ = AskServerDefaults().Any();  ///< one was there when the library asked
  QMediaDevices devices_;                             ///< keeps the list of devices alive
  QByteArray told_;                                   ///< of the devices
  QByteArray received_;
  QTimer watch_, look_;

  int number_ = 0;  ///< the request that runs; 0: none
  std::unique_ptr<QAudioSink> sink_;
  SampleReader* reader_ = nullptr;  ///< the sink's own
  QElapsedTimer sinceStart_;
  int rate_ = 0, count_ = 0, position_ = 0;
  std::unique_ptr<QAudioSource> source_;
  QIODevice* stream_ = nullptr;  ///< the source's own
};

void SoundWorker::ReadInput() {
  QByteArray piece(kPiece, Qt::Uninitialized);
  const ssize_t got = ::read(input_, piece.data(), static_cast<std::size_t>(piece.size()));
  if (got < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (got <= 0) std::_Exit(EXIT_SUCCESS);  // nobody listens; the library's own end may wait for its server
  received_ += piece.first(got);
  while (const auto message = TakeMessage(received_)) Obey(*message);
}

void SoundWorker::Obey(const SoundMessage& message) {
  switch (message.kind) {
    case SoundMessageKind::Play: return Play(message);
    case SoundMessageKind::Record: return Record(message);
    case SoundMessageKind::Stop:
      if (message.number == number_) Release();
      return Say(SoundMessageKind::Stopped, message.number);
    default: break;
  }
}

void SoundWorker::Play(const SoundMessage& message) {
  Release();
  number_ = message.number;
  rate_ = message.NumberAt(0);
  const QByteArray samples = message.payload.mid(sizeof(std::int32_t));
  const QAudioDevice device =
      Named(QMediaDevices::audioOutputs(), AskServerDefaults().output, QMediaDevices::defaultAudioOutput());
  const QAudioFormat format = FormatOf(rate_, 1);
  if (device.isNull()) return Fail(SoundFailure::NoDevice);
  if (!device.isFormatSupported(format)) return Fail(SoundFailure::RateRefused);
  count_ = static_cast<int>(samples.size() / 2);
  position_ = 0;
  sink_ = std::make_unique<QAudioSink>(device, format);
  sink_->setBufferSize(format.bytesForDuration(kPlayBufferMilliseconds * 1000));
  reader_ = new SampleReader(samples, qint64{rate_} * 2 * kSilenceMilliseconds / 1000, sink_.get());
  sink_->start(reader_);
  if (sink_->state() == QAudio::StoppedState) return Fail(SoundFailure::NotOpened);
  sinceStart_.start();
  watch_.start();
}

void SoundWorker::Record(const SoundMessage& message) {
  Release();
  number_ = message.number;
  const QAudioDevice device =
      Named(QMediaDevices::audioInputs(), AskServerDefaults().input, QMediaDevices::defaultAudioInput());
  const QAudioFormat format = FormatOf(message.NumberAt(0), message.NumberAt(1));
  if (device.isNull()) return Fail(SoundFailure::NoDevice);
  if (!device.isFormatSupported(format)) return Fail(SoundFailure::RateRefused);
  source_ = std::make_unique<QAudioSource>(device, format);
  source_->setBufferSize(format.bytesForDuration(kRecordBufferMilliseconds * 1000));
  stream_ = source_->start();
  if (stream_ == nullptr || source_->state() == QAudio::StoppedState) return Fail(SoundFailure::NotOpened);
  connect(stream_, &QIODevice::readyRead, this, &SoundWorker::SendSound);
  watch_.start();
}

/// Ends what runs, at once. The devices may be in the middle of a notice of their own.
void SoundWorker::Release() {
  watch_.stop();
  number_ = 0;
  stream_ = nullptr;
  if (sink_) {
    sink_->reset();
    sink_.release()->deleteLater();
  }
  if (source_) {
    source_->stop();
    source_.release()->deleteLater();
  }
}

void SoundWorker::Watch() {
  if (sink_) return WatchPlay();
  if (source_ && (source_->error() != QAudio::NoError || source_->state() == QAudio::StoppedState))
    Fail(SoundFailure::Gone);
}

/// The position is what the device says that it has played; never back, and never ahead of the clock, where a
/// device counts what it was given.
void SoundWorker::WatchPlay() {
  const qint64 processed = sink_->processedUSecs() * rate_ / 1000000;
  const qint64 elapsed = sinceStart_.elapsed() * rate_ / 1000;
  const int position = static_cast<int>(std::clamp<qint64>(std::min(processed, elapsed), position_, count_));
  if (sink_->state() == QAudio::StoppedState) return Fail(SoundFailure::Gone);
  if (position > position_) Say(SoundMessageKind::Position, number_, PackNumbers({position}));
  position_ = position;
  // A device that does not count to the end has played all when its buffer has run empty behind the silence.
  const bool allRead = reader_->atEnd() && sink_->state() == QAudio::IdleState;
  if (position < count_ && !allRead) return;
  QAudioSink* const played = sink_.release();
  QTimer::singleShot(kLingerMilliseconds, played, [played] {
    played->reset();
    played->deleteLater();
  });
  watch_.stop();
  Say(SoundMessageKind::Played, std::exchange(number_, 0));
}

void SoundWorker::SendSound() {
  if (stream_ == nullptr) return;
  const QByteArray sound = stream_->readAll();
  if (!sound.isEmpty()) Say(SoundMessageKind::Sound, number_, sound);
}

void SoundWorker::TellDevices() {
  // The library does not look for a server that comes later; the process that follows this one finds it.
  if (!hasServer_ && AskServerDefaults().Any()) std::_Exit(EXIT_SUCCESS);
  const QByteArray now = PackNumbers(
      {QMediaDevices::audioOutputs().isEmpty() ? 0 : 1, QMediaDevices::audioInputs().isEmpty() ? 0 : 1});
  if (now == told_) return;
  told_ = now;
  Say(SoundMessageKind::Devices, 0, now);
}

void SoundWorker::Say(SoundMessageKind kind, int number, const QByteArray& payload) {
  const QByteArray bytes = PackMessage({kind, number, payload});
  for (qsizetype done = 0; done < bytes.size();) {
    const ssize_t written =
        ::write(output_, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
    if (written < 0 && errno != EINTR) std::_Exit(EXIT_FAILURE);
    done += std::max<ssize_t>(written, 0);
  }
}

void SoundWorker::Fail(SoundFailure failure) {
  const int number = number_;
  Release();
  Say(SoundMessageKind::Failed, number, PackNumbers({static_cast<std::int32_t>(failure)}));
}

}  // namespace

std::optional<int> RunSoundWorker(int argc, char** argv) {
  if (argc != 2 || std::strcmp(argv[1], kSoundWorkerArgument) != 0) return {};
#ifdef __linux__
  // Whoever started it may die without a word while a call waits here.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
  // What libraries print must not come between the messages.
  const int output = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (output < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) return EXIT_FAILURE;
  QCoreApplication application(argc, argv);
  SoundWorker worker(STDIN_FILENO, output);
  QCoreApplication::exec();
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace parlowen
