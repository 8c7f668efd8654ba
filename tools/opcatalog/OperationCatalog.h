// Every operation of the helper's slot table, callable without knowing its
// signature: with caller-owned outputs of the right size (or with null
// outputs), and with the value it produced described field by field to a
// sink. The dump tool, the benchmarks, the fuzzer and the stress test all
// walk this one table instead of keeping lists of their own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "metadataHelperBase.h"

namespace opcatalog {

enum class Kind : uint8_t {
  Getter,  // Get..., and the other reads that fill caller-owned outputs
  Query,   // IsRearCamera: the answer is the return value
  Setter,  // Set... and the operations that write into a container
};

// Receives one produced value. `name` is the field name inside a record and
// null for the top-level value and for array elements.
class ValueSink {
 public:
  virtual ~ValueSink() = default;
  virtual void Integer(const char* name, long long value) = 0;
  virtual void Unsigned(const char* name, unsigned long long value) = 0;
  virtual void Real(const char* name, double value) = 0;
  virtual void Boolean(const char* name, bool value) = 0;
  virtual void Text(const char* name, const char* text, size_t length) = 0;
  virtual void BeginArray(const char* name, size_t count) = 0;
  virtual void EndArray() = 0;
  virtual void BeginRecord(const char* name, const char* type) = 0;
  virtual void EndRecord() = 0;
};

struct CallContext {
  metahelper::MetaPtr request;  // what the operation reads, and setters write
  metahelper::MetaPtr second;   // destination of two-container operations
  bool nullOutputs = false;     // pass null for every output pointer
  ValueSink* sink = nullptr;    // told the value when the call succeeded
};

struct Operation {
  int slot;          // virtual slot number, as the slot table numbers it
  const char* name;  // overloads share a name and differ in slot
  Kind kind;
  bool allocates;  // the output itself is heap storage (strings, vectors)
  // Calls the operation and returns its result as it returned it (IsRearCamera:
  // 1 or 0). The sink hears the value only when the operation's own
  // convention says it succeeded.
  int (*call)(metahelper::metadataHelperBase& helper, const CallContext& context);
};

// Every operation, in slot order.
const Operation* Operations(size_t* count);

}  // namespace opcatalog
