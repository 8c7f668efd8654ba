// Face and focus regions mapped from the active array into a caller's image.
#include "MtkFixture.h"

namespace mtktest {
namespace {

using Box = std::array<int32_t, 4>;  // x0, y0, x1, y1

// Nine words per face: corners, an unused word, pitch 11, angle, pose 22, id.
std::vector<int32_t> Faces(const std::vector<Box>& boxes, const std::vector<int32_t>& angles = {}) {
  std::vector<int32_t> words;
  for (size_t i = 0; i < boxes.size(); ++i)
    words.insert(words.end(), {boxes[i][0], boxes[i][1], boxes[i][2], boxes[i][3], 0, 11,
                               angles.empty() ? 0 : angles[i], 22, 100 + int32_t(i)});
  return words;
}

// The request shows the whole 4000 x 3000 active array.
class MtkFaceTest : public MtkTest {
 protected:
  void SetUp() override {
    MtkTest::SetUp();
    Put(*meta, ANDROID_SCALER_CROP_REGION, std::vector<int32_t>{0, 0, 4000, 3000});
  }
  FacesInfo FaceRect(const std::vector<int32_t>& words, int width, int height, int expectedResult = 0) {
    Put(*meta, "nuvaro.bokeh.faceInfo", words);
    FacesInfo faces{};
    faces.faceCount = 5;
    EXPECT_EQ(expectedResult, helper.GetFaceRect(meta, width, height, faces, nullptr));
    return faces;
  }
};

TEST_F(MtkFaceTest, FaceBoxesMapIntoTheOutputImage) {
  struct Case {
    int width, height;
    Box box;
    Quad rect;
    std::array<int32_t, 2> point;
  };
  for (const Case& c :
       {Case{1000, 750, {400, 300, 1200, 900}, {100, 75, 200, 150}, {200, 150}},
        Case{1000, 500, {400, 1000, 1200, 1600}, {100, 125, 200, 150}, {200, 200}},  // letterbox
        Case{750, 750, {1000, 300, 1800, 900}, {125, 75, 200, 150}, {225, 150}},     // pillarbox
        Case{1000, 750, {3804, 2900, 4404, 3300}, {951, 725, 48, 24}, {975, 737}},   // cut, even
        Case{1000, 750, {0, 1200, 4, 1600}, {0, 300, 0, 100}, {500, 375}}}) {        // x < 1
    const FacesInfo faces = FaceRect(Faces({c.box}), c.width, c.height);
    ASSERT_EQ(1, faces.faceCount);
    EXPECT_EQ(c.rect, Q(faces.faces[0].rect));
    EXPECT_EQ(c.point, (std::array<int32_t, 2>{faces.faces[0].center.x, faces.faces[0].center.y}));
  }
}

TEST_F(MtkFaceTest, AngleClassesAndTheFirstLargestFaceAsMain) {
  const Box small{0, 0, 400, 400}, large{0, 0, 800, 800};
  const FacesInfo faces = FaceRect(
      Faces({small, large, large, small, small, small, small, small}, {44, 45, 134, 135, 224, 225, 314, 315}),
      1000, 750);
  ASSERT_EQ(8, faces.faceCount);
  EXPECT_EQ(1, faces.mainFaceIndex);
  std::vector<int32_t> classes;
  for (const FaceEntry& face : faces.faces) classes.push_back(face.angleClass);
  EXPECT_EQ((std::vector<int32_t>{0, 270, 270, 180, 180, 90, 90, 0, 0, 0}), classes);
  EXPECT_EQ("D 3743 faces[8/8]:[0 0 100x100] point:[50 50] angle:315 faceId:107", Last());
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

TEST_F(MtkFaceTest, FocusRegionIsTheOnlyOrTheSecondRegion) {
  struct Case {
    std::vector<int32_t> roi;
    uint32_t width;
    Quad rect;
    std::string line;
  };
  const Quad mapped{100, 75, 200, 150}, unchanged{1, 1, 1, 1};
  for (const Case& c :
       {Case{{0, 1, 400, 300, 1200, 900, 1},
             1000,
             mapped,
             "D 3765 af roi, info:[t:0, n:1, vs:2, tlx:400, tly:300, brx:1200, bry:900]"},
        Case{{0, 2, 0, 0, 8, 8, 1, 400, 300, 1200, 900, 1},
             1000,
             mapped,
             "D 3765 af roi, info:[t:0, n:2, vs:7, tlx:400, tly:300, brx:1200, bry:900]"},
        Case{{9, 3, 400, 300, 1200, 900, 1}, 1000, unchanged, "D 3764 incorrect AF region 9 3"},
        Case{{0, 1, 400, 300, 1200, 900, 1}, 0, unchanged, "W 3840 " + Quoted("arg err")}}) {
    Put(*meta, MTK_3A_FEATURE_AF_ROI, c.roi);
    __UtilsImage_Rect rect{1, 1, 1, 1};
    __UtilsImage_point point{-1, -1};
    log.Clear();
    EXPECT_EQ(c.rect == mapped ? 0 : -1,
              helper.GetFocusROI(meta, {c.width, 750}, &rect, &point, false, false));
    EXPECT_EQ(c.rect, Q(rect)) << c.line;
    EXPECT_TRUE(Logged(c.line)) << c.line;
    if (c.rect == mapped)
      EXPECT_EQ((std::array<int32_t, 2>{200, 150}), (std::array<int32_t, 2>{point.x, point.y}));
  }
}

}  // namespace
}  // namespace mtktest
