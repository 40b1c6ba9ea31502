#include "audio/qt/ServerDefaults.h"

#include <dlfcn.h>

#include <cstdint>

namespace parlowen {
namespace {

// The part of libpulse's interface that is needed, as it has been since version 0.9. The library that Qt has
// loaded is used, or none: building Parlowen needs no headers of it, and running it not the library.

constexpr const char* kLibrary = "libpulse.so.0";
constexpr int kReady = 4, kFailed = 5;  // pa_context_state_t; 6 is "terminated"
constexpr int kNoAutospawn = 1;         // pa_context_flags_t

struct SampleSpec {
  int format;
  std::uint32_t rate;
  std::uint8_t channels;
};
struct ServerInfo {  // the beginning of pa_server_info
  const char *user, *host, *version, *name;
  SampleSpec spec;
  const char *defaultSink, *defaultSource;
};
using InfoCallback = void (*)(void* context, const ServerInfo* info, void* userData);

class Library {
 public:
  Library() : handle_(::dlopen(kLibrary, RTLD_LAZY | RTLD_NOLOAD)) {}
  ~Library() {
    if (handle_ != nullptr) ::dlclose(handle_);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  template <typename Function>
  Function* Find(const char* name) {
    void* const found = handle_ != nullptr ? ::dlsym(handle_, name) : nullptr;
    complete_ = complete_ && found != nullptr;
    return reinterpret_cast<Function*>(found);
  }
  bool Complete() const { return complete_; }

 private:
  void* handle_;
  bool complete_ = true;
};

struct Answer {
  ServerDefaults defaults;
  bool come = false;
};

void TakeInfo(void*, const ServerInfo* info, void* userData) {
  auto& answer = *static_cast<Answer*>(userData);
  answer.come = true;
  if (info == nullptr) return;
  answer.defaults = {info->defaultSink, info->defaultSource};
}

}  // namespace

ServerDefaults AskServerDefaults() {
  Library library;
  const auto newLoop = library.Find<void*()>("pa_mainloop_new");
  const auto interfaceOf = library.Find<void*(void*)>("pa_mainloop_get_api");
  const auto iterate = library.Find<int(void*, int, int*)>("pa_mainloop_iterate");
  const auto freeLoop = library.Find<void(void*)>("pa_mainloop_free");
  const auto newContext = library.Find<void*(void*, const char*)>("pa_context_new");
  const auto connect = library.Find<int(void*, const char*, int, const void*)>("pa_context_connect");
  const auto stateOf = library.Find<int(const void*)>("pa_context_get_state");
  const auto ask = library.Find<void*(void*, InfoCallback, void*)>("pa_context_get_server_info");
  const auto disconnect = library.Find<void(void*)>("pa_context_disconnect");
  const auto freeContext = library.Find<void(void*)>("pa_context_unref");
  const auto freeOperation = library.Find<void(void*)>("pa_operation_unref");
  if (!library.Complete()) return {};

  Answer answer;
  void* const loop = newLoop();
  void* const context = loop != nullptr ? newContext(interfaceOf(loop), "Parlowen") : nullptr;
  if (context != nullptr && connect(context, nullptr, kNoAutospawn, nullptr) >= 0) {
    void* operation = nullptr;
    while (!answer.come && stateOf(context) < kFailed && iterate(loop, 1, nullptr) >= 0)
      if (operation == nullptr && stateOf(context) == kReady) operation = ask(context, TakeInfo, &answer);
    if (operation != nullptr) freeOperation(operation);
    disconnect(context);
  }
  if (context != nullptr) freeContext(context);
  if (loop != nullptr) freeLoop(loop);
  return answer.defaults;
}

}  // namespace parlowen
