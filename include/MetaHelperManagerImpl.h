// The process-wide helper manager that GetInstance returns.
#pragma once

#include <memory>

#include "metadataHelperBase.h"

namespace metahelper {

class METAHELPER_EXPORT MetaHelperManagerImpl {
 public:
  MetaHelperManagerImpl();
  virtual ~MetaHelperManagerImpl();

  // Does nothing; callers need not call it before GetMetadataHelper.
  virtual int Init();

  // Hands out the one helper, creating it on first use. No lock is taken:
  // the helper is stateless, so two racing first calls at worst create a
  // spare helper that is dropped again.
  virtual std::shared_ptr<metadataHelperBase> GetMetadataHelper();

 private:
  std::shared_ptr<metadataHelperBase> helper_;
};

}  // namespace metahelper

// The library's only C entry point: returns the MetaHelperManagerImpl.
extern "C" METAHELPER_EXPORT void* GetInstance();
