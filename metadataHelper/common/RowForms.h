// The forms of an operation table's rows (BaseOperations.def,
// MtkOperations.def) as entries of a constexpr table of Rows. Define
// MH_ROW_CLASS as the helper class whose table is being built, then include
// this header and the table:
//
//   #define MH_ROW_CLASS metadataHelperBase
//   #include "RowForms.h"
//   inline constexpr Row kRows[] = {
//   #include "BaseOperations.def"
//   };
//
// Included again, it defines the forms anew (another header may have given
// them other meanings in between).
#include "OpSkeletons.h"

#include "FormsReset.h"

#define MH_ROW(skeleton, slot, name, params, tag, elements, messages, lines, ...) \
  ::metahelper::ops::MakeRow<MH_METHOD(MH_ROW_CLASS, name, params)>(              \
      slot, #name, ::metahelper::ops::Skeleton::skeleton,                         \
      ::metahelper::ops::Access{tag, elements, messages, lines}, ##__VA_ARGS__),

#define MH_READ(...) MH_ROW(kRead, __VA_ARGS__)
#define MH_CONVERT(slot, name, params, tag, elements, convert, ...) \
  MH_ROW(kConvert, slot, name, params, tag, elements, __VA_ARGS__)
#define MH_READ_WITH(slot, name, params, tag, elements, store, ...) \
  MH_ROW(kReadWith, slot, name, params, tag, elements, __VA_ARGS__)
#define MH_STATIC(...) MH_ROW(kStaticRead, __VA_ARGS__)
#define MH_UNSUPPORTED(slot, name, params, line)                                                       \
  MH_ROW(kNotSupported, slot, name, params, ::metahelper::ops::kNoTag, ::metahelper::ops::kNoElements, \
         ::metahelper::ops::kNoMessages, ::metahelper::ops::ReadLines(line))
#define MH_UNSUPPORTED_RECORD(slot, name, params, line)                                                      \
  MH_ROW(kNotSupportedRecord, slot, name, params, ::metahelper::ops::kNoTag, ::metahelper::ops::kNoElements, \
         ::metahelper::ops::kNoMessages, ::metahelper::ops::ReadLines(line))
#define MH_STUB(slot, name, params)                                                            \
  MH_ROW(kStub, slot, name, params, ::metahelper::ops::kNoTag, ::metahelper::ops::kNoElements, \
         ::metahelper::ops::kNoMessages, ::metahelper::ops::ReadLines(::metahelper::ops::kNoLine))
// Writes refuse an empty container too unless the row says otherwise.
#define MH_WRITE_FORM(slot, name, params, tag, elements, message, lines, ...) \
  MH_ROW(kWrite, slot, name, params, tag, elements, message, lines,           \
         ::metahelper::ops::kOutputAndContainerChecked, ##__VA_ARGS__)
#define MH_WRITE(...) MH_WRITE_FORM(__VA_ARGS__)
#define MH_WRITE_ARRAY(...) MH_WRITE_FORM(__VA_ARGS__)
#define MH_WRITE_BY_VALUE(...) MH_WRITE_FORM(__VA_ARGS__)
#define MH_WRITE_RECORD(...) MH_WRITE_FORM(__VA_ARGS__)
#define MH_CUSTOM(...) MH_ROW(kCustom, __VA_ARGS__)
#define MH_QUERY(slot, name, params)                                                          \
  ::metahelper::ops::MakeRow<static_cast<bool(MH_ROW_CLASS::*) params>(&MH_ROW_CLASS::name)>( \
      slot, #name, ::metahelper::ops::Skeleton::kCustom,                                      \
      ::metahelper::ops::Access{::metahelper::ops::kNoTag, ::metahelper::ops::kNoElements,    \
                                ::metahelper::ops::kNoMessages,                               \
                                ::metahelper::ops::ReadLines(::metahelper::ops::kNoLine)}),
