// The two not-supported forms of the interface, in both classes; and the
// manager that hands out the helper.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "MetaHelperManagerImpl.h"
#include "MtkMetadataHelper.h"
#include "TestSupport.h"

namespace {

using metahelper::metadataHelperBase;
using metahelper::MetaPtr;
using testsupport::LogCapture;
using testsupport::NewMeta;

// A call with the output (or record) either null or valid.
using Call = std::function<int(metadataHelperBase&, MetaPtr, bool nullOut)>;

template <typename T>
T* OutOrNull(bool nullOut) {
  static T storage{};
  return nullOut ? nullptr : &storage;
}

struct NotSupportedCase {
  const char* name;
  Call call;
  int line;        // line id of its "arg err"
  bool needsMeta;  // form B: an empty container is an argument fault too
};

// clang-format off
#define FORM(op, type, line, needsMeta) \
  {#op, [](metadataHelperBase& h, MetaPtr m, bool n) { return h.op(m, OutOrNull<type>(n)); }, line, needsMeta}

const NotSupportedCase kCases[] = {
    FORM(GetUIEV, int, 182, false),
    FORM(GetQTimerTimeStamp, unsigned long, 148, false),
    FORM(GetGyroInfo, nvholder::ChiFrameGyro, 1203, false),
    {"getPass1CropRegion",
     [](metadataHelperBase& h, MetaPtr m, bool n) { return h.getPass1CropRegion(m, OutOrNull<nvholder::ChiRect>(n), 0); },
     2301, false},
    FORM(GetSensorExpInfo, nvholder::SensorMultiExposureInfo, 1182, true),
    FORM(SetCropRegion, nvholder::ChiRect, 2303, true),
};
// clang-format on

class NotSupportedForms : public ::testing::TestWithParam<NotSupportedCase> {};

TEST_P(NotSupportedForms, NullOutputLogsArgErrValidOutputIsSilent) {
  const NotSupportedCase& c = GetParam();
  metadataHelperBase helper;
  {
    LogCapture log;
    EXPECT_EQ(-1, c.call(helper, NewMeta(), /*nullOut=*/true));
    ASSERT_EQ(1u, log.online.size());
    EXPECT_EQ("E " + std::to_string(c.line) + " \"arg err\"", log.Summary()[0]);
    EXPECT_EQ(c.name, log.online[0].function);
    EXPECT_EQ("metadataHelperBase.cpp", log.online[0].file);
  }
  {
    LogCapture log;
    EXPECT_EQ(-1, c.call(helper, NewMeta(), /*nullOut=*/false));
    EXPECT_TRUE(log.online.empty());
  }
  {
    // Form A never looks at the container; form B requires one.
    LogCapture log;
    EXPECT_EQ(-1, c.call(helper, nullptr, /*nullOut=*/false));
    EXPECT_EQ(c.needsMeta ? 1u : 0u, log.online.size());
  }
}

INSTANTIATE_TEST_SUITE_P(Generic, NotSupportedForms, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(MediaTekForms, LogFromTheirOwnFileAndThroughTheBaseInterface) {
  metahelper::MtkMetadataHelper mtk;
  metadataHelperBase& asBase = mtk;
  LogCapture log;
  nvholder::SensorMultiExposureInfo info{};
  EXPECT_EQ(-1, asBase.GetBlackLevelShift(NewMeta(), nullptr));  // overridden: not supported here
  EXPECT_EQ(-1, asBase.SetGainMapEvInfo(nullptr, nullptr));      // form B
  EXPECT_EQ(-1, mtk.GetStgExpInfo(nullptr, nullptr));            // the class's own extra slot
  EXPECT_EQ(-1, mtk.GetStgExpInfo(nullptr, &info));
  ASSERT_EQ(3u, log.online.size());
  for (const auto& line : log.online) EXPECT_EQ("MtkMetadataHelper.cpp", line.file);
  EXPECT_EQ((std::vector<std::string>{"E 1640 \"arg err\"", "E 2460 \"arg err\"", "E 3820 \"arg err\""}),
            log.Summary());
}

extern "C" void* GetInstance();

// That the helper handed out is the MediaTek one shows in SlotOrderTest.cpp,
// where a caller's slot reaches that class's own extra operation.
TEST(Manager, OneManagerOneHelperSharedWithEveryCaller) {
  auto* manager = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
  ASSERT_EQ(manager, GetInstance());
  std::shared_ptr<metadataHelperBase> first = manager->GetMetadataHelper();  // no Init needed
  const long owners = first.use_count();
  std::shared_ptr<metadataHelperBase> second = manager->GetMetadataHelper();
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(owners + 1, second.use_count());
  EXPECT_EQ(0, manager->Init());
  EXPECT_EQ(first.get(), manager->GetMetadataHelper().get());
}

}  // namespace
