#include "DumpPrinters.h"

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <utility>

namespace dump {
namespace {

// Lines of the table are kept to about this many characters.
constexpr size_t kLineWidth = 128;
constexpr size_t kMinValueWidth = 48;
constexpr size_t kMinPartWidth = 16;  // a nested value is never squeezed below this
constexpr int kSlotWidth = 4;
constexpr int kResultWidth = 6;
constexpr const char* kGap = "  ";

std::string Quote(const std::string& text) {
  std::string quoted = "\"";
  for (const unsigned char c : text) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += static_cast<char>(c);
    } else if (c < 0x20 || c >= 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", c);
      quoted += escape;
    } else {
      quoted += static_cast<char>(c);
    }
  }
  return quoted + "\"";
}

// The value on one line, however long.
std::string Flat(const Value& value) {
  switch (value.type()) {
    case Value::value_t::boolean:
      return value.get<bool>() ? "true" : "false";
    case Value::value_t::number_integer:
      return std::to_string(value.get<long long>());
    case Value::value_t::number_unsigned:
      return std::to_string(value.get<unsigned long long>());
    case Value::value_t::number_float:
      return RealText(value.get<double>());
    case Value::value_t::string:
      return Quote(value.get_ref<const std::string&>());
    case Value::value_t::array: {
      std::string text;
      for (const Value& element : value) text += (text.empty() ? "" : " ") + Flat(element);
      return "[" + text + "]";
    }
    case Value::value_t::object: {
      std::string text;
      for (const auto& field : value.items())
        text += (text.empty() ? "" : " ") + field.key() + "=" + Flat(field.value());
      return "{" + text + "}";
    }
    default:
      return "-";
  }
}

using Item = std::vector<std::string>;  // one element or field, laid out

Item Layout(const Value& value, size_t width, bool nested);

size_t Narrower(size_t width, size_t by) { return width > by + kMinPartWidth ? width - by : kMinPartWidth; }

// Items between `open` and `close`, several to a line when `pack` (one a
// line otherwise), continuation lines indented past `open`. An item of
// several lines starts a line and ends its last one.
Item Join(const std::vector<Item>& items, size_t width, const std::string& open, const std::string& close,
          bool pack) {
  const std::string indent(open.size(), ' ');
  Item lines;
  std::string line = open;
  bool lineHasItems = false;
  bool lineClosed = false;
  for (const Item& item : items) {
    const bool fits = pack && !lineClosed && item.size() == 1 && line.size() + 1 + item[0].size() <= width;
    if (lineHasItems) {
      if (fits)
        line += ' ';
      else
        lines.push_back(std::exchange(line, indent));
    }
    line += item[0];
    for (size_t i = 1; i < item.size(); ++i) lines.push_back(std::exchange(line, indent + item[i]));
    lineHasItems = true;
    lineClosed = item.size() > 1;
  }
  lines.push_back(line + close);
  return lines;
}

// A field's lines continue under its value, past "name=".
Item Field(const std::string& name, const Value& value, size_t width) {
  const std::string label = name + "=";
  Item lines = Layout(value, Narrower(width, label.size()), true);
  lines[0] = label + lines[0];
  for (size_t i = 1; i < lines.size(); ++i) lines[i] = std::string(label.size(), ' ') + lines[i];
  return lines;
}

// A value that does not fit on one line: arrays and records nested in
// others are packed in their brackets; the operation's own record shows one
// field a line.
Item Layout(const Value& value, size_t width, bool nested) {
  std::string flat = Flat(value);
  if (flat.size() <= width || !value.is_structured() || value.empty()) return {std::move(flat)};
  std::vector<Item> items;
  if (value.is_array()) {
    for (const Value& element : value) items.push_back(Layout(element, Narrower(width, 1), true));
    return Join(items, width, "[", "]", true);
  }
  const size_t inner = nested ? Narrower(width, 1) : width;
  for (const auto& field : value.items()) items.push_back(Field(field.key(), field.value(), inner));
  return nested ? Join(items, width, "{", "}", true) : Join(items, width, "", "", false);
}

