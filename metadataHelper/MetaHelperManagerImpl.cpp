#include "MetaHelperManagerImpl.h"

#include "MtkMetadataHelper.h"

namespace metahelper {

MetaHelperManagerImpl::MetaHelperManagerImpl() = default;

MetaHelperManagerImpl::~MetaHelperManagerImpl() = default;

int MetaHelperManagerImpl::Init() { return 0; }

// A plain test and store, deliberately without a lock: see the header. The
// call that creates a helper hands back its own reference rather than
// re-reading the member, so a racing first call that stores a spare helper
// over it cannot release the object this caller is about to receive.
std::shared_ptr<metadataHelperBase> MetaHelperManagerImpl::GetMetadataHelper() {
  if (helper_) return helper_;
  std::shared_ptr<metadataHelperBase> created = std::make_shared<MtkMetadataHelper>();
  helper_ = created;
  return created;
}

}  // namespace metahelper
