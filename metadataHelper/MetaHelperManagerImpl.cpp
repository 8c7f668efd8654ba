#include "MetaHelperManagerImpl.h"

#include "MtkMetadataHelper.h"

namespace metahelper {

MetaHelperManagerImpl::MetaHelperManagerImpl() = default;

MetaHelperManagerImpl::~MetaHelperManagerImpl() = default;

int MetaHelperManagerImpl::Init() { return 0; }

// A plain test and store, deliberately without a lock: see the header.
std::shared_ptr<metadataHelperBase> MetaHelperManagerImpl::GetMetadataHelper() {
  if (!helper_) helper_ = std::make_shared<MtkMetadataHelper>();
  return helper_;
}

}  // namespace metahelper
