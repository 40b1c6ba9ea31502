#pragma once
#include "document/SoundStamp.h"

namespace parlowen {

enum class EditKind { None, Cut, Paste, Undo, RateConversion };

/// What an edit did to the sound: the `removed` samples from `at` on gave way to `inserted` others. Whatever
/// stands at a moment of the sound can follow from this alone.
/// - A paste that reaches the capacity pushes the end of the sound out: newCount is then smaller than
///   oldCount − removed + inserted. The undo brings that end back: newCount is larger.
/// - A conversion of the rate removes and inserts nothing: a position p becomes trunc(p·newRate/oldRate).
struct Edit {
  EditKind kind = EditKind::None;
  int at = 0, removed = 0, inserted = 0;  ///< samples
  int oldCount = 0, newCount = 0;         ///< samples of the whole sound
  int oldRate = 0, newRate = 0;           ///< Hz
  SoundStamp soundBefore;                 ///< things that belong to it follow

  explicit operator bool() const { return kind != EditKind::None; }
};

}  // namespace parlowen