std::string LogText(const LogLine& line) {
  return std::string(1, line.level) + " " + line.file + ":" + std::to_string(line.line) + " " +
         line.function + "() " + line.text;
}

size_t OperationWidth(const std::vector<OperationRun>& runs) {
  size_t width = std::string("operation").size();
  for (const OperationRun& run : runs) width = std::max(width, run.operation.size());
  return width;
}

constexpr const char* kCutMark = "  ! the dump printed only part of it";

// With --tags every lookup gets a line; without, only those that the answer
// rests on and the dump cut short.
void PrintTags(const std::vector<TagLookup>& tags, bool all, const std::string& indent, std::ostream& out) {
  for (const TagLookup& tag : tags) {
    if (!all && !tag.cut) continue;
    out << indent << (tag.found ? "found    " : "missing  ") << tag.tag << " (" << tag.from << ")"
        << (tag.cut ? kCutMark : "") << '\n';
  }
}

void PrintOperations(const std::vector<OperationRun>& runs, TableShows shows, std::ostream& out) {
  const size_t nameWidth = OperationWidth(runs);
  const size_t valueColumn = kSlotWidth + nameWidth + kResultWidth + 3 * 2;
  const size_t valueWidth = std::max(kMinValueWidth, kLineWidth - std::min(kLineWidth, valueColumn));
  const std::string valueIndent(valueColumn, ' ');
  const std::string noteIndent(kSlotWidth + 2, ' ');
  out << std::left;
  out << std::setw(kSlotWidth) << "slot" << kGap << std::setw(nameWidth) << "operation" << kGap << std::right
      << std::setw(kResultWidth) << "result" << kGap << "value\n";
  for (const OperationRun& run : runs) {
    const Item lines = Layout(run.value, valueWidth, false);
    out << std::right << std::setw(kSlotWidth) << run.slot << kGap << std::left << std::setw(nameWidth)
        << run.operation << kGap << std::right << std::setw(kResultWidth) << run.result << kGap << lines[0]
        << '\n';
    for (size_t i = 1; i < lines.size(); ++i) out << valueIndent << lines[i] << '\n';
    PrintTags(run.tags, shows.tags, noteIndent, out);
    if (!shows.log) continue;
    for (const LogLine& line : run.log) out << noteIndent << LogText(line) << '\n';
  }
}

Value LogValue(const std::vector<LogLine>& lines) {
  Value log = Value::array();
  for (const LogLine& line : lines) {
    log.push_back({{"level", std::string(1, line.level)},
                   {"file", line.file},
                   {"line", line.line},
                   {"function", line.function},
                   {"text", line.text}});
  }
  return log;
}

Value TagsValue(const std::vector<TagLookup>& tags) {
  Value values = Value::array();
  for (const TagLookup& tag : tags) {
    Value value = {{"tag", tag.tag}, {"from", tag.from}, {"found", tag.found}};
    if (tag.cut) value["cut"] = true;
    values.push_back(std::move(value));
  }
  return values;
}

Value OperationValue(const OperationRun& run, bool withLog) {
  Value object = {{"slot", run.slot},
                  {"operation", run.operation},
                  {"result", run.result},
                  {"value", run.value},
                  {"tags", TagsValue(run.tags)}};
  if (withLog) object["log"] = LogValue(run.log);
  return object;
}

std::string KindText(const metatext::Buffer& buffer) {
  const std::string kind = metatext::KindName(buffer.kind);
  return buffer.detail.empty() ? kind : kind + " (" + buffer.detail + ")";
}

std::string Where(const metatext::Buffer& buffer) { return buffer.file + ":" + std::to_string(buffer.line); }

std::string EntriesText(const metatext::Buffer& buffer) {
  return buffer.meta != nullptr ? std::to_string(buffer.meta->entryCount()) + " entries" : "unreadable";
}

