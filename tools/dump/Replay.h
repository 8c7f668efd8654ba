// One buffer through the helper: its camera's static characteristics
// registered for the length of the replay, and every chosen operation called
// with the capture's own context.
#pragma once

#include <vector>

#include "DumpInput.h"
#include "DumpOptions.h"
#include "DumpPrinters.h"
#include "OperationCatalog.h"

namespace dump {

// The buffer must have read. Registers its file's static characteristics
// with the process-wide static metadata store and puts back what was there
// afterwards; takes the library's log settings over for as long.
std::vector<OperationRun> Replay(const NumberedBuffer& buffer,
                                 const std::vector<const opcatalog::Operation*>& operations,
                                 const Options& options);

}  // namespace dump
