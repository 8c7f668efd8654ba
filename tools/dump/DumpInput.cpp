#include "DumpInput.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace dump {
namespace {

using metatext::Buffer;
using metatext::Capture;
using metatext::Kind;
using metatext::Problem;

bool Fail(const Problem& problem, std::ostream& err) {
  err << problem.Message() << '\n';
  return false;
}

bool IsStatic(const Buffer& buffer) {
  return buffer.kind == Kind::kStatic || buffer.kind == Kind::kPhysicalStatic;
}

// A file that holds one buffer is that buffer: when it does not read, the
// file does not.
bool ReadCapture(const std::string& path, NvVendorTagTable* vendorTags, Capture* capture, std::ostream& err) {
  Problem problem;
  if (!metatext::ReadFile(path, vendorTags, capture, &problem)) return Fail(problem, err);
  if (capture->buffers.empty()) return Fail({path, 0, "holds no camera metadata buffer"}, err);
  const Buffer& first = capture->buffers.front();
  if (!capture->wholeDump && first.meta == nullptr) return Fail(first.problem, err);
  return true;
}

// A dump may show a camera's characteristics twice, once in the block of a
// previous session: the current one wins, and of equals the first.
StaticSet StaticsOf(const Capture& capture, std::vector<Problem>* notes) {
  StaticSet statics;
  for (const Buffer& buffer : capture.buffers) {
    if (!IsStatic(buffer) || buffer.meta == nullptr) continue;
    unsigned int id = 0;
    if (!CameraNumber(buffer.camera, &id)) {
      notes->push_back(
          {buffer.file, buffer.line,
           "camera id '" + buffer.camera + "' is not a number: its characteristics are not used"});
      continue;
    }
    const Buffer*& chosen = statics[id];
    if (chosen == nullptr || (chosen->stale && !buffer.stale)) chosen = &buffer;
  }
  return statics;
}

// --static ID=FILE: the file's one buffer, or camera ID's characteristics in
// a dump.
bool ReadStaticOverride(const StaticFile& file, NvVendorTagTable* vendorTags, Capture* capture,
                        StaticSet* overrides, std::ostream& err) {
  if (!ReadCapture(file.path, vendorTags, capture, err)) return false;
  if (!capture->wholeDump) {
    (*overrides)[file.cameraId] = &capture->buffers.front();
    return true;
  }
  std::vector<Problem> ignored;
  const StaticSet found = StaticsOf(*capture, &ignored);
  const auto chosen = found.find(file.cameraId);
  if (chosen == found.end())
    return Fail({file.path, 0, "holds no static characteristics of camera " + std::to_string(file.cameraId)},
                err);
  (*overrides)[file.cameraId] = chosen->second;
  return true;
}

struct Message {
  unsigned line;
  std::string text;
};

// One file's lines for stderr, in line order.
void AddMessages(std::vector<Message> messages, std::vector<std::string>* out) {
  std::stable_sort(messages.begin(), messages.end(),
                   [](const Message& a, const Message& b) { return a.line < b.line; });
  for (Message& message : messages) out->push_back(std::move(message.text));
}

std::vector<Message> NotesOf(const std::vector<Problem>& notes) {
  std::vector<Message> messages;
  for (const Problem& note : notes) messages.push_back({note.line, "note: " + note.Message()});
  return messages;
}

// Numbers the buffers of every FILE and pairs them with their file's statics.
void NumberBuffers(const StaticSet& overrides, Input* input) {
  input->statics.resize(input->files.size());
  for (size_t i = 0; i < input->files.size(); ++i) {
    const Capture& capture = input->files[i];
    std::vector<Problem> notes = capture.notes;
    StaticSet& statics = input->statics[i] = StaticsOf(capture, &notes);
    for (const auto& [id, buffer] : overrides) statics[id] = buffer;
    std::vector<Message> messages = NotesOf(notes);
    for (const Buffer& buffer : capture.buffers) {
      input->buffers.push_back({static_cast<unsigned>(input->buffers.size() + 1), &buffer, &statics});
      if (buffer.meta != nullptr) continue;
      messages.push_back({buffer.line, buffer.problem.Message()});
      ++input->unreadable;
    }
    AddMessages(std::move(messages), &input->messages);
  }
  for (const Capture& capture : input->staticFiles) AddMessages(NotesOf(capture.notes), &input->messages);
}

}  // namespace

bool CameraNumber(const std::string& camera, unsigned int* id) {
  if (camera.empty() || camera.size() > 9 || camera.find_first_not_of("0123456789") != std::string::npos)
    return false;
  *id = static_cast<unsigned int>(std::strtoul(camera.c_str(), nullptr, 10));
  return true;
}

bool LoadInput(const Options& options, NvVendorTagTable* vendorTags, Input* input, std::ostream& err) {
  input->files.resize(options.files.size());
  for (size_t i = 0; i < options.files.size(); ++i) {
    if (!ReadCapture(options.files[i], vendorTags, &input->files[i], err)) return false;
  }
  input->staticFiles.resize(options.statics.size());
  StaticSet overrides;
  for (size_t i = 0; i < options.statics.size(); ++i) {
    if (!ReadStaticOverride(options.statics[i], vendorTags, &input->staticFiles[i], &overrides, err))
      return false;
  }
  NumberBuffers(overrides, input);
  return true;
}

}  // namespace dump
