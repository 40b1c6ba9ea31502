#pragma once
#include "document/SoundStamp.h"
#include "synthesis/Resynthesis.h"
#include "synthesis/TargetCurve.h"

namespace parlowen {

/// The latest resynthesis: in work while its window is open, afterwards kept to be looked at.
struct SynthesisState {
  SynthesisJob job;
  TargetCurve target;
  SoundStamp sound;  ///< that it was made from
};

}  // namespace parlowen
