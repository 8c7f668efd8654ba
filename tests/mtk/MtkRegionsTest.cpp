// The crop region, and face and focus regions mapped into a caller's image.
#include "MtkFixture.h"

namespace mtktest {
namespace {

constexpr nvholder::dimension kSensor{4000, 3000};
constexpr ChiRect kCentre{1000, 750, 2000, 1500};  // keeps the active aspect, room on every side

// Camera kCamera: type 0, a zoom-EIS rate of 2.0, a frame timestamp, its policy crop after another's.
class MtkCropTest : public MtkTest {
 protected:
  void SetUp() override {
    MtkTest::SetUp();
    Put(*cameraMeta, "com.nuvaro.camera.zoomeis.effectiverate", std::vector<float>{2.0f});
    Put(*meta, ANDROID_SENSOR_TIMESTAMP, std::vector<int64_t>{777});
    fakeadapter::SetCameraType(kCamera, 0);
    SetPolicyCrop(kCentre);
  }
  void SetPolicyCrop(const ChiRect& c) {
    std::vector<int32_t> words;
    for (int32_t id : {1, kCamera, kCamera + 1})
      words.insert(words.end(), {id, 0, 0, 0, 0, int32_t(c.left) + (id == 1), int32_t(c.top),
                                 int32_t(c.width), int32_t(c.height)});
    Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", words);
  }
  Quad Crop(nvholder::dimension sensor = kSensor, bool inSensorZoom = false, int expectedResult = 0) {
    ChiRect crop{1, 1, 1, 1};
    EXPECT_EQ(expectedResult, helper.GetCropRegion(meta, &crop, sensor, inSensorZoom));
    return Q(crop);
  }
};

TEST_F(MtkCropTest, FitsThePolicyCropAndRemapsItForInSensorZoom) {
  SetPolicyCrop({0, 0, 4000, 2250});
  EXPECT_EQ((Quad{0, 0, 4000, 3060}), Crop({4080, 3060}));
  EXPECT_TRUE(Logged("I 947 input crop (0, 0, 4000, 2250) output crop (0, 0, 4000, 3060)"));
  SetPolicyCrop(kCentre);
  EXPECT_EQ((Quad{0, 0, 4000, 3000}), Crop(kSensor, true));
  Put(*meta, "com.nuvaro.camera.sensorpolicy.cropregions", std::vector<int32_t>{});
  EXPECT_EQ((Quad{0, 0, 0, 0}), Crop());
  EXPECT_EQ("I 957 get final crop = cropregion: [0 0 0 0] ret = 0 metaSuccess = 0", Last());
}

TEST_F(MtkCropTest, ShiftComesFromTheHolderFirstThenFromTheTag) {
  const std::string used = "I 955 using zoom eis shift ";
  // Holder finds; its H, V, pre-anchor; the tag; in-sensor zoom; the line naming the shift as scaled; crop.
  for (auto [found, holder, tag, inSensorZoom, line, expected] : std::initializer_list<
           std::tuple<bool, std::array<int, 3>, std::vector<float>, bool, std::string, Quad>>{
           {true, {10, -6, 0}, {20, 20, 0, 0}, false, used + "(10,-6)", {1010, 744, 2000, 1500}},
           {false, {}, {20, 20, 0, 0}, false, used + "(20,20)", {1020, 770, 2000, 1500}},
           {true, {-3, 5, 1}, {}, false, used + "(-1,2)", {999, 752, 2000, 1500}},
           {false, {}, {20, 21, 1, 0}, false, used + "(10,10)", {1010, 760, 2000, 1500}},
           {true, {10, -6, 0}, {}, true, "I 956 not using zoom eis shift (20,-12)", {0, 0, 4000, 3000}},
           {false, {}, {20, 20, 0}, false, used + "(0,0)", Q(kCentre)}}) {
    fakeadapter::SetShiftAnswer(found, holder[0], holder[1], uint8_t(holder[2]));
    Put(*meta, "nuvaro.sat.output.shift", tag);
    log.Clear();
    EXPECT_EQ(expected, Crop(kSensor, inSensorZoom)) << line;
    EXPECT_TRUE(Logged(line)) << line;
    EXPECT_EQ(!found && tag.size() == 4, Last().back() == '1') << line << ": metaSuccess";
  }
  EXPECT_TRUE(Logged("I 952 get shift failed size = 3, from nuvaro.sr.shift.value..."));
}

// Cameras of type 20 follow zoom EIS once the zoom ratio reaches the camera's rate.
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
  EXPECT_DEATH(
      Crop(),
      "out_of_range was thrown in -fno-exceptions mode with message \"unordered_map::at: key not found\"");
}

TEST_F(MtkCropTest, Pass1CropIsThePolicyEntryOrTheFullField) {
  ChiRect crop{1, 1, 1, 1};
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, 42));
  EXPECT_EQ((Quad{1, 1, 1, 1}), Q(crop)) << "no entry for the sensor";
  ASSERT_EQ(0, helper.getPass1CropRegion(meta, &crop, kCamera + 1));
  EXPECT_EQ(Q(kCentre), Q(crop));
  EXPECT_EQ("D 3502 sensorid:6, l,t,w,h = [1000 750 2000 1500]", Last());
  ASSERT_EQ(0, helper.getPass1CropRegion(testsupport::NewMeta(), &crop, 42));
  EXPECT_EQ((Quad{0, 0, 4096, 3072}), Q(crop));
  EXPECT_EQ("D 3501 " + Quoted("get cropRegion error,force set cropRegion[0 0 4096 3072]"), Last());
}

