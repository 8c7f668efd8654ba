// Which tags an operation looked up, in which container, and whether each
// was there: the container's lookup observer reports every find.
#pragma once

#include <NvMetadata.h>
#include <stdint.h>

#include <string>
#include <vector>

namespace dump {

struct TagLookup {
  std::string tag;   // its name; "0x8000000a" for a number nothing names
  std::string from;  // "request", or "static N" for camera N's characteristics
  bool found;        // the container holds an entry for it
  bool cut;          // found, and the dump printed that entry only in part
};

// Only one recorder may watch a container at a time; it stops watching
// every container when it ends.
class TagRecorder {
 public:
  TagRecorder() = default;
  ~TagRecorder();
  TagRecorder(const TagRecorder&) = delete;
  TagRecorder& operator=(const TagRecorder&) = delete;

  // `cut`: the tags the dump cut short in this container, ascending; must
  // outlive the recorder.
  void Watch(NvMetadata& meta, std::string from, const std::vector<uint32_t>& cut);

  // The lookups since the last call, each tag of each container once, in the
  // order first asked for.
  std::vector<TagLookup> Take();

 private:
  struct Source {
    NvMetadata* meta;
    std::string from;
    const std::vector<uint32_t>* cut;
  };
  static void Observe(void* context, const NvMetadata& meta, const NvMetadata::Lookup& lookup);
  void Record(const Source& source, const NvMetadata::Lookup& lookup);

  std::vector<Source> sources_;
  std::vector<TagLookup> lookups_;
};

}  // namespace dump
