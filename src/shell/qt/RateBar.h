#pragma once
#include <QWidget>
#include <functional>

#include "document/SoundStamp.h"

namespace parlowen {

class ElidedLabel;
class SoundDocument;

/// The line that says what a sound above 22050 Hz cannot be analysed for, with buttons that convert it. It comes and
/// goes with the sound.
class RateBar : public QWidget {
 public:
  explicit RateBar(QWidget* parent);

  /// Shown for a sound of such a rate until the user wants it left as it is.
  void Follow(const SoundDocument& document);

  /// Converts to 16000 Hz (true) or to 11025 Hz.
  std::function<void(bool to16000)> convert;

 private:
  ElidedLabel* label_;
  SoundStamp seen_;  ///< the sound of now
  SoundStamp left_;  ///< the sound that is to stay as it is
};

}  // namespace parlowen
