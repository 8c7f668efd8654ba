// No getter allocates: every Get operation of the catalogue on both helpers, on the shipped example's
// last request of camera 0, leaves the heap alone (but those the catalogue marks as filling heap storage).
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "FakeAdapterControl.h"
#include "MetaHelperManagerImpl.h"
#include "MetaText.h"
#include "OperationCatalog.h"
#include "TestSupport.h"

extern "C" void* GetInstance();

namespace {

std::atomic<long> gAllocations{0};
const std::string kDump = std::string(METAHELPER_SOURCE_DIR) + "/examples/camera_dump/media.camera.txt";

// The camera's buffer of that kind in the current session.
metahelper::MetaPtr CurrentOf(const metatext::Capture& capture, const char* camera, metatext::Kind kind) {
  for (const metatext::Buffer& buffer : capture.buffers)
    if (buffer.kind == kind && buffer.camera == camera && !buffer.stale && buffer.meta != nullptr)
      return buffer.meta;
  ADD_FAILURE() << "no " << metatext::KindName(kind) << " of camera " << camera << " in " << kDump;
  return std::make_shared<NvMetadata>();
}

TEST(GetterAllocations, NoGetOperationAllocatesOnTheExampleRequest) {
  for (int32_t camera = 0; camera < 5; ++camera) fakeadapter::SetCameraType(camera, 0);  // as on a device
  metatext::Capture capture;
  metatext::Problem problem;
  ASSERT_TRUE(metatext::ReadFile(kDump, nullptr, &capture, &problem)) << problem.Message();
  StaticMetadataWraper::getInstance()->setStaticMetadata(0, CurrentOf(capture, "0", metatext::Kind::kStatic));
  StaticMetadataWraper::getInstance()->setStaticMetadata(2, CurrentOf(capture, "2", metatext::Kind::kStatic));
  opcatalog::CallContext context;
  context.request = CurrentOf(capture, "0", metatext::Kind::kLastRequest);
  context.second = std::make_shared<NvMetadata>();
  // The helper handed out (the MediaTek one), and the generic operations it keeps or replaces.
  const auto handedOut = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance())->GetMetadataHelper();
  metahelper::metadataHelperBase generic;

  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  long checked = 0, byAllocatingGetters = 0;
  for (size_t i = 0; i < 2 * count; ++i) {
    const opcatalog::Operation& op = operations[i % count];
    metahelper::metadataHelperBase& helper = i < count ? *handedOut : generic;
    if (op.kind == opcatalog::Kind::Setter) continue;
    op.call(helper, context);  // first use may set up process-wide state
    const long before = gAllocations.load();
    op.call(helper, context);
    const long allocations = gAllocations.load() - before;
    byAllocatingGetters += op.allocates ? allocations : 0;
    if (op.allocates) continue;
    EXPECT_EQ(0, allocations) << op.name << " (slot " << op.slot << (i < count ? ")" : ", generic)");
    ++checked;
  }
  EXPECT_GT(checked, 100) << "the catalogue lists too few getters to mean anything";
  EXPECT_GT(byAllocatingGetters, 0) << "the counter sees no library allocation: the vector-filling getters";
}

// The adapter library (here the tests' fake) allocates each query's holder itself: not a getter's doing.
bool MadeByTheAdapterLibrary(const void* caller) {
  Dl_info info;
  return dladdr(caller, &info) != 0 && info.dli_fname != nullptr &&
         std::strstr(info.dli_fname, "nvcamera_adapter") != nullptr;
}

}  // namespace

void* operator new(std::size_t size) {
  if (!MadeByTheAdapterLibrary(__builtin_return_address(0)))
    gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = std::malloc(size != 0 ? size : 1)) return block;
  throw std::bad_alloc();
}
// The non-throwing form too: a library's temporary buffers use it, and the sanitizers pair new and delete.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size != 0 ? size : 1);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
