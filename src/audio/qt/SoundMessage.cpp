#include "audio/qt/SoundMessage.h"

#include <cstring>

namespace parlowen {
namespace {

constexpr qsizetype kNumber = sizeof(std::int32_t);
constexpr qsizetype kHead = 3 * kNumber;
constexpr std::int32_t kLargestPayload = 16 << 20;

}  // namespace

std::int32_t SoundMessage::NumberAt(qsizetype index) const {
  std::int32_t value = 0;
  if (payload.size() / kNumber > index)
    std::memcpy(&value, payload.constData() + index * kNumber, sizeof value);
  return value;
}

QByteArray PackNumbers(std::initializer_list<std::int32_t> numbers) {
  return {reinterpret_cast<const char*>(numbers.begin()), static_cast<qsizetype>(numbers.size()) * kNumber};
}

QByteArray PackMessage(const SoundMessage& message) {
  return PackNumbers({static_cast<std::int32_t>(message.kind), message.number,
                      static_cast<std::int32_t>(message.payload.size())}) +
         message.payload;
}

std::optional<SoundMessage> TakeMessage(QByteArray& bytes) {
  if (bytes.size() < kHead) return {};
  const SoundMessage head{{}, 0, bytes.first(kHead)};
  const std::int32_t size = head.NumberAt(2);
  if (size < 0 || size > kLargestPayload) {
    bytes.clear();
    return {};
  }
  if (bytes.size() - kHead < size) return {};
  SoundMessage message{static_cast<SoundMessageKind>(head.NumberAt(0)), head.NumberAt(1),
                       bytes.mid(kHead, size)};
  bytes.remove(0, kHead + size);
  return message;
}

}  // namespace parlowen
