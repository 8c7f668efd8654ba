// The one definition of the storage pool that MediaTek's metadata header
// declares. The helper never uses the pool; it exists because every library
// built against that header must provide it, and it lives until process exit.
#include <mtkcam/utils/metadata/IMetadata.h>

#include <cstddef>

namespace NSCam {
namespace {

constexpr std::size_t kPoolReserve = 128;

}  // namespace

IMetadata::Storage::ItemTable::TableAllocator::TableAllocator() : flag(false) {
  pool0.reserve(kPoolReserve);
  pool1.reserve(kPoolReserve);
}

IMetadata::Storage::ItemTable::TableAllocator IMetadata::Storage::ItemTable::sBufferQueue;

}  // namespace NSCam
