// Client of the vendor adapter library, which owns the platform info holder.
//
// One client per process, created on first use. It loads the adapter library
// once at creation and, if that failed, again on every holder request, so a
// library that becomes loadable later is still picked up. It takes no lock:
// concurrent retries after a failed load may overlap, as the platform allows.
#pragma once

#include <memory>

#include "PlatformAdapter.h"

namespace adapter {

class AdapterClient {
 public:
  // The process-wide client; loads the library on first call.
  static AdapterClient& getInstance() {
    static AdapterClient gAdapterClient;
    return gAdapterClient;
  }

  // 0 when the library is loaded and its adapter initialised, -1 otherwise.
  int Load();

  // The adapter's info holder, or empty when the library or adapter is missing.
  std::shared_ptr<PlatformInfoHolder> getPlatformInfoHolder();

  ~AdapterClient();
  AdapterClient(const AdapterClient&) = delete;
  AdapterClient& operator=(const AdapterClient&) = delete;

 private:
  AdapterClient();
  int LoadLibrary();

  void* mHandle = nullptr;
  PlatformAdapter* mAdapter = nullptr;  // owned by the adapter library
  int32_t mLoaded = 0;
};

}  // namespace adapter
