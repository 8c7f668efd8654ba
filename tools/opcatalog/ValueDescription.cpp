#include "ValueDescription.h"

namespace opcatalog {
namespace {

struct FieldSpan {
  size_t offset;
  size_t size;
  size_t align;
};

constexpr size_t RoundUp(size_t value, size_t align) { return (value + align - 1) / align * align; }

// True when the fields, in table order, follow each other with no more than
// alignment padding between them and end where the record ends: a field
// left out of the table, or two swapped, leaves a gap or a step back.
template <size_t N>
constexpr bool FieldsCoverRecord(const FieldSpan (&fields)[N], size_t size, size_t align) {
  size_t end = 0;
  for (const FieldSpan& field : fields) {
    if (field.offset != RoundUp(end, field.align)) return false;
    end = field.offset + field.size;
  }
  return RoundUp(end, align) == size;
}

}  // namespace

#define OPCATALOG_FIELD_SPAN(field) \
  FieldSpan{offsetof(Record, field), sizeof(Record::field), alignof(decltype(Record::field))},
#define OPCATALOG_DESCRIBE_FIELD(field) Describe(sink, #field, value.field);
#define OPCATALOG_DEFINE_DESCRIBE(Type, fields)                                                       \
  void Describe(ValueSink& sink, const char* name, const Type& value) {                               \
    using Record = Type;                                                                              \
    static_assert(FieldsCoverRecord({fields(OPCATALOG_FIELD_SPAN)}, sizeof(Record), alignof(Record)), \
                  #Type ": its field table misses or reorders a field");                              \
    sink.BeginRecord(name, #Type);                                                                    \
    fields(OPCATALOG_DESCRIBE_FIELD) sink.EndRecord();                                                \
  }
OPCATALOG_RECORDS(OPCATALOG_DEFINE_DESCRIBE)
#undef OPCATALOG_DEFINE_DESCRIBE
#undef OPCATALOG_DESCRIBE_FIELD
#undef OPCATALOG_FIELD_SPAN

void Describe(ValueSink& sink, const char* name, const std::string& text) {
  sink.Text(name, text.data(), text.size());
}

void Describe(ValueSink& sink, const char* name, const std::vector<int>& values) {
  DescribeArray(sink, name, values.data(), values.size());
}

}  // namespace opcatalog
