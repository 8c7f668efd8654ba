// Loads the lines of one printed metadata buffer into a container: entry
// lines, value rows, the header lines, and what people and older printers
// leave in them (blank lines, comments, cuts). The framing decides which
// lines belong to the buffer; this reader only reads them.
#pragma once

#include <NvMetadata.h>
#include <stddef.h>
#include <stdint.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MetaText.h"
#include "TagResolver.h"

namespace metatext {

// `NAME (HEX): TYPE[COUNT]`, as views into the line.
struct EntryLine {
  std::string_view name;
  uint32_t number = 0;
  std::string_view type;
  std::string_view count;
};
bool ParseEntryLine(std::string_view text, EntryLine* entry);

// An entry printed as unknownSection.unknownTag with a vendor number. The
// dump's vendor tag section, printed after every camera's buffers, may name
// it, so it waits for the end of the text.
struct PendingEntry {
  std::string name;   // as printed
  size_t buffer = 0;  // index in Capture::buffers
  unsigned line = 0;
  uint32_t number = 0;
  int type = 0;
  size_t count = 0;
  bool cut = false;
  std::vector<uint8_t> bytes;
};

// How a value reads as its type.
enum class Verdict { kOk, kNotNumber, kOutOfRange };

class BufferReader {
 public:
  BufferReader(const std::string& file, const TagResolver& resolver, std::vector<Problem>* notes)
      : file_(file), resolver_(resolver), notes_(notes) {}

  void Begin(size_t buffer);
  // One line of the buffer, with or without its indentation.
  void Line(std::string_view line, unsigned number);
  // Ends the buffer: its entries or its problem, and the entries waiting for
  // a name.
  void Finish(Buffer* buffer, std::vector<PendingEntry>* pending);

 private:
  enum class Mode { kLoad, kSkip, kPending };

  // The entry whose values are being read.
  struct Entry {
    std::string name;
    unsigned line = 0;
    uint32_t tag = 0;  // as loaded (pending: as dumped)
    int type = TYPE_BYTE;
    Mode mode = Mode::kSkip;
    size_t count = 0;
    size_t have = 0;
    size_t rows = 0;
    bool cutMarked = false;     // a "..." ended it
    bool physicalIds = false;   // may be printed as characters
    bool allCharacters = true;  // physicalIds: every value one character
    std::string characters;     // physicalIds: the values as characters
    std::string badValue;       // physicalIds: the first value that is not a number
    unsigned badLine = 0;
  };

  void BeginEntry(const EntryLine& line);
  bool ReadCount(const EntryLine& line, size_t* count);
  bool ChooseMode(const EntryLine& line, int type);
  void EndEntry();
  bool IdsAsCharacters();
  void Keep();
  bool FirstTime(uint32_t tag);
  void Values(std::string_view row);
  bool EndsRow(std::string_view rest);
  bool Element(std::string_view& rest);
  bool Check(Verdict verdict, std::string_view word);
  bool Integer(std::string_view word, int64_t low, int64_t high);
  bool Enumerated(std::string_view word, int64_t low, int64_t high);
  bool PhysicalId(std::string_view word);
  bool Real(std::string_view word);
  bool Rational(std::string_view& rest);
  bool SkipKeyName(std::string_view& rest);
  template <typename T>
  void Append(T value);
  void CutMarker();

  void Note(unsigned line, std::string text);
  void Fail(std::string text) { FailAt(line_, std::move(text)); }
  void FailAt(unsigned line, std::string text);

  const std::string& file_;
  const TagResolver& resolver_;
  std::vector<Problem>* notes_;

  size_t buffer_ = 0;
  unsigned line_ = 0;
  bool failed_ = false;
  Problem problem_;
  NvMetadata meta_;
  size_t total_ = 0;                                 // values declared so far
  std::vector<std::pair<uint32_t, unsigned>> seen_;  // loaded tags and their lines, ascending
  std::vector<uint32_t> cut_;
  std::vector<PendingEntry> pending_;
  bool open_ = false;      // an entry is being read
  bool afterCut_ = false;  // rows after a "..." belong to an entry left out
  Entry entry_;
  std::vector<uint8_t> bytes_;  // the open entry's values as stored
  std::string text_;            // scratch for resolver messages
};

}  // namespace metatext
