// metahelper-replay: loads a captured request (and the static metadata of its
// cameras) from a text file, hands it to the helper exactly as a camera
// component would (GetInstance, GetMetadataHelper), and prints what the
// operations return.
#include <MetaTagWrapper.h>
#include <nvdebug/NvLog.h>

#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "CaptureFile.h"
#include "MetaHelperManagerImpl.h"

namespace {

using metahelper::metadataHelperBase;
using metahelper::MetaPtr;

// One operation: calls it and renders its output when it succeeded.
struct Report {
  const char* operation;
  std::function<int(metadataHelperBase&, const MetaPtr&, std::string*)> run;
};

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format(const char* format, ...) {
  char text[256];
  va_list args;
  va_start(args, format);
  vsnprintf(text, sizeof text, format, args);
  va_end(args);
  return text;
}

std::string Rect(const nvholder::ChiRect& r) { return Format("[%u %u %u %u]", r.left, r.top, r.width, r.height); }

template <typename T, typename Getter>
Report Scalar(const char* name, const char* format, Getter getter) {
  return {name, [format, getter](metadataHelperBase& h, const MetaPtr& m, std::string* out) {
            T value{};
            const int result = (h.*getter)(m, &value);
            *out = Format(format, value);
            return result;
          }};
}

std::vector<Report> Reports() {
  using H = metadataHelperBase;
  return {
      Scalar<long>("GetSensorExposureTime", "%ld ns", &H::GetSensorExposureTime),
      Scalar<int>("GetSensitivity", "ISO %d", &H::GetSensitivity),
      Scalar<unsigned long>("GetAndroidTimeStamp", "%lu", &H::GetAndroidTimeStamp),
      Scalar<unsigned long>("GetSensorTimestamp", "%lu", &H::GetSensorTimestamp),
      Scalar<int>("GetFwkCameraId", "%d", &H::GetFwkCameraId),
      Scalar<float>("GetIspGain", "%.4f", &H::GetIspGain),
      Scalar<float>("GetSensorGain", "%.4f", &H::GetSensorGain),
      Scalar<float>("GetAdrcGain", "%.4f", &H::GetAdrcGain),
      Scalar<float>("GetAeRatio", "%.4f", &H::GetAeRatio),
      Scalar<int>("GetLuxIndex", "%d", &H::GetLuxIndex),
      Scalar<float>("GetFaceLumaTarget", "%.2f", &H::GetFaceLumaTarget),
      Scalar<float>("GetAndroidZoomRatio", "%.2f", &H::GetAndroidZoomRatio),
      Scalar<float>("GetfocusDistCm", "%.1f cm", &H::GetfocusDistCm),
      {"GetNuvaroSensorModeType",
       [](H& h, const MetaPtr& m, std::string* out) {
         nvholder::NVSENSORMODETYPE type = 0;
         const int result = h.GetNuvaroSensorModeType(m, &type);
         *out = Format("%d", type);
         return result;
       }},
      {"GetSensorDynamicBlackLevel",
       [](H& h, const MetaPtr& m, std::string* out) {
         float levels[4] = {};
         const int result = h.GetSensorDynamicBlackLevel(m, levels);
         *out = Format("%.1f %.1f %.1f %.1f", levels[0], levels[1], levels[2], levels[3]);
         return result;
       }},
      {"GetActiveArraySize",
       [](H& h, const MetaPtr& m, std::string* out) {
         nvholder::ChiRect active{};
         const int result = h.GetActiveArraySize(m, &active);
         *out = Rect(active);
         return result;
       }},
      {"GetCropRegion",
       [](H& h, const MetaPtr& m, std::string* out) {
         nvholder::ChiRect active{}, crop{};
         h.GetActiveArraySize(m, &active);
         const int result = h.GetCropRegion(m, &crop, {active.width, active.height}, false);
         *out = Rect(crop);
         return result;
       }},
      {"GetImgName",
       [](H& h, const MetaPtr& m, std::string* out) {
         std::string name;
         const int result = h.GetImgName(m, &name);
         *out = "\"" + std::string(name.c_str()) + "\"";
         return result;
       }},
      {"GetFaceRect 1920x1440",
       [](H& h, const MetaPtr& m, std::string* out) {
         FacesInfo faces{};
         const int result = h.GetFaceRect(m, 1920, 1440, faces, nullptr);
         *out = Format("%d face(s)", faces.faceCount);
         for (int i = 0; i < faces.faceCount && i < 10; ++i) {
           const __UtilsImage_Rect& r = faces.faces[i].rect;
           *out += Format(" [%u %u %ux%u]", r.left, r.top, r.width, r.height);
         }
         return result;
       }},
      {"IsRearCamera",
       [](H& h, const MetaPtr& m, std::string* out) {
         *out = h.IsRearCamera(m) ? "yes" : "no";
         return 0;
       }},
  };
}

int Usage() {
  std::fprintf(stderr,
               "usage: metahelper-replay [--log] CAPTURE_FILE\n"
               "  --log  print the helper's log lines (all levels) to stderr\n");
  return 2;
}

}  // namespace

extern "C" void* GetInstance();

int main(int argc, char** argv) {
  bool log = false;
  const char* path = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--log") == 0) log = true;
    else if (path == nullptr) path = argv[i];
    else return Usage();
  }
  if (path == nullptr) return Usage();

  std::ifstream in(path);
  if (!in) {
    std::fprintf(stderr, "%s: cannot open file\n", path);
    return 1;
  }
  replay::Capture capture;
  std::string error;
  if (!replay::ReadCapture(in, path, &capture, &error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  for (const auto& [camera, meta] : capture.statics) StaticMetadataWraper::getInstance()->setStaticMetadata(camera, meta);
  if (log) gNvCamLogLevel = 0;

  auto* manager = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
  std::shared_ptr<metadataHelperBase> helper = manager->GetMetadataHelper();
  std::printf("%-28s %6s  %s\n", "operation", "result", "value");
  for (const Report& report : Reports()) {
    std::string value;
    const int result = report.run(*helper, capture.request, &value);
    std::printf("%-28s %6d  %s\n", report.operation, result, result == 0 ? value.c_str() : "-");
  }
  return 0;
}
