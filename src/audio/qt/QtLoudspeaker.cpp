#include "audio/qt/QtLoudspeaker.h"

#include <QAudioDevice>
#include <algorithm>
#include <cstring>

namespace parlowen {
namespace {

constexpr const char* kNoDevice = "没有可用的放音设备";
constexpr const char* kRateRefused = "放音设备不支持 %1 Hz 的采样频率";
constexpr int kBufferMilliseconds = 100;  // of the sink: short, so that the cursor is where the sound is
constexpr int kSilenceMilliseconds = 300;
constexpr int kWatchMilliseconds = 20;
constexpr int kPatienceMilliseconds = 3000;

}  // namespace

void SampleReader::Read(std::span<const std::int16_t> samples, qint64 silenceBytes) {
  bytes_ = reinterpret_cast<const char*>(samples.data());
  size_ = static_cast<qint64>(samples.size_bytes());
  silence_ = silenceBytes;
  at_ = 0;
}

qint64 SampleReader::readData(char* target, qint64 most) {
  const qint64 sound = std::clamp<qint64>(size_ - at_, 0, most);
  if (sound > 0) std::memcpy(target, bytes_ + at_, static_cast<std::size_t>(sound));
  const qint64 silence = std::clamp<qint64>(size_ + silence_ - at_ - sound, 0, most - sound);
  std::memset(target + sound, 0, static_cast<std::size_t>(silence));
  at_ += sound + silence;
  return sound + silence;
}

QtLoudspeaker::QtLoudspeaker() {
  watch_.setInterval(kWatchMilliseconds);
  watch_.setTimerType(Qt::PreciseTimer);
  connect(&watch_, &QTimer::timeout, this, &QtLoudspeaker::Watch);
}

QtLoudspeaker::~QtLoudspeaker() { Close(); }

std::string QtLoudspeaker::Open(int sampleRate) {
  Close();
  const QAudioDevice device = QMediaDevices::defaultAudioOutput();
  if (device.isNull()) return kNoDevice;
  QAudioFormat format;
  format.setSampleRate(sampleRate);
  format.setChannelCount(1);
  format.setSampleFormat(QAudioFormat::Int16);
  if (!device.isFormatSupported(format)) return QString(kRateRefused).arg(sampleRate).toStdString();
  sampleRate_ = sampleRate;
  lost_ = false;
  sink_ = std::make_unique<QAudioSink>(device, format);
  sink_->setBufferSize(format.bytesForDuration(kBufferMilliseconds * 1000));
  return {};
}

bool QtLoudspeaker::Prepare(std::span<const std::int16_t> samples) {
  count_ = static_cast<int>(samples.size());
  lastPosition_ = 0;
  reader_.Read(samples, qint64{sampleRate_} * 2 * kSilenceMilliseconds / 1000);
  return reader_.isOpen() || reader_.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool QtLoudspeaker::Write() {
  if (!sink_) return false;
  sink_->start(&reader_);
  if (sink_->error() != QAudio::NoError && sink_->state() == QAudio::StoppedState) return false;
  sinceStart_.start();
  sinceProgress_.start();
  watch_.start();
  return true;
}

/// What the device says that it has played; never back, and never ahead of the clock, where a device counts
/// what it was given.
int QtLoudspeaker::Position() const {
  if (!sink_) return 0;
  const qint64 processed = sink_->processedUSecs() * sampleRate_ / 1000000;
  const qint64 elapsed = sinceStart_.elapsed() * sampleRate_ / 1000;
  return static_cast<int>(std::clamp<qint64>(std::min(processed, elapsed), lastPosition_, count_));
}

bool QtLoudspeaker::Reset() {
  watch_.stop();
  if (sink_) sink_->reset();
  return !lost_;
}

bool QtLoudspeaker::Close() {
  watch_.stop();
  if (sink_) {
    sink_->stop();
    sink_.release()->deleteLater();  // it may be in the middle of a notice of its own
  }
  reader_.close();
  return true;
}

void QtLoudspeaker::Watch() {
  if (!sink_) return;
  const int position = Position();
  if (position > lastPosition_) {
    lastPosition_ = position;
    sinceProgress_.start();
  }
  // A device that does not count to the end has played all when its buffer has run empty behind the silence.
  const bool allRead = reader_.atEnd() && sink_->state() == QAudio::IdleState;
  const bool stopped = sink_->state() == QAudio::StoppedState;
  lost_ = lost_ || stopped || (!allRead && sinceProgress_.elapsed() > kPatienceMilliseconds);
  if (!lost_ && !allRead && position < count_) return;
  watch_.stop();
  if (onDone) onDone();
}

}  // namespace parlowen
