#include "shell/qt/ActionGate.h"

namespace parlowen {

void ActionGate::Enter() {
  if (depth_++ == 0) emit Began();
}

void ActionGate::Leave() { --depth_; }

}  // namespace parlowen
