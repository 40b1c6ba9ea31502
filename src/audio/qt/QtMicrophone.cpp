#include "audio/qt/QtMicrophone.h"

#include <QAudioDevice>
#include <cstring>

namespace parlowen {
namespace {

constexpr int kBufferMilliseconds = 4000;
constexpr int kWatchMilliseconds = 100;
constexpr int kPatienceMilliseconds = 3000;

}  // namespace

QtMicrophone::QtMicrophone() {
  watch_.setInterval(kWatchMilliseconds);
  connect(&watch_, &QTimer::timeout, this, &QtMicrophone::Watch);
  connect(&devices_, &QMediaDevices::audioInputsChanged, this, &QtMicrophone::PresenceChanged);
}

QtMicrophone::~QtMicrophone() { Close(); }

bool QtMicrophone::IsPresent() const { return !QMediaDevices::defaultAudioInput().isNull(); }

bool QtMicrophone::Open(int sampleRate, int channels) {
  Close();
  const QAudioDevice device = QMediaDevices::defaultAudioInput();
  QAudioFormat format;
  format.setSampleRate(sampleRate);
  format.setChannelCount(channels);
  format.setSampleFormat(QAudioFormat::Int16);
  if (device.isNull() || !device.isFormatSupported(format)) return false;
  source_ = std::make_unique<QAudioSource>(device, format);
  source_->setBufferSize(format.bytesForDuration(kBufferMilliseconds * 1000));
  return true;
}

bool QtMicrophone::Queue(std::span<std::int16_t> block) {
  if (!source_) return false;
  queue_.push_back(block);
  return true;
}

bool QtMicrophone::Start() {
  if (!source_) return false;
  stream_ = source_->start();
  if (stream_ == nullptr || source_->state() == QAudio::StoppedState) return false;
  connect(stream_, &QIODevice::readyRead, this, &QtMicrophone::TakeSound, Qt::QueuedConnection);
  sinceSound_.start();
  watch_.start();
  return true;
}

void QtMicrophone::Close() {
  watch_.stop();
  queue_.clear();
  taken_.clear();
  if (stream_ != nullptr) disconnect(stream_, nullptr, this, nullptr);
  stream_ = nullptr;
  if (!source_) return;
  source_->stop();
  source_.release()->deleteLater();  // it may be in the middle of a notice of its own
}

void QtMicrophone::TakeSound() {
  if (stream_ == nullptr) return;
  const QByteArray more = stream_->readAll();
  if (!more.isEmpty()) sinceSound_.start();
  taken_ += more;
  while (source_ && !queue_.empty()) {
    const std::span<std::int16_t> block = queue_.front();
    const auto bytes = static_cast<qsizetype>(block.size_bytes());
    if (taken_.size() < bytes) return;
    queue_.pop_front();
    std::memcpy(block.data(), taken_.constData(), block.size_bytes());
    taken_.remove(0, bytes);
    if (onFilled) onFilled(block);
  }
}

void QtMicrophone::Watch() {
  if (!source_) return;
  const bool stopped = source_->error() != QAudio::NoError || source_->state() == QAudio::StoppedState;
  if (stopped || sinceSound_.elapsed() > kPatienceMilliseconds) Lose();
}

void QtMicrophone::Lose() {
  Close();
  if (onLost) onLost(InputLoss::Gone);
}

}  // namespace parlowen
