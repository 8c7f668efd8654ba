// Describing a produced value to a ValueSink: scalars by their type, arrays
// with their element count, records field by field under the names their
// declarations give them (RecordFields.h).
#pragma once

#include <stddef.h>
#include <string.h>

#include <string>
#include <type_traits>
#include <vector>

#include "OperationCatalog.h"
#include "RecordFields.h"

namespace opcatalog {

#define OPCATALOG_DECLARE_DESCRIBE(Type, fields) \
  void Describe(ValueSink& sink, const char* name, const Type& value);
OPCATALOG_RECORDS(OPCATALOG_DECLARE_DESCRIBE)
#undef OPCATALOG_DECLARE_DESCRIBE

void Describe(ValueSink& sink, const char* name, const std::string& text);
void Describe(ValueSink& sink, const char* name, const std::vector<int>& values);

template <typename T, std::enable_if_t<std::is_arithmetic_v<T>, int> = 0>
void Describe(ValueSink& sink, const char* name, const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    // Some operations store a tag's byte into a bool as it stands (2 stays
    // 2): read the byte, not the bool, so such a value is no undefined load.
    unsigned char byte = 0;
    memcpy(&byte, &value, 1);
    sink.Boolean(name, byte != 0);
  } else if constexpr (std::is_floating_point_v<T>) {
    sink.Real(name, value);
  } else if constexpr (std::is_signed_v<T>) {
    sink.Integer(name, value);
  } else {
    sink.Unsigned(name, value);
  }
}

template <typename T, size_t N>
void Describe(ValueSink& sink, const char* name, const T (&values)[N]);

template <typename T>
void DescribeArray(ValueSink& sink, const char* name, const T* values, size_t count) {
  sink.BeginArray(name, count);
  for (size_t i = 0; i < count; ++i) Describe(sink, nullptr, values[i]);
  sink.EndArray();
}

template <typename T, size_t N>
void Describe(ValueSink& sink, const char* name, const T (&values)[N]) {
  DescribeArray(sink, name, values, N);
}

}  // namespace opcatalog
