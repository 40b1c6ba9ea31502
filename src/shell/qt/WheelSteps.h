#pragma once
#include <QWheelEvent>

namespace parlowen {

/// Adds up the turns of a wheel or a touch pad and hands them out in whole notches of 120.
class WheelSteps {
 public:
  /// Notches that are complete now: positive away from the user or to the left.
  int Take(const QWheelEvent& event) {
    constexpr int kNotch = 120;
    const QPoint turn = event.angleDelta();
    collected_ += turn.y() != 0 ? turn.y() : turn.x();
    const int notches = collected_ / kNotch;
    collected_ -= notches * kNotch;
    return notches;
  }

 private:
  int collected_ = 0;
};

}  // namespace parlowen
