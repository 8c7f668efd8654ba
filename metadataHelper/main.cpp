// The library's exported entry point.
#include "MetaHelperManagerImpl.h"

namespace {

// Capture-type names carried by the shared camera headers. Nothing in this
// library reads them; one copy is kept so the names stay documented here.
[[maybe_unused]] constexpr const char* kCaptureTypeNames[] = {
    "CaptureType_SAT_SE",        "CaptureType_SAT_ELL",       "CaptureType_SN_SN",
    "CaptureType_SN_ELL",        "CaptureType_SN_FrontSN",    "CaptureType_Bokeh_SE",
    "CaptureType_UltraRaw_SN",   "CaptureType_UltraRaw_ELL",  "CaptureType_LongExpBracket",
    "CaptureType_LongExpHandheld", "CaptureType_INVALID",
};

}  // namespace

// Constructed on first call under the thread-safe static guard and destroyed
// at process exit, when it drops the library's reference to the helper.
extern "C" void* GetInstance() {
  static metahelper::MetaHelperManagerImpl manager;
  return &manager;
}
