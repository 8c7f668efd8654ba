// Forgets what the forms of an operation table's rows meant, so that a
// header can give them another meaning.
#undef MH_ROW
#undef MH_READ
#undef MH_CONVERT
#undef MH_READ_WITH
#undef MH_STATIC
#undef MH_UNSUPPORTED
#undef MH_UNSUPPORTED_RECORD
#undef MH_STUB
#undef MH_WRITE
#undef MH_WRITE_ARRAY
#undef MH_WRITE_BY_VALUE
#undef MH_WRITE_RECORD
#undef MH_CUSTOM
#undef MH_QUERY
