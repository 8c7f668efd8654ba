// Finds the buffers of a text and labels them: which lines belong to a
// buffer (there is no end marker: a buffer ends at the first line indented
// less than its entries), the camera service's headings and sections above
// them, bug report sections, and logcat lines of many tags and threads
// interleaved. Lines arrive one at a time; nothing but the open buffers is
// kept.
#pragma once

#include <NvVendorTags.h>
#include <stddef.h>
#include <stdint.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "BufferReader.h"
#include "LogcatPrefix.h"
#include "MetaText.h"
#include "TagResolver.h"

namespace metatext {

class Framer {
 public:
  Framer(const std::string& file, NvVendorTagTable* vendorTags, Capture* capture);

  void Line(std::string_view line, unsigned number);
  void Finish();

  // The first line that is neither in a buffer, blank nor a comment (0 and
  // empty when there is none): what makes a text more than one buffer.
  unsigned otherLine() const { return otherLine_; }
  const std::string& otherText() const { return otherText_; }

 private:
  struct OpenBuffer {
    bool open = false;
    bool headerless = false;  // no "Dumping" line: indentation says nothing
    size_t indentation = 0;   // of its "Dumping" line
    size_t index = 0;         // in Capture::buffers
    std::unique_ptr<BufferReader> reader;
  };
  struct LogStream {
    std::string tag;
    int pid = -1;
    int tid = -1;
    OpenBuffer buffer;
  };
  // A heading names the kind of the next buffer under it.
  struct Heading {
    bool active = false;
    size_t indentation = 0;
    Kind kind = Kind::kUnlabelled;
    std::string detail;
    std::string camera;
  };
  struct VendorTagName {
    std::string name;
    int type = -1;
    bool ambiguous = false;  // declared twice, differently
  };

  void PlainLine(std::string_view line, unsigned number);
  void LogcatMessage(const LogcatLine& line, unsigned number);
  bool Continues(const OpenBuffer& buffer, std::string_view line, std::string_view text) const;
  bool Opens(OpenBuffer& buffer, std::string_view line, std::string_view text, unsigned number);
  void Open(OpenBuffer& buffer, size_t indentation, bool headerless, Buffer&& labels);
  Buffer Labels(unsigned number);
  void Close(OpenBuffer& buffer);
  void CloseLogStreams();
  void Other(std::string_view line, std::string_view text, unsigned number);
  void NoteOther(std::string_view text, unsigned number);
  bool Section(std::string_view text);
  void NewSection(std::string_view text);
  void ResetContext();
  void TakeHeading(std::string_view text, size_t indentation);
  void VendorTag(std::string_view text);
  void ResolvePending();
  void LoadPending(const PendingEntry& entry, const VendorTagName& name);
  void Refuse(Buffer& buffer, unsigned line, std::string text);
  void Note(unsigned line, std::string text);

  const std::string& file_;
  Capture* capture_;
  TagResolver resolver_;
  LogcatSplitter splitter_;
  OpenBuffer plain_;
  std::vector<LogStream> streams_;
  std::vector<PendingEntry> pending_;
  std::map<uint32_t, VendorTagName> vendorTagNames_;  // from the dump's vendor tag section

  bool sawDumping_ = false;  // a text with a "Dumping" line has no headerless buffer
  bool sawHeaderless_ = false;
  bool sawLogcat_ = false;
  unsigned otherLine_ = 0;
  std::string otherText_;

  // Where the camera service's text is.
  std::string camera_;  // of the section, or of the client heading
  bool stale_ = false;  // inside the previous-session block
  bool dumpState_ = false;
  bool vendorSection_ = false;
  Heading heading_;
  std::string text_;  // scratch for resolver messages
};

}  // namespace metatext
