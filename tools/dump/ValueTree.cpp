#include "ValueTree.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace dump {
namespace {

bool HeldByFloat(double value) {
  return std::isfinite(value) && std::fabs(value) <= FLT_MAX &&
         static_cast<double>(static_cast<float>(value)) == value;
}

bool ReadsBackAs(const char* text, double value, bool asFloat) {
  const double back = std::strtod(text, nullptr);
  if (asFloat && std::fabs(back) > FLT_MAX) return false;  // no float: the cast would be undefined
  return asFloat ? static_cast<float>(back) == static_cast<float>(value) : back == value;
}

}  // namespace

std::string RealText(double value) {
  const bool asFloat = HeldByFloat(value);
  char text[40];
  int digits = 1;
  while (digits < 17) {
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    if (ReadsBackAs(text, value, asFloat)) break;
    ++digits;
  }
  // Enough digits for the whole part, so 80 prints as 80 and not 8e+01.
  const double magnitude = std::fabs(value);
  if (magnitude >= 1 && magnitude < 1e17)
    digits = std::max(digits, 1 + static_cast<int>(std::log10(magnitude)));
  std::snprintf(text, sizeof text, "%.*g", digits, value);
  if (std::isfinite(value) && std::strpbrk(text, ".e") == nullptr) std::strcat(text, ".0");
  return text;
}

void ValueTreeSink::Real(const char* name, double value) {
  // Stored as the shortest text reads, so the JSON form prints it the same
  // way the table does; non-finite values stay as they are (JSON has null).
  Add(name, std::isfinite(value) ? std::strtod(RealText(value).c_str(), nullptr) : value);
}

void ValueTreeSink::BeginArray(const char* name, size_t count) {
  Value* array = Add(name, Value::array());
  array->get_ref<Value::array_t&>().reserve(count);
  open_.push_back(array);
}

void ValueTreeSink::BeginRecord(const char* name, const char*) {
  open_.push_back(Add(name, Value::object()));
}

Value* ValueTreeSink::Add(const char* name, Value value) {
  if (open_.empty()) {
    root_ = std::move(value);
    return &root_;
  }
  Value& parent = *open_.back();
  if (parent.is_array()) {
    parent.push_back(std::move(value));
    return &parent.back();
  }
  Value& field = parent[name != nullptr ? name : ""];
  field = std::move(value);
  return &field;
}

}  // namespace dump