Value BufferValue(const NumberedBuffer& numbered) {
  const metatext::Buffer& buffer = *numbered.buffer;
  Value object = {{"buffer", numbered.number},
                  {"file", buffer.file},
                  {"line", buffer.line},
                  {"camera", buffer.camera.empty() ? Value() : Value(buffer.camera)},
                  {"kind", metatext::KindName(buffer.kind)},
                  {"detail", buffer.detail},
                  {"stale", buffer.stale},
                  {"entries", buffer.meta != nullptr ? Value(buffer.meta->entryCount()) : Value()}};
  if (buffer.meta == nullptr) object["problem"] = buffer.problem.text;
  return object;
}

// Text values are bytes from the capture: replace what is not UTF-8 rather
// than fail the whole dump.
std::string JsonText(const Value& value) {
  return value.dump(-1, ' ', false, Value::error_handler_t::replace);
}

std::string Heading(const NumberedBuffer& numbered) {
  const metatext::Buffer& buffer = *numbered.buffer;
  std::string heading = "buffer " + std::to_string(numbered.number) + ": " + Where(buffer);
  if (!buffer.camera.empty()) heading += ", camera " + buffer.camera;
  heading += ", " + KindText(buffer);
  if (buffer.stale) heading += ", stale";
  return heading + ", " + EntriesText(buffer);
}

// A JSON array, an element a line; `each(i)` prints element i.
template <typename Each>
void PrintArray(size_t count, std::ostream& out, Each each) {
  out << '[';
  for (size_t i = 0; i < count; ++i) {
    out << (i == 0 ? "\n" : ",\n");
    each(i);
  }
  out << (count == 0 ? "]" : "\n]");
}

void PrintListTable(const std::vector<NumberedBuffer>& buffers, std::ostream& out) {
  size_t whereWidth = 4, kindWidth = 4;
  for (const NumberedBuffer& numbered : buffers) {
    whereWidth = std::max(whereWidth, Where(*numbered.buffer).size());
    kindWidth = std::max(kindWidth, KindText(*numbered.buffer).size());
  }
  out << std::right << std::setw(3) << "#" << kGap << std::left << std::setw(whereWidth) << "file" << kGap
      << "camera" << kGap << std::setw(kindWidth) << "kind" << kGap << "stale" << kGap << "entries\n";
  for (const NumberedBuffer& numbered : buffers) {
    const metatext::Buffer& buffer = *numbered.buffer;
    out << std::right << std::setw(3) << numbered.number << kGap << std::left << std::setw(whereWidth)
        << Where(buffer) << kGap << std::setw(6) << (buffer.camera.empty() ? "-" : buffer.camera) << kGap
        << std::setw(kindWidth) << KindText(buffer) << kGap << std::setw(5) << (buffer.stale ? "stale" : "")
        << kGap << (buffer.meta != nullptr ? std::to_string(buffer.meta->entryCount()) : "unreadable")
        << '\n';
  }
}

}  // namespace

void PrintTable(const std::vector<BufferRun>& runs, TableShows shows, std::ostream& out) {
  for (size_t i = 0; i < runs.size(); ++i) {
    out << (i == 0 ? "" : "\n") << Heading(runs[i].buffer) << '\n';
    PrintOperations(runs[i].operations, shows, out);
  }
}

void PrintJson(const std::vector<BufferRun>& runs, bool withLog, std::ostream& out) {
  PrintArray(runs.size(), out, [&](size_t i) {
    std::string object = JsonText(BufferValue(runs[i].buffer));
    object.pop_back();  // the closing brace: the operations follow, one a line
    out << object << ",\"operations\":";
    const std::vector<OperationRun>& operations = runs[i].operations;
    PrintArray(operations.size(), out,
               [&](size_t j) { out << JsonText(OperationValue(operations[j], withLog)); });
    out << '}';
  });
  out << '\n';
}

void PrintList(const std::vector<NumberedBuffer>& buffers, Format format, std::ostream& out) {
  if (format == Format::kJson) {
    PrintArray(buffers.size(), out, [&](size_t i) { out << JsonText(BufferValue(buffers[i])); });
    out << '\n';
  } else {
    PrintListTable(buffers, out);
  }
}

}  // namespace dump
