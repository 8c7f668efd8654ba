#include "MetaText.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <streambuf>
#include <string_view>
#include <utility>

#include "Framing.h"

namespace metatext {
namespace {

// Files are read through the C library, whose error flag reports a failed
// read (a directory, an I/O error) with every standard library: a file
// stream sets bad() for it under libstdc++, but libc++ takes it for the end
// of an empty file.
class FileBuffer : public std::streambuf {
 public:
  explicit FileBuffer(std::FILE* file) : file_(file) {}
  bool failed() const { return failed_; }

 protected:
  int_type underflow() override {
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    const size_t n = std::fread(chunk_, 1, sizeof chunk_, file_);
    if (n == 0) {
      failed_ = std::ferror(file_) != 0;
      return traits_type::eof();
    }
    setg(chunk_, chunk_, chunk_ + n);
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::FILE* file_;
  char chunk_[1 << 16];
  bool failed_ = false;
};

// An open file as a stream; `problem` says why not.
class InputFile {
 public:
  InputFile(const std::string& path, Problem* problem)
      : file_(std::fopen(path.c_str(), "r")), buffer_(file_), stream_(&buffer_) {
    if (file_ == nullptr && problem != nullptr)
      *problem = Problem{path, 0, std::string("cannot open: ") + strerror(errno)};
  }
  ~InputFile() {
    if (file_ != nullptr) std::fclose(file_);
  }
  bool opened() const { return file_ != nullptr; }
  std::istream& stream() { return stream_; }
  const FileBuffer* buffer() const { return &buffer_; }

 private:
  std::FILE* file_;
  FileBuffer buffer_;
  std::istream stream_;
};

Problem CannotRead(const std::string& fileName) { return Problem{fileName, 0, "cannot read the file"}; }

// Gives every line to the framer, through one reused line buffer. False
// when the text could not be read to its end.
bool ReadLines(std::istream& in, const FileBuffer* file, Framer& framer) {
  std::string line;
  unsigned number = 0;
  while (std::getline(in, line)) {
    std::string_view view(line);
    if (!view.empty() && view.back() == '\r') view.remove_suffix(1);
    framer.Line(view, ++number);
  }
  return !in.bad() && (file == nullptr || !file->failed());
}

bool Read(std::istream& in, const FileBuffer* file, const std::string& fileName, NvVendorTagTable* vendorTags,
          Capture* capture, Problem* problem) {
  Capture read;
  Framer framer(fileName, vendorTags, &read);
  if (!ReadLines(in, file, framer)) {
    if (problem != nullptr) *problem = CannotRead(fileName);
    return false;
  }
  framer.Finish();
  if (capture != nullptr) *capture = std::move(read);
  return true;
}

// Why a text is not one buffer that reads, in the order of its lines.
bool IsOneBuffer(const Capture& capture, const Framer& framer, const std::string& fileName,
                 Problem* problem) {
  const Buffer* first = capture.buffers.empty() ? nullptr : &capture.buffers[0];
  if (first != nullptr && !first->meta &&
      (framer.otherLine() == 0 || first->problem.line < framer.otherLine())) {
    *problem = first->problem;
  } else if (framer.otherLine() != 0) {
    *problem = Problem{fileName, framer.otherLine(),
                       "not an entry 'NAME (TAG): TYPE[COUNT]', values '[...]', header or comment: '" +
                           framer.otherText() + "'"};
  } else if (first == nullptr) {
    *problem = Problem{fileName, 0, "no metadata buffer in the file"};
  } else if (capture.buffers.size() > 1) {
    *problem = Problem{fileName, capture.buffers[1].line,
                       "a second metadata buffer; the file must hold one (" +
                           std::to_string(capture.buffers.size()) + " found)"};
  } else {
    return true;
  }
  return false;
}

bool Parse(std::istream& in, const FileBuffer* file, const std::string& fileName, NvMetadata* meta,
           Problem* problem, std::vector<Problem>* notes) {
  Problem unused;
  if (problem == nullptr) problem = &unused;
  if (meta == nullptr) {
    *problem = Problem{fileName, 0, "no container to load into"};
    return false;
  }
  Capture capture;
  Framer framer(fileName, nullptr, &capture);
  if (!ReadLines(in, file, framer)) {
    *problem = CannotRead(fileName);
    return false;
  }
  framer.Finish();
  if (!IsOneBuffer(capture, framer, fileName, problem)) return false;
  *meta = std::move(*capture.buffers[0].meta);
  if (notes != nullptr) notes->insert(notes->end(), capture.notes.begin(), capture.notes.end());
  return true;
}

}  // namespace

std::string Problem::Message() const {
  return line == 0 ? file + ": " + text : file + ":" + std::to_string(line) + ": " + text;
}

const char* KindName(Kind kind) {
  switch (kind) {
    case Kind::kUnlabelled:
      return "buffer";
    case Kind::kStatic:
      return "static characteristics";
    case Kind::kPhysicalStatic:
      return "physical camera characteristics";
    case Kind::kLatestResult:
      return "latest result";
    case Kind::kPhysicalResult:
      return "physical result";
    case Kind::kLastRequest:
      return "last request";
    case Kind::kPhysicalRequest:
      return "physical request";
    case Kind::kRequestTemplate:
      return "request template";
  }
  return "buffer";
}

// Characteristics describe a camera; they are the statics a replay of a
// request or result uses, not something to replay.
bool IsReplayedByDefault(Kind kind) { return kind != Kind::kStatic && kind != Kind::kPhysicalStatic; }

bool ReadText(std::istream& in, const std::string& fileName, NvVendorTagTable* vendorTags, Capture* capture,
              Problem* problem) {
  return Read(in, nullptr, fileName, vendorTags, capture, problem);
}

bool ReadFile(const std::string& path, NvVendorTagTable* vendorTags, Capture* capture, Problem* problem) {
  InputFile file(path, problem);
  return file.opened() && Read(file.stream(), file.buffer(), path, vendorTags, capture, problem);
}

bool ParseText(std::istream& in, const std::string& fileName, NvMetadata* meta, Problem* problem,
               std::vector<Problem>* notes) {
  return Parse(in, nullptr, fileName, meta, problem, notes);
}

bool ParseFile(const std::string& path, NvMetadata* meta, Problem* problem, std::vector<Problem>* notes) {
  InputFile file(path, problem);
  return file.opened() && Parse(file.stream(), file.buffer(), path, meta, problem, notes);
}

}  // namespace metatext
