// Reaches the helper the way a camera component does, through the exported C
// entry point, and reads a value from a container it fills. Exits non-zero
// when the installed headers and libraries disagree with each other.
#include <MetaHelperManagerImpl.h>
#include <NvMetadata.h>
#include <system/camera_metadata.h>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

int Fail(const char* what) {
  std::fprintf(stderr, "consumer: %s\n", what);
  return 1;
}

}  // namespace

int main() {
  auto* manager = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
  if (manager == nullptr) return Fail("GetInstance returned null");
  std::shared_ptr<metahelper::metadataHelperBase> helper = manager->GetMetadataHelper();
  if (helper == nullptr) return Fail("GetMetadataHelper returned null");

  auto request = std::make_shared<NvMetadata>();
  const int64_t exposureNs = 33333333;
  if (request->update(ANDROID_SENSOR_EXPOSURE_TIME, &exposureNs, 1) != 0)
    return Fail("container refused the exposure");

  long exposure = 0;
  if (helper->GetSensorExposureTime(request, &exposure) != 0 || exposure != exposureNs)
    return Fail("exposure time not read back");

  // Absent from the container: the call fails and leaves the output alone.
  int orientation = -7;
  if (helper->GetAndroidJpegOrientation(request, &orientation) != -1 || orientation != -7)
    return Fail("missing JPEG orientation not reported");

  std::printf("consumer: exposure %ld ns\n", exposure);
  return 0;
}
