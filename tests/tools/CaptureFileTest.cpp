// The capture reader of the replay tool: what it loads, and the message it
// gives for each kind of bad line.
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include <sstream>
#include <string>

#include "CaptureFile.h"

namespace {

bool Read(const std::string& text, replay::Capture* capture, std::string* error) {
  std::istringstream in(text);
  return replay::ReadCapture(in, "cap.meta", capture, error);
}

TEST(CaptureFile, LoadsEveryElementTypeIntoItsSection) {
  replay::Capture capture;
  std::string error;
  ASSERT_TRUE(Read("# night\n"
                   "android.sensor.exposureTime = 33000000\n"
                   "android.lens.focusDistance = 0.5\n"
                   "android.colorCorrection.transform = 1/2 0/1 -3/4\n"
                   "nuvaro.snapshot.imageName = \"IMG 1\"\n"
                   "android.sensor.info.activeArraySize = 0 0 0x10 4294967295\n"
                   "[static 3]\n"
                   "android.lens.facing = 1\n",
                   &capture, &error))
      << error;
  const NvMetadata& request = *capture.request;
  EXPECT_EQ(33000000, request.find(ANDROID_SENSOR_EXPOSURE_TIME).data.i64[0]);
  EXPECT_FLOAT_EQ(0.5f, request.find(ANDROID_LENS_FOCUS_DISTANCE).data.f[0]);
  const auto ccm = request.find(ANDROID_COLOR_CORRECTION_TRANSFORM);
  ASSERT_EQ(3u, ccm.count);
  EXPECT_EQ(-3, ccm.data.r[2].numerator);
  EXPECT_EQ(4, ccm.data.r[2].denominator);
  const auto name = request.find("nuvaro.snapshot.imageName");
  ASSERT_EQ(6u, name.count);  // the characters and a terminating zero
  EXPECT_EQ(std::string("IMG 1"), reinterpret_cast<const char*>(name.data.u8));
  EXPECT_EQ(-1, request.find(ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE).data.i32[3]);
  ASSERT_EQ(1u, capture.statics.count(3));
  EXPECT_EQ(1, capture.statics[3]->find(ANDROID_LENS_FACING).data.u8[0]);
  EXPECT_EQ(0u, capture.request->find(ANDROID_LENS_FACING).count);
}

TEST(CaptureFile, BadLinesNameFileLineAndProblemAndLoadNothing) {
  struct Case {
    std::string text;
    std::string error;
  };
  const Case cases[] = {
      {"android.sensor.exposureTime 5\n", "cap.meta:1: expected '<tag name> = <values>'"},
      {"\n\nno.such.tag = 1\n", "cap.meta:3: unknown tag 'no.such.tag'"},
      {"android.sensor.sensitivity = 12x\n",
       "cap.meta:1: android.sensor.sensitivity: expected a 32-bit integer, got '12x'"},
      {"android.lens.facing = 256\n", "cap.meta:1: android.lens.facing: expected a byte (-128..255), got '256'"},
      {"android.colorCorrection.transform = 1\n",
       "cap.meta:1: android.colorCorrection.transform: expected a rational n/d, got '1'"},
      {"android.lens.aperture =\n", "cap.meta:1: android.lens.aperture: no values"},
      {"android.lens.aperture = \"f2\"\n",
       "cap.meta:1: android.lens.aperture: a quoted string only fills a byte tag"},
      {"nuvaro.snapshot.imageName = \"IMG\n", "cap.meta:1: nuvaro.snapshot.imageName: unterminated string"},
      {"[static]\n", "cap.meta:1: unknown section '[static]' (use [request] or [static <camera id>])"},
      {"[request\n", "cap.meta:1: section header must end with ']'"},
      {"android.lens.aperture = 1\n[static 0]\nandroid.lens.aperture = 2\nandroid.lens.aperture = 3\n",
       "cap.meta:4: tag 'android.lens.aperture' given twice"},
  };
  for (const Case& c : cases) {
    replay::Capture capture;
    std::string error;
    EXPECT_FALSE(Read(c.text, &capture, &error)) << c.text;
    EXPECT_EQ(c.error, error) << c.text;
    EXPECT_EQ(0u, capture.request->entryCount()) << c.text;
    EXPECT_TRUE(capture.statics.empty()) << c.text;
  }
}

}  // namespace
