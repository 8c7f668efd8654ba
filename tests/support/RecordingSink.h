// A catalogue sink that records what it hears, one line per event: a value
// as "name=value", an array as "name#count" and a record as "name:type", each
// closed by "end". The top value and array elements have no name.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "OperationCatalog.h"

namespace testsupport {

class RecordingSink : public opcatalog::ValueSink {
 public:
  std::vector<std::string> lines;

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

  // Every array and record closed, and none closed that was not open.
  bool Balanced() const { return open_ == 0 && !closedTooOften_; }

 private:
  void Add(const char* name, const std::string& value) {
    lines.push_back(std::string(name != nullptr ? name : "") + value);
  }
  void Open(const char* name, const std::string& mark) {
    Add(name, mark);
    ++open_;
  }
  void Close() {
    lines.push_back("end");
    if (open_ == 0)
      closedTooOften_ = true;
    else
      --open_;
  }
  int open_ = 0;
  bool closedTooOften_ = false;
};

}  // namespace testsupport
