// A sink that records what it hears as flat "path=value" lines.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "OperationCatalog.h"

namespace cattest {

// Paths join field names and array indices with dots ("faces.0.x0"); the
// top value has the empty path. Arrays record "path#count", records
// "path:type".
class RecordingSink : public opcatalog::ValueSink {
 public:
  std::vector<std::string> lines;
  int events = 0;

  void Integer(const char* name, long long value) override { Add(name, "=" + std::to_string(value)); }
  void Unsigned(const char* name, unsigned long long value) override {
    Add(name, "=" + std::to_string(value));
  }
  void Real(const char* name, double value) override {
    std::ostringstream text;
    text << value;
    Add(name, "=" + text.str());
  }
  void Boolean(const char* name, bool value) override { Add(name, value ? "=true" : "=false"); }
  void Text(const char* name, const char* text, size_t length) override {
    std::string shown;
    for (size_t i = 0; i < length; ++i)
      shown += text[i] == '\0' ? std::string("\\0") : std::string(1, text[i]);
    Add(name, "=\"" + shown + "\"");
  }
  void BeginArray(const char* name, size_t count) override { Open(name, "#" + std::to_string(count)); }
  void EndArray() override { Close(); }
  void BeginRecord(const char* name, const char* type) override { Open(name, std::string(":") + type); }
  void EndRecord() override { Close(); }

  bool Balanced() const { return open_.empty() && !unbalanced_; }
  bool Has(const std::string& line) const {
    for (const std::string& l : lines)
      if (l == line) return true;
    return false;
  }

 private:
  struct Frame {
    std::string path;
    size_t next = 0;
  };
  std::string Child(const char* name) {
    if (open_.empty()) return name != nullptr ? name : "";
    Frame& parent = open_.back();
    const std::string key = name != nullptr ? name : std::to_string(parent.next++);
    return parent.path.empty() ? key : parent.path + "." + key;
  }
  void Add(const char* name, const std::string& value) {
    ++events;
    lines.push_back(Child(name) + value);
  }
  void Open(const char* name, const std::string& mark) {
    ++events;
    const std::string path = Child(name);
    lines.push_back(path + mark);
    open_.push_back({path});
  }
  void Close() {
    ++events;
    if (open_.empty())
      unbalanced_ = true;
    else
      open_.pop_back();
  }
  std::vector<Frame> open_;
  bool unbalanced_ = false;
};

}  // namespace cattest
