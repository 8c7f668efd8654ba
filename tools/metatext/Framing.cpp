#include "Framing.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "TextUtil.h"

namespace metatext {
namespace {

constexpr std::string_view kDumping = "Dumping camera metadata array:";

bool IsDumping(std::string_view text) { return StartsWith(text, kDumping); }
bool IsNotAllocated(std::string_view text) { return Trim(text.substr(kDumping.size())) == "Not allocated"; }
bool IsBlankOrComment(std::string_view text) { return text.empty() || text[0] == '#'; }

bool IsEntryLine(std::string_view text) {
  EntryLine entry;
  return ParseEntryLine(Trim(WithoutComment(text)), &entry);
}

// Lines a file without "Dumping" lines holds: entries, values, the
// header's second line, cuts.
bool LooksLikeBufferLine(std::string_view text) {
  text = Trim(WithoutComment(text));
  return text.empty() || text[0] == '[' || text == "..." || StartsWith(text, "Version:") || IsEntryLine(text);
}

// The camera id of a provider's device name: "device@3.5/legacy/0 (v3.5)"
// is camera "0".
std::string DeviceId(std::string_view heading) {
  const size_t version = heading.rfind(" (v");
  if (version != std::string_view::npos) heading = heading.substr(0, version);
  const size_t slash = heading.rfind('/');
  return std::string(slash == std::string_view::npos ? heading : heading.substr(slash + 1));
}

// What the camera service's headings say of the next buffer. A form with a
// suffix has the id or template name between prefix and suffix.
enum class Part { kNothing, kCamera, kTemplate, kClient };
struct HeadingForm {
  std::string_view prefix;
  std::string_view suffix;
  Kind kind;
  std::string_view detail;
  Part part;
};
constexpr HeadingForm kHeadings[] = {
    {"Latest received frame:", "", Kind::kLatestResult, "", Part::kNothing},
    {"Latest received frame for physical camera ", ":", Kind::kPhysicalResult, "", Part::kCamera},
    {"Last request sent:", "", Kind::kLastRequest, "", Part::kNothing},
    {"Logical request settings:", "", Kind::kLastRequest, "", Part::kNothing},
    {"Physical request settings for camera id ", ":", Kind::kPhysicalRequest, "", Part::kCamera},
    {"HAL Request ", ":", Kind::kRequestTemplate, "", Part::kTemplate},
    {"Preview request:", "", Kind::kLastRequest, "Preview request", Part::kNothing},
    {"Recording request:", "", Kind::kLastRequest, "Recording request", Part::kNothing},
    {"Capture request:", "", Kind::kLastRequest, "Capture request", Part::kNothing},
    {"Latest ZSL capture request:", "", Kind::kLastRequest, "Latest ZSL capture request", Part::kNothing},
    {"Latest captured frame:", "", Kind::kLatestResult, "Latest captured frame", Part::kNothing},
    {"API2 camera characteristics:", "", Kind::kStatic, "", Part::kNothing},
    {"Physical camera ", " characteristics:", Kind::kPhysicalStatic, "", Part::kCamera},
    {"CameraDeviceClient[", " dump:", Kind::kUnlabelled, "", Part::kClient},
    {"Client2[", " dump:", Kind::kUnlabelled, "", Part::kClient},
};

const HeadingForm* FindHeading(std::string_view text, std::string_view* middle) {
  for (const HeadingForm& form : kHeadings) {
    if (form.suffix.empty() ? text == form.prefix : Between(text, form.prefix, form.suffix, middle))
      return &form;
  }
  return nullptr;
}

}  // namespace

Framer::Framer(const std::string& file, NvVendorTagTable* vendorTags, Capture* capture)
    : file_(file), capture_(capture), resolver_(vendorTags) {
  plain_.reader = std::make_unique<BufferReader>(file_, resolver_, &capture_->notes);
}

void Framer::Line(std::string_view line, unsigned number) {
  const LogcatLine split = splitter_.Split(line);
  if (split.logcat) return LogcatMessage(split, number);
  PlainLine(line, number);
}

void Framer::Finish() {
  if (plain_.open) Close(plain_);
  CloseLogStreams();
  ResolvePending();
  std::stable_sort(capture_->notes.begin(), capture_->notes.end(),
                   [](const Problem& a, const Problem& b) { return a.line < b.line; });
  capture_->wholeDump = sawLogcat_ || otherLine_ != 0 || capture_->buffers.size() != 1;
}

void Framer::PlainLine(std::string_view line, unsigned number) {
  const std::string_view text = Trim(line);
  if (plain_.open && Continues(plain_, line, text)) return plain_.reader->Line(line, number);
  if (plain_.open) Close(plain_);
  if (IsBlankOrComment(text) || Opens(plain_, line, text, number)) return;
  // Only an entry line starts one: text before a dump's first buffer (a bug
  // report's "[ro.x]: [y]" properties) holds other bracketed lines.
  if (!sawDumping_ && !sawHeaderless_ && IsEntryLine(text)) {
    sawHeaderless_ = true;
    Open(plain_, 0, true, Labels(number));
    return plain_.reader->Line(line, number);
  }
  Other(line, text, number);
}

// Logcat buffers carry no labels: the app's dump says nothing of what the
// buffer is. Lines of other tags and threads neither end nor enter one.
void Framer::LogcatMessage(const LogcatLine& line, unsigned number) {
  sawLogcat_ = true;
  NoteOther(line.message, number);
  if (line.header) return;
  const auto same = [&](const LogStream& s) {
    return s.pid == line.pid && s.tid == line.tid && s.tag == line.tag;
  };
  const auto stream = std::find_if(streams_.begin(), streams_.end(), same);
  const std::string_view text = Trim(line.message);
  if (stream != streams_.end()) {
    if (Continues(stream->buffer, line.message, text))
      return stream->buffer.reader->Line(line.message, number);
    Close(stream->buffer);
    streams_.erase(stream);
  }
  if (!IsDumping(text)) return;
  LogStream opened{std::string(line.tag), line.pid, line.tid, OpenBuffer{}};
  opened.buffer.reader = std::make_unique<BufferReader>(file_, resolver_, &capture_->notes);
  Opens(opened.buffer, line.message, text, number);
  if (opened.buffer.open) streams_.push_back(std::move(opened));
}

bool Framer::Continues(const OpenBuffer& buffer, std::string_view line, std::string_view text) const {
  if (IsBlankOrComment(text)) return true;
  if (IsDumping(text)) return false;
  if (buffer.headerless) return LooksLikeBufferLine(text);
  return Indentation(line) >= buffer.indentation + 2 || text == "...";
}

// A "Dumping" line starts a buffer, unless the buffer is not allocated.
bool Framer::Opens(OpenBuffer& buffer, std::string_view line, std::string_view text, unsigned number) {
  if (!IsDumping(text)) return false;
  sawDumping_ = true;
  if (IsNotAllocated(text)) {
    NoteOther(text, number);
    if (&buffer == &plain_) heading_.active = false;
    return true;
  }
  Buffer labels;
  if (&buffer == &plain_) {
    labels = Labels(number);
  } else {
    labels.file = file_;
    labels.line = number;
  }
  Open(buffer, Indentation(line), false, std::move(labels));
  return true;
}

void Framer::Open(OpenBuffer& buffer, size_t indentation, bool headerless, Buffer&& labels) {
  buffer.open = true;
  buffer.headerless = headerless;
  buffer.indentation = indentation;
  buffer.index = capture_->buffers.size();
  capture_->buffers.push_back(std::move(labels));
  buffer.reader->Begin(buffer.index);
}

// What the camera service printed above the buffer.
Buffer Framer::Labels(unsigned number) {
  Buffer labels;
  labels.file = file_;
  labels.line = number;
  labels.camera = camera_;
  labels.stale = stale_;
  if (dumpState_) {
    labels.detail = "HAL dumpState";
  } else if (heading_.active) {
    labels.kind = heading_.kind;
    labels.detail = heading_.detail;
    if (!heading_.camera.empty()) labels.camera = heading_.camera;
  }
  heading_.active = false;
  return labels;
}

void Framer::Close(OpenBuffer& buffer) {
  buffer.reader->Finish(&capture_->buffers[buffer.index], &pending_);
  buffer.open = false;
}

void Framer::CloseLogStreams() {
  for (LogStream& stream : streams_) Close(stream.buffer);
  streams_.clear();
}

// A line outside every buffer: the service's headings and sections, or
// anything else, which is skipped.
void Framer::Other(std::string_view line, std::string_view text, unsigned number) {
  NoteOther(text, number);
  const size_t indentation = Indentation(line);
  if (heading_.active && indentation <= heading_.indentation) heading_.active = false;
  if (Section(text)) return;
  if (vendorSection_) return VendorTag(text);
  if (!dumpState_) TakeHeading(text, indentation);
}

void Framer::NoteOther(std::string_view text, unsigned number) {
  if (otherLine_ != 0) return;
  otherLine_ = number;
  otherText_ = Excerpt(Trim(text));
}

// Lines that change where in the dump, or the bug report, the text is.
bool Framer::Section(std::string_view text) {
  if (StartsWith(text, "== ")) {
    NewSection(text);
  } else if (text == "**********Dumpsys from previous open session**********") {
    ResetContext();
    stale_ = true;
  } else if (text == "**********End of Dumpsys from previous open session**********") {
    ResetContext();
    stale_ = false;
  } else if (StartsWith(text, "DUMP OF SERVICE ") ||
             (StartsWith(text, "------ ") && EndsWith(text, " ------"))) {
    ResetContext();
    stale_ = false;
    CloseLogStreams();
  } else {
    return false;
  }
  return true;
}

void Framer::NewSection(std::string_view text) {
  ResetContext();
  std::string_view middle;
  if (Between(text, "== Camera device ", " dynamic info: ==", &middle)) {
    camera_ = middle;
  } else if (Between(text, "== Camera HAL device ", " static information: ==", &middle)) {
    camera_ = DeviceId(middle);
  } else if (Between(text, "== Camera HAL device ", " dumpState: ==", &middle)) {
    camera_ = DeviceId(middle);
    dumpState_ = true;
  } else {
    vendorSection_ = text == "== Vendor tags: ==";
  }
}

void Framer::ResetContext() {
  camera_.clear();
  dumpState_ = vendorSection_ = false;
  heading_.active = false;
}

void Framer::TakeHeading(std::string_view text, size_t indentation) {
  std::string_view middle;
  const HeadingForm* form = FindHeading(text, &middle);
  if (form == nullptr) return;
  if (form->part == Part::kClient) {
    if (camera_.empty()) camera_ = middle.substr(0, middle.find(']'));
    return;
  }
  heading_.active = true;
  heading_.indentation = indentation;
  heading_.kind = form->kind;
  heading_.detail = form->part == Part::kTemplate ? middle : form->detail;
  heading_.camera.clear();
  if (form->part == Part::kCamera) {
    heading_.camera = middle;
    if (!camera_.empty()) heading_.detail = "logical camera " + camera_;
  }
}

// "0x%x (%s) with type %d (%s) defined in section %s"
void Framer::VendorTag(std::string_view text) {
  const size_t name = text.find(" ("), type = text.find(") with type "),
               section = text.find(" defined in section ");
  if (!StartsWith(text, "0x") || name == std::string_view::npos || type == std::string_view::npos ||
      section == std::string_view::npos || name > type || type > section)
    return;
  uint32_t number = 0;
  int code = -1;
  std::from_chars(text.data() + 2, text.data() + name, number, 16);
  std::from_chars(text.data() + type + 12, text.data() + section, code);
  const std::string full = std::string(Trim(text.substr(section + 20))) + "." +
                           std::string(text.substr(name + 2, type - name - 2));
  // A name the printer's placeholder for an unnamed tag would take could
  // not be read back as this tag.
  if (!IsTagName(full) || IsUnnamed(full)) return;
  const auto [at, added] = vendorTagNames_.emplace(number, VendorTagName{full, code, false});
  if (!added && (at->second.name != full || at->second.type != code)) at->second.ambiguous = true;
}

// Entries printed without a name, named now by the vendor tag section.
void Framer::ResolvePending() {
  for (PendingEntry& entry : pending_) {
    if (!capture_->buffers[entry.buffer].meta) continue;
    const auto declared = vendorTagNames_.find(entry.number);
    const std::string where = entry.name + " (" + Hex(entry.number) + ")";
    if (declared == vendorTagNames_.end() || declared->second.ambiguous) {
      Note(entry.line, where + ": the dump does not name this tag; skipped");
    } else if (declared->second.type != entry.type) {
      Note(entry.line, where + ": the vendor tag section declares " + declared->second.name + " as " +
                           TypeName(declared->second.type) + ", but the entry is " + TypeName(entry.type) +
                           "; left out");
    } else {
      LoadPending(entry, declared->second);
    }
  }
  pending_.clear();
}

void Framer::LoadPending(const PendingEntry& entry, const VendorTagName& name) {
  Buffer& buffer = capture_->buffers[entry.buffer];
  uint32_t tag = 0;
  const TagResolver::Outcome outcome =
      resolver_.Resolve(name.name.c_str(), entry.number, entry.type, &tag, &text_);
  if (outcome == TagResolver::Outcome::kRefuse) return Refuse(buffer, entry.line, text_);
  if (!text_.empty()) Note(entry.line, text_);
  if (outcome == TagResolver::Outcome::kSkip) return;
  const std::vector<unsigned int> tags = buffer.meta->tags();
  if (std::find(tags.begin(), tags.end(), tag) != tags.end())
    return Refuse(buffer, entry.line, name.name + " is given twice");
  const void* data = entry.bytes.data();
  if (buffer.meta->update(tag, data, entry.count) != 0)
    return Refuse(buffer, entry.line, name.name + ": the container refused the values");
  if (entry.cut) buffer.cut.insert(std::upper_bound(buffer.cut.begin(), buffer.cut.end(), tag), tag);
}

void Framer::Refuse(Buffer& buffer, unsigned line, std::string text) {
  buffer.meta = nullptr;
  buffer.problem = Problem{file_, line, std::move(text)};
}

void Framer::Note(unsigned line, std::string text) {
  capture_->notes.push_back(Problem{file_, line, std::move(text)});
}

}  // namespace metatext
