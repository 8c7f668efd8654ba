// Client of the vendor adapter library.
//
// Nothing here logs: a missing adapter is a normal configuration (the crop
// computation falls back to the shift tag), and the retry on every holder
// request would otherwise flood the log.
#include "AdapterClient.h"

#include <dlfcn.h>

#ifdef METAHELPER_HOST_BUILD
#include <cstdlib>
#endif

namespace adapter {
namespace {

constexpr const char* kAdapterLibrary = "/vendor/lib64/libnvcamera_adapter.so";
constexpr const char* kEntrySymbol = "GetInstance";

using GetInstanceFn = PlatformAdapter* (*)();

// Host builds may name another adapter library (tests, replay). The choice is
// made once, when the client first loads, so later environment changes do not
// switch libraries under a running client.
const char* AdapterLibraryPath() {
#ifdef METAHELPER_HOST_BUILD
  static const char* const path = [] {
    const char* fromEnvironment = std::getenv("METAHELPER_ADAPTER_LIBRARY");
    return fromEnvironment != nullptr ? fromEnvironment : kAdapterLibrary;
  }();
  return path;
#else
  return kAdapterLibrary;
#endif
}

}  // namespace

AdapterClient::AdapterClient() { Load(); }

AdapterClient::~AdapterClient() {
  // The adapter instance belongs to the library; only the handle is ours.
  if (mHandle != nullptr) dlclose(mHandle);
  mHandle = nullptr;
  mLoaded = 0;
}

int AdapterClient::Load() {
  if (mLoaded > 0) return 0;
  return LoadLibrary();
}

int AdapterClient::LoadLibrary() {
  if (mHandle != nullptr) {
    dlclose(mHandle);
    mHandle = nullptr;
  }
  void* handle = dlopen(AdapterLibraryPath(), RTLD_NOW | RTLD_GLOBAL);
  if (handle == nullptr) return -1;
  // Resolved in the adapter's own handle: this library exports a GetInstance
  // of its own, which a global lookup could find first. An adapter without the
  // entry is not a supported installation, so the address is not tested.
  auto getInstance = reinterpret_cast<GetInstanceFn>(dlsym(handle, kEntrySymbol));
  PlatformAdapter* instance = getInstance();
  if (instance == nullptr) {
    dlclose(handle);
    return -1;
  }
  instance->initialize();
  mHandle = handle;
  mAdapter = instance;
  mLoaded = 1;
  return 0;
}

std::shared_ptr<PlatformInfoHolder> AdapterClient::getPlatformInfoHolder() {
  if (mLoaded <= 0) LoadLibrary();
  if (mAdapter == nullptr) return {};
  return mAdapter->getPlatformInfoHolder();
}

}  // namespace adapter
