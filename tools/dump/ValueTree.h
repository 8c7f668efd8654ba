// The value an operation produced, as a tree that both output forms print:
// the catalogue describes the value to a ValueTreeSink, which builds it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "OperationCatalog.h"

namespace dump {

// Ordered: a record's fields stay in declaration order.
using Value = nlohmann::ordered_json;

class ValueTreeSink : public opcatalog::ValueSink {
 public:
  // Null until a value was described.
  const Value& Result() const { return root_; }

  void Integer(const char* name, long long value) override { Add(name, value); }
  void Unsigned(const char* name, unsigned long long value) override { Add(name, value); }
  void Real(const char* name, double value) override;
  void Boolean(const char* name, bool value) override { Add(name, value); }
  void Text(const char* name, const char* text, size_t length) override {
    Add(name, std::string(text, length));
  }
  void BeginArray(const char* name, size_t count) override;
  void EndArray() override { open_.pop_back(); }
  void BeginRecord(const char* name, const char* type) override;
  void EndRecord() override { open_.pop_back(); }

 private:
  // Places `value` in the innermost open array or record (or as the whole
  // value) and returns where it landed.
  Value* Add(const char* name, Value value);

  Value root_;
  // Path of open arrays and records; each is the last child of the one
  // before, and only the innermost grows, so none of these moves.
  std::vector<Value*> open_;
};

// Shortest decimal text that reads back as the same value. A value that a
// float holds exactly is taken to be one (most tags are float): 0.1f prints
// as 0.1, not 0.10000000149011612. Whole numbers keep a ".0" so they read as
// reals.
std::string RealText(double value);

}  // namespace dump
