// Common ground of the MediaTek helper tests.
#pragma once

#include <gtest/gtest.h>
#include <mtk/mtk_metadata_tag.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "FakeAdapterControl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace mtktest {

using metahelper::MtkMetadataHelper;
using nvholder::ChiRect;
using MetaPtr = std::shared_ptr<NvMetadata>;
using Quad = std::array<uint32_t, 4>;
using testsupport::Put;
using testsupport::Quoted;

constexpr int32_t kCamera = 5;

template <typename Rect>
Quad Q(const Rect& r) {
  return {r.left, r.top, r.width, r.height};
}

// Every test starts from the built-in tag table, the fake adapter in its
// starting state, and a capture of every message. `meta` names camera
// kCamera, whose static metadata `cameraMeta` holds a 4000 x 3000 active array.
class MtkTest : public ::testing::Test {
 protected:
  void SetUp() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
    fakeadapter::Reset();
    testsupport::BindCamera(*meta, kCamera, cameraMeta);
    Put(*cameraMeta, ANDROID_SENSOR_INFO_ACTIVE_ARRAY_SIZE, std::vector<int32_t>{0, 0, 4000, 3000});
  }
  void TearDown() override { StaticMetadataWraper::getInstance()->clear(); }

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
