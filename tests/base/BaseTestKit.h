// Helpers shared by the tests of the generic helper operations.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "metadataHelperBase.h"

namespace basetest {

using metahelper::metadataHelperBase;
using metahelper::MetaPtr;
using Bytes = std::vector<uint8_t>;

template <typename T>
Bytes BytesOf(std::initializer_list<T> values) {
  Bytes bytes(values.size() * sizeof(T));
  std::memcpy(bytes.data(), values.begin(), bytes.size());
  return bytes;
}

// Stores raw element bytes under a registered tag name, whatever its type.
inline void PutBytes(NvMetadata& meta, const char* name, const Bytes& bytes) {
  static constexpr size_t kElementSize[] = {1, 4, 4, 8, 8, 8};
  unsigned int tag = 0;
  ASSERT_EQ(0, NvMetadata::getTagFromName(name, &tag)) << name;
  const size_t count = bytes.size() / kElementSize[NvMetadata::getTagType(tag)];
  ASSERT_EQ(0, meta.update(tag, static_cast<const void*>(bytes.data()), count)) << name;
}

// Every captured message as "level line function text", levels as the
// offline sink sees them (V for verbose); all must come from the helper's file.
inline std::vector<std::string> Lines(const testsupport::LogCapture& log) {
  std::vector<std::string> lines;
  for (const auto& l : log.offline) {
    EXPECT_EQ("metadataHelperBase.cpp", l.file) << l.text;
    lines.push_back(std::string(1, l.level) + " " + std::to_string(l.line) + " " + l.function + " " + l.text);
  }
  return lines;
}

class BaseTest : public ::testing::Test {
 protected:
  void TearDown() override {
    MetaTagWrapper::getInstance().resetTags();
    StaticMetadataWraper::getInstance()->clear();
  }
  std::vector<std::string> TakeLines() {
    std::vector<std::string> lines = Lines(log);
    log.Clear();
    return lines;
  }

  testsupport::LogCapture log;
  metadataHelperBase helper;
};

}  // namespace basetest
