// Small text helpers shared by the reader's parts. Lines are handled as views
// into the line buffer the reader reuses, so nothing here allocates except
// the message helpers.
#pragma once

#include <NvMetadata.h>
#include <stddef.h>
#include <stdint.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace metatext {

constexpr const char* kTypeNames[NUM_TYPES] = {"byte", "int32", "float", "int64", "double", "rational"};
constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};
// Below verbosity 2 the printer stops after this many values, silently:
// what it writes and what the reader takes for such a cut.
constexpr size_t kVerbosityCut = 16;
// Tags from here up belong to vendor sections; each device numbers them.
constexpr uint32_t kVendorTagStart = 0x80000000u;

inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Tag names are printable and cannot hold the blank or parentheses around
// the number that follows them in an entry line, nor a comment's '#'.
inline bool IsTagNameCharacter(char c) { return c > ' ' && c <= '~' && c != '(' && c != ')' && c != '#'; }
// A name that opens with '[' would print as a line of values, never read
// back as an entry.
inline bool IsTagName(std::string_view name) {
  for (char c : name)
    if (!IsTagNameCharacter(c)) return false;
  return !name.empty() && name[0] != '[';
}

inline bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}
inline bool EndsWith(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() &&
         text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// The printer names a tag it cannot resolve unknownSection.unknownTag (or
// one half of it when only the section is known).
inline bool IsUnnamed(std::string_view name) {
  return StartsWith(name, "unknownSection.") || EndsWith(name, ".unknownTag");
}

// Leading blanks: the printer's indentation.
inline size_t Indentation(std::string_view line) {
  size_t n = 0;
  while (n < line.size() && IsBlank(line[n])) ++n;
  return n;
}

inline std::string_view Trim(std::string_view text) {
  size_t first = Indentation(text), last = text.size();
  while (last > first && IsBlank(text[last - 1])) --last;
  return text.substr(first, last - first);
}

// The line without a `#` comment; nothing the printer writes contains `#`.
inline std::string_view WithoutComment(std::string_view line) { return line.substr(0, line.find('#')); }

// The text between `prefix` and `suffix` when the line has both, else false.
inline bool Between(std::string_view line, std::string_view prefix, std::string_view suffix,
                    std::string_view* middle) {
  if (line.size() < prefix.size() + suffix.size() || !StartsWith(line, prefix) || !EndsWith(line, suffix))
    return false;
  *middle = line.substr(prefix.size(), line.size() - prefix.size() - suffix.size());
  return true;
}

// Enough of a line to recognise it in a message.
inline std::string Excerpt(std::string_view text) {
  return text.size() <= 60 ? std::string(text) : std::string(text.substr(0, 57)) + "...";
}

// A tag number as the printer writes it (%05x).
inline std::string Hex(uint32_t tag) {
  char text[16];
  snprintf(text, sizeof(text), "%05x", tag);
  return text;
}

// "byte" ... "rational" for a type code, "unknown" past them (as the printer).
inline const char* TypeName(int type) { return type >= 0 && type < NUM_TYPES ? kTypeNames[type] : "unknown"; }

}  // namespace metatext
