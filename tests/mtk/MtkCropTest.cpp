// The crop region computation: sensor-policy crop, in-sensor-zoom remap,
// aspect fit and the zoom-stabilisation shift from the holder or the tag.
#include "MtkFixture.h"

namespace mtktest {
namespace {

using nvholder::dimension;

constexpr dimension kSensor{4000, 3000};
constexpr ChiRect kCentre{1000, 750, 2000, 1500};  // keeps the active aspect, room on every side

// Camera kCamera with a zoom-EIS rate of 2.0 at zoom 1.0, a frame timestamp,
// and a sensor-policy table in which the camera's crop follows another's.
class MtkCropTest : public MtkTest {
 protected:
  void SetUp() override {
    MtkTest::SetUp();
    Put(*cameraMeta, "com.nuvaro.camera.zoomeis.effectiverate", std::vector<float>{2.0f});
    Put(*meta, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{777});
    Put(*meta, ANDROID_CONTROL_ZOOM_RATIO, std::vector<float>{1.0f});
    fakeadapter::SetCameraType(kCamera, 0);
    SetPolicyCrop(kCentre);
  }
  void SetPolicyCrop(const ChiRect& c) {
    std::vector<int32_t> words;
    for (int32_t id : {1, kCamera, kCamera + 1, kCamera})
      words.insert(words.end(), {id, 0, 0, 0, 0, int32_t(c.left) + (id == 1), int32_t(c.top),
                                 int32_t(c.width), int32_t(c.height)});
    Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", words);
  }
  Quad Crop(dimension sensor = kSensor, bool inSensorZoom = false, int expectedResult = 0) {
    ChiRect crop{1, 1, 1, 1};
    EXPECT_EQ(expectedResult, helper.GetCropRegion(meta, &crop, sensor, inSensorZoom));
    return Q(crop);
  }
};

TEST_F(MtkCropTest, FitsThePolicyCropToTheActiveAspect) {
  struct Case {
    const char* what;
    ChiRect policy;
    dimension sensor;
    bool inSensorZoom;
    Quad expected;
  };
  const Case cases[] = {
      {"too wide, centred", {0, 500, 4000, 2000}, {4080, 3060}, false, {0, 0, 4000, 3000}},
      {"too wide, sensor height", {0, 0, 4000, 2250}, {4080, 3060}, false, {0, 0, 4000, 3060}},
      {"too tall, centred", {500, 200, 3000, 3000}, {4080, 3060}, false, {0, 200, 4000, 3000}},
      {"too tall, sensor width", {400, 200, 3000, 3000}, {4080, 3060}, false, {0, 200, 4080, 3000}},
      {"in-sensor zoom remapped", kCentre, kSensor, true, {0, 0, 4000, 3000}},
      {"in-sensor zoom rejected", {900, 750, 2000, 1500}, kSensor, true, {900, 750, 2000, 1500}},
  };
  fakeadapter::SetMode(fakeadapter::Mode::kNoHolder);
  for (const Case& c : cases) {
    SetPolicyCrop(c.policy);
    EXPECT_EQ(c.expected, Crop(c.sensor, c.inSensorZoom)) << c.what;
  }
  EXPECT_TRUE(Logged("I 947 input crop (0, 0, 4000, 2250) output crop (0, 0, 4000, 3060)"));
  Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", std::vector<int32_t>{});
  EXPECT_EQ((Quad{0, 0, 0, 0}), Crop());
  EXPECT_EQ("I 957 get final crop = cropregion: [0 0 0 0] ret = 0 metaSuccess = 0", Last());
}

TEST_F(MtkCropTest, ShiftComesFromTheHolderFirstThenFromTheTag) {
  struct Case {
    bool holderFinds;
    int32_t h, v;
    uint8_t preAnchor;
    std::vector<float> tag;
    bool inSensorZoom;
    std::string applied;  // names the shift as scaled
    Quad expected;
  };
  const Case cases[] = {
      {true, 10, -6, 0, {20, 20, 0, 0}, false, "I 955 using zoom eis shift (10,-6)", {1010, 744, 2000, 1500}},
      {false, 0, 0, 0, {20, 20, 0, 0}, false, "I 955 using zoom eis shift (20,20)", {1020, 770, 2000, 1500}},
      {true, -3, 5, 1, {}, false, "I 955 using zoom eis shift (-1,2)", {999, 752, 2000, 1500}},
      {false, 0, 0, 0, {20, 21, 1, 0}, false, "I 955 using zoom eis shift (10,10)", {1010, 760, 2000, 1500}},
      {true, 10, -6, 0, {}, true, "I 956 not using zoom eis shift (20,-12)", {0, 0, 4000, 3000}},
      {true, 1001, 0, 0, {}, false, "I 956 not using zoom eis shift (1001,0)", Q(kCentre)},
      {false, 0, 0, 0, {20, 20, 0}, false, "I 955 using zoom eis shift (0,0)", Q(kCentre)},
  };
  for (const Case& c : cases) {
    fakeadapter::SetShiftAnswer(c.holderFinds, c.h, c.v, c.preAnchor);
    Put(*meta, "nuvaro.sat.output.shift", c.tag);
    log.Clear();
    EXPECT_EQ(c.expected, Crop(kSensor, c.inSensorZoom)) << c.applied;
    EXPECT_TRUE(Logged(c.applied)) << c.applied;
    EXPECT_EQ(!c.holderFinds && c.tag.size() == 4, Last().back() == '1') << c.applied << ": metaSuccess";
  }
  EXPECT_TRUE(Logged("I 952 get shift failed size = 3, from nuvaro.sr.shift.value..."));
  EXPECT_TRUE(Logged("I 954 zoom after isInSensorZoom = 0 shift (0,0) "));
}

// The query names the frame; cameras of type 20 follow zoom EIS once the
// zoom ratio reaches the camera's rate.
TEST_F(MtkCropTest, HolderQueryCarriesTheFrameAndTheNodeType) {
  for (auto [cameraType, zoomRatio, nodeType] :
       std::initializer_list<std::tuple<int, float, int>>{{0, 2.0f, 1}, {20, 1.5f, 1}, {20, 2.0f, 2}}) {
    fakeadapter::SetCameraType(kCamera, cameraType);
    Put(*meta, ANDROID_CONTROL_ZOOM_RATIO, std::vector<float>{zoomRatio});
    Crop();
    const nvholder::ShiftData q = fakeadapter::LastQuery();
    EXPECT_EQ((std::array<int64_t, 4>{nodeType, 777, kCamera, 1500000000}),
              (std::array<int64_t, 4>{q.nodeType, q.timestamp, q.phyCameraId, fakeadapter::LastInterval()}));
  }
}

TEST_F(MtkCropTest, MissingTimestampKeepsTheFittedCropAndFails) {
  fakeadapter::SetShiftAnswer(true, 10, -6, 0);
  Put(*meta, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{});
  EXPECT_EQ(Q(kCentre), Crop(kSensor, false, -1));
  EXPECT_TRUE(Logged("I 949 [camera id:5] tag ANDROID_SENSOR_TIMESTAMP not found!"));
}

TEST_F(MtkCropTest, CameraMissingFromTheHoldersTableEndsTheProcess) {
  fakeadapter::ClearCameras();
  EXPECT_DEATH(Crop(),
               "out_of_range was thrown in -fno-exceptions mode with message "
               "\"unordered_map::at: key not found\"");
}

TEST_F(MtkCropTest, Pass1CropIsThePolicyEntryOrTheFullField) {
  ChiRect crop{1, 1, 1, 1};
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, kCamera + 1));
  EXPECT_EQ(Q(kCentre), Q(crop));
  EXPECT_EQ("D 3502 sensorid:6, l,t,w,h = [1000 750 2000 1500]", Last());
  crop = {1, 1, 1, 1};
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, 42));
  EXPECT_EQ((Quad{1, 1, 1, 1}), Q(crop));
  ASSERT_EQ(0, helper.getPass1CropRegion(testsupport::NewMeta(), &crop, 42));
  EXPECT_EQ((Quad{0, 0, 4096, 3072}), Q(crop));
  EXPECT_EQ("D 3501 " + Quoted("get cropRegion error,force set cropRegion[0 0 4096 3072]"), Last());
}

}  // namespace
}  // namespace mtktest
