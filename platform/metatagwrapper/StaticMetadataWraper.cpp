#include "MetaTagWrapper.h"

StaticMetadataWraper* StaticMetadataWraper::getInstance() {
  static StaticMetadataWraper instance;
  return &instance;
}

std::shared_ptr<NvMetadata> StaticMetadataWraper::getStaticMetadata(unsigned int cameraId) {
  std::lock_guard<std::mutex> guard(mLock);
  mLastRequested = cameraId;
  ++mRequests;
  auto it = mCameras.find(cameraId);
  return it != mCameras.end() ? it->second : nullptr;
}

void StaticMetadataWraper::setStaticMetadata(unsigned int cameraId, std::shared_ptr<NvMetadata> metadata) {
  std::lock_guard<std::mutex> guard(mLock);
  if (metadata) {
    mCameras[cameraId] = std::move(metadata);
  } else {
    mCameras.erase(cameraId);
  }
}

void StaticMetadataWraper::clear() {
  std::lock_guard<std::mutex> guard(mLock);
  mCameras.clear();
  mLastRequested = kNoCamera;
  mRequests = 0;
}

unsigned int StaticMetadataWraper::lastRequestedCameraId() const {
  std::lock_guard<std::mutex> guard(mLock);
  return mLastRequested;
}

unsigned long StaticMetadataWraper::requestCount() const {
  std::lock_guard<std::mutex> guard(mLock);
  return mRequests;
}
