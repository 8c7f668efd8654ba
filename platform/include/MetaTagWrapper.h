// Index-addressed tags and per-camera static metadata.
//
// MetaTagWrapper maps a META_TAG_INDEX to the tag number it has on this
// platform, so callers can name well-known tags without knowing how the
// platform numbers them. StaticMetadataWraper hands out the static
// (characteristics) metadata of each camera.
#ifndef METATAGWRAPPER_H
#define METATAGWRAPPER_H

#include <stdint.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

#include "NvMetadata.h"

#define METATAGWRAPPER_EXPORT __attribute__((visibility("default")))

enum META_TAG_INDEX {
#define META_TAG_INDEX_ENTRY(enumerator, value, name) enumerator = value,
#include "MetaTagIndex.def"
#undef META_TAG_INDEX_ENTRY
  // Not an index: the tag is given by name or by number instead.
  META_NO_INDEX = 468,
};

class METATAGWRAPPER_EXPORT MetaTagWrapper {
 public:
  static constexpr uint32_t kUndeclared = 0xFFFFFFFFu;

  // The one wrapper, built when this library is loaded: resolving an index is
  // an address load and an array read, with no call and no guard.
  static MetaTagWrapper& getInstance() { return sInstance; }

  // Tag number of the index, or kUndeclared when the index is not declared on
  // this platform (META_NO_INDEX and values outside the table never are).
  uint32_t operator()(const META_TAG_INDEX& index) const {
    const auto slot = static_cast<uint32_t>(index);
    return slot < kSlots ? mTags[slot].load(std::memory_order_relaxed) : kUndeclared;
  }

  // Declare an index as `tag`, or undeclare it with kUndeclared. Lets a test
  // model a platform that lacks an index. META_NO_INDEX cannot be declared.
  void setTag(META_TAG_INDEX index, uint32_t tag);
  // Back to the built-in table.
  void resetTags();

  MetaTagWrapper(const MetaTagWrapper&) = delete;
  MetaTagWrapper& operator=(const MetaTagWrapper&) = delete;

 private:
  static constexpr uint32_t kSlots = META_NO_INDEX;

  MetaTagWrapper();

  static MetaTagWrapper sInstance;

  // Relaxed atomics compile to plain loads and stores on every target; they
  // only make setTag and resetTags from a test thread well-defined while
  // other threads resolve indices.
  std::atomic<uint32_t> mTags[kSlots];
};

class METATAGWRAPPER_EXPORT StaticMetadataWraper {
 public:
  static constexpr unsigned int kNoCamera = 0xFFFFFFFFu;

  static StaticMetadataWraper* getInstance();

  // Static metadata of the camera; empty for a camera nobody has set.
  std::shared_ptr<NvMetadata> getStaticMetadata(unsigned int cameraId);
  void setStaticMetadata(unsigned int cameraId, std::shared_ptr<NvMetadata> metadata);
  // Forget every camera and the request record below.
  void clear();

  // Camera id of the latest getStaticMetadata call. kNoCamera before the
  // first call, but kNoCamera is also a legal id to ask for: use
  // requestCount() to tell the two apart.
  unsigned int lastRequestedCameraId() const;
  unsigned long requestCount() const;

  StaticMetadataWraper(const StaticMetadataWraper&) = delete;
  StaticMetadataWraper& operator=(const StaticMetadataWraper&) = delete;

 private:
  StaticMetadataWraper() = default;

  mutable std::mutex mLock;
  std::map<unsigned int, std::shared_ptr<NvMetadata>> mCameras;
  unsigned int mLastRequested = kNoCamera;
  unsigned long mRequests = 0;
};

#endif  // METATAGWRAPPER_H
