// The forms of an operation table's rows as definitions of the operations.
// Define MH_BODY_CLASS (the helper class), MH_BODY_ROW(slot) (its row) and
// kSourceFile (the file the operations report from), then include this
// header and the table; MH_CUSTOM and MH_QUERY rows are defined by hand.
#include "OpSkeletons.h"

#include "FormsReset.h"

#define MH_BODY(slot, name, params, ...)                                     \
  int MH_BODY_CLASS::name params {                                           \
    static constexpr const ::metahelper::ops::Row& kRow = MH_BODY_ROW(slot); \
    return ::metahelper::ops::__VA_ARGS__;                                   \
  }

#define MH_READ(slot, name, params, ...) \
  MH_BODY(slot, name, params, ReadCopy(*this, MH_SITE, kRow, meta, out))
#define MH_CONVERT(slot, name, params, tag, elements, convert, ...) \
  MH_BODY(slot, name, params, ReadConverted<(elements).type>(*this, MH_SITE, kRow, meta, out, convert))
#define MH_READ_WITH(slot, name, params, tag, elements, store, ...) \
  MH_BODY(slot, name, params, ReadWith(*this, MH_SITE, kRow, meta, out, store))
#define MH_STATIC(slot, name, params, ...) \
  MH_BODY(slot, name, params, ReadStaticCopy(*this, MH_SITE, kRow, std::move(meta), out))
#define MH_UNSUPPORTED(slot, name, params, line) MH_BODY(slot, name, params, NotSupported(MH_SITE, kRow, out))
#define MH_UNSUPPORTED_RECORD(slot, name, params, line) \
  MH_BODY(slot, name, params, NotSupported(MH_SITE, kRow, record, meta))
#define MH_STUB(slot, name, params) \
  int MH_BODY_CLASS::name params { return ::metahelper::ops::kStub; }
#define MH_WRITE(slot, name, params, ...) \
  MH_BODY(slot, name, params, Write(*this, MH_SITE, kRow, std::move(meta), value, 1))
#define MH_WRITE_ARRAY(slot, name, params, ...) \
  MH_BODY(slot, name, params,                   \
          Write(*this, MH_SITE, kRow, std::move(meta), values, static_cast<uint32_t>(count)))
#define MH_WRITE_BY_VALUE(slot, name, params, ...) \
  MH_BODY(slot, name, params, Write(*this, MH_SITE, kRow, std::move(meta), &value, 1))
#define MH_WRITE_RECORD(slot, name, params, ...) \
  MH_BODY(slot, name, params, Write<void>(*this, MH_SITE, kRow, std::move(meta), record, sizeof(*record)))
#define MH_CUSTOM(...)
#define MH_QUERY(...)
