// Common ground of the MediaTek helper tests.
#pragma once

#include <gtest/gtest.h>
#include <mtk/mtk_metadata_tag.h>

#include <algorithm>
#include <array>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace mtktest {

using metahelper::MtkMetadataHelper;
using nvholder::ChiRect;
using MetaPtr = std::shared_ptr<NvMetadata>;
using Quad = std::array<uint32_t, 4>;
using Point = std::array<int32_t, 2>;
using testsupport::Put;
using testsupport::Quoted;

constexpr int32_t kCamera = 5;

inline Quad Q(const ChiRect& r) { return {r.left, r.top, r.width, r.height}; }
inline Quad Q(const __UtilsImage_Rect& r) { return {r.left, r.top, r.width, r.height}; }
inline Point P(const __UtilsImage_point& p) { return {p.x, p.y}; }

// Built-in tags, the fake adapter reset, every message captured; `meta` names
// camera kCamera with a 4000 x 3000 active array and shows all of it.
class MtkTest : public ::testing::Test {
 protected:
  void SetUp() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
    fakeadapter::Reset();
    testsupport::BindCamera(*meta, kCamera, cameraMeta);
    Put(*cameraMeta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, 4000, 3000});
    Put(*meta, ANDROID_SCALER_CROP_REGION, std::vector<int32_t>{0, 0, 4000, 3000});
  }

  bool Logged(const std::string& line) const {
    const std::vector<std::string> lines = log.Summary();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
  std::string Last() const { return log.Summary().empty() ? "" : log.Summary().back(); }

  testsupport::LogCapture log;
  MtkMetadataHelper helper;
  MetaPtr meta = testsupport::NewMeta();
  MetaPtr cameraMeta = testsupport::NewMeta();
};

}  // namespace mtktest
