// What a run reads: every FILE, its buffers numbered across files, and the
// static characteristics each buffer is replayed with.
#pragma once

#include <NvVendorTags.h>

#include <map>
#include <ostream>
#include <vector>

#include "DumpOptions.h"
#include "MetaText.h"

namespace dump {

// Installs a fresh vendor tag table for the length of a run, for the names a
// capture brings that the registry does not know, and puts the table that
// was installed before back afterwards (the tool also runs inside tests).
class VendorTagScope {
 public:
  VendorTagScope() : previous_(NvMetadata::getVendorTagTable()) { NvMetadata::setVendorTagTable(&table_); }
  ~VendorTagScope() { NvMetadata::setVendorTagTable(previous_); }
  VendorTagScope(const VendorTagScope&) = delete;
  VendorTagScope& operator=(const VendorTagScope&) = delete;

  NvVendorTagTable* table() { return &table_; }

 private:
  NvVendorTagTable table_;
  const NvVendorTagTable* previous_;
};

// Static characteristics by numeric camera id.
using StaticSet = std::map<unsigned int, const metatext::Buffer*>;

struct NumberedBuffer {
  unsigned number;  // 1-based, in input order across files
  const metatext::Buffer* buffer;
  const StaticSet* statics;  // of the buffer's own file, --static applied
};

struct Input {
  std::vector<metatext::Capture> files;        // one per FILE, in order
  std::vector<metatext::Capture> staticFiles;  // one per --static
  std::vector<StaticSet> statics;              // one per FILE
  std::vector<NumberedBuffer> buffers;         // number N is buffers[N - 1]
  // For stderr, by file and line: what the reader tolerated
  // ("note: file:line: text") and the buffers of whole dumps that do not
  // read ("file:line: problem").
  std::vector<std::string> messages;
  size_t unreadable = 0;  // buffers of whole dumps that do not read
};

// Reads every FILE and every --static file. False, with one
// "file:line: problem" line on `err`, when one cannot be used at all: it does
// not open, holds no buffer, or is one buffer that does not read.
bool LoadInput(const Options& options, NvVendorTagTable* vendorTags, Input* input, std::ostream& err);

// A camera id of a dump as a number; false for one that is not ("front").
bool CameraNumber(const std::string& camera, unsigned int* id);

}  // namespace dump