using Box = std::array<int32_t, 4>;  // x0, y0, x1, y1

// Nine words per face: corners, an unused word, pitch 11, angle, pose 22, id.
std::vector<int32_t> Faces(const std::vector<Box>& boxes, const std::vector<int32_t>& angles = {}) {
  std::vector<int32_t> words;
  for (size_t i = 0; i < boxes.size(); ++i)
    words.insert(words.end(), {boxes[i][0], boxes[i][1], boxes[i][2], boxes[i][3], 0, 11,
                               angles.empty() ? 0 : angles[i], 22, 100 + int32_t(i)});
  return words;
}

class MtkFaceTest : public MtkTest {
 protected:
  FacesInfo FaceRect(const std::vector<int32_t>& words, int width, int height, int expectedResult = 0) {
    Put(*meta, "nuvaro.bokeh.faceInfo", words);
    FacesInfo faces{};
    faces.faceCount = 5;
    EXPECT_EQ(expectedResult, helper.GetFaceRect(meta, width, height, faces, nullptr));
    return faces;
  }
};

TEST_F(MtkFaceTest, AngleClassesCentresAndTheFirstLargestFaceAsMain) {
  const Box small{0, 0, 400, 400}, large{0, 0, 800, 800}, offLeft{0, 1200, 4, 1600};
  const FacesInfo faces = FaceRect(Faces({small, large, large, offLeft}, {10, 100, 200, 300}), 1000, 750);
  ASSERT_EQ(4, faces.faceCount);
  EXPECT_EQ(1, faces.mainFaceIndex);
  std::vector<int32_t> classes;
  for (const FaceEntry& face : faces.faces) classes.push_back(face.angleClass);
  EXPECT_EQ((std::vector<int32_t>{0, 270, 180, 90, 0, 0, 0, 0, 0, 0}), classes);
  EXPECT_TRUE(Logged("D 3743 faces[3/4]:[0 0 200x200] point:[100 100] angle:200 faceId:102"));
  EXPECT_EQ((Quad{0, 300, 0, 100}), Q(faces.faces[3].rect));
  EXPECT_EQ((Point{500, 375}), P(faces.faces[3].center)) << "a centre off the image is the image's middle";
}

// Above 5000 x 4000 each face doubles the active size again, and the
// in-sensor-zoom step of the next face sees the doubled size.
TEST_F(MtkFaceTest, LargeOutputsDoubleTheActiveSizeForEveryFace) {
  Put(*meta, "nuvaro.insensorzoom.status", std::vector<int32_t>{1});
  Put(*meta, ANDROID_SCALER_CROP_REGION, std::vector<int32_t>{0, 0, 16000, 12000});
  const Box box{5000, 4000, 5400, 4400};
  const FacesInfo faces = FaceRect(Faces({box, box, box}), 6000, 4500);
  EXPECT_EQ((Quad{3000, 2438, 300, 300}), Q(faces.faces[0].rect));
  EXPECT_EQ((Quad{2250, 1875, 300, 300}), Q(faces.faces[1].rect));
  EXPECT_EQ((Quad{750, 750, 300, 300}), Q(faces.faces[2].rect));
}

TEST_F(MtkFaceTest, MissingFacesOrGeometryClearTheRecordAndFail) {
  EXPECT_EQ(0, FaceRect({1, 2, 3}, 1000, 750, -1).faceCount);
  EXPECT_EQ("W 3742 " + Quoted("no face"), Last());
  Put(*meta, ANDROID_SCALER_CROP_REGION, std::vector<int32_t>{});
  FaceRect(Faces({{0, 0, 8, 8}}), 1000, 750, -1);
  EXPECT_EQ("W 3741 " + Quoted("get active/crop size err"), Last());
}

TEST_F(MtkTest, FocusRegionIsTheOnlyOrTheSecondRegion) {
  const std::string at = "D 3765 af roi, info:[t:0, n:", corners = ", tlx:400, tly:300, brx:1200, bry:900]";
  for (auto [roi, width, result, line] :
       std::initializer_list<std::tuple<std::vector<int32_t>, uint32_t, int, std::string>>{
           {{0, 1, 400, 300, 1200, 900, 1}, 1000, 0, at + "1, vs:2" + corners},
           {{0, 2, 0, 0, 8, 8, 1, 400, 300, 1200, 900, 1}, 1000, 0, at + "2, vs:7" + corners},
           {{9, 3, 400, 300, 1200, 900, 1}, 1000, -1, "D 3764 incorrect AF region 9 3"},
           {{0, 1, 400, 300, 1200, 900, 1}, 0, -1, "W 3840 " + Quoted("arg err")}}) {
    Put(*meta, MTK_3A_FEATURE_AF_ROI, roi);
    __UtilsImage_Rect rect{1, 1, 1, 1};
    __UtilsImage_point point{-1, -1};
    log.Clear();
    EXPECT_EQ(result, helper.GetFocusROI(meta, {width, 750}, &rect, &point, false, false)) << line;
    EXPECT_EQ((result == 0 ? Quad{100, 75, 200, 150} : Quad{1, 1, 1, 1}), Q(rect)) << line;
    EXPECT_TRUE(Logged(line)) << line;
    if (result == 0) EXPECT_EQ((Point{200, 150}), P(point));
  }
}

}  // namespace
}  // namespace mtktest
