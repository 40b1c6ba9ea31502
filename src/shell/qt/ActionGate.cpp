#include "shell/qt/ActionGate.h"

namespace parlowen {

void ActionGate::Enter() {
  if (depth_++ == 0) Q_EMIT Began();
}

void ActionGate::Leave() { --depth_; }

}  // namespace parlowen
