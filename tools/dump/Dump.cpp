#include "Dump.h"

#include <fnmatch.h>

#include <string>
#include <vector>

#include "DumpInput.h"
#include "DumpOptions.h"
#include "DumpPrinters.h"
#include "OperationCatalog.h"
#include "Replay.h"

namespace dump {
namespace {

bool Matches(const opcatalog::Operation& operation, const std::vector<std::string>& patterns) {
  if (patterns.empty()) return true;
  for (const std::string& pattern : patterns) {
    if (fnmatch(pattern.c_str(), operation.name, 0) == 0) return true;
  }
  return false;
}

// The getters and queries asked for; setters never run: a dump only reads.
std::vector<const opcatalog::Operation*> SelectOperations(const Options& options) {
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  std::vector<const opcatalog::Operation*> selected;
  for (size_t i = 0; i < count; ++i) {
    if (operations[i].kind != opcatalog::Kind::Setter && Matches(operations[i], options.only))
      selected.push_back(&operations[i]);
  }
  return selected;
}

// --buffer's numbers, or every request and result. False after a usage error.
bool ChooseBuffers(const Options& options, const Input& input, std::vector<NumberedBuffer>* chosen,
                   std::ostream& err) {
  const size_t count = input.buffers.size();
  for (const unsigned number : options.buffers) {
    if (number > count) {
      ReportUsageError("--buffer " + std::to_string(number) + ": the input holds " + std::to_string(count) +
                           " buffers (--list shows them)",
                       err);
      return false;
    }
    chosen->push_back(input.buffers[number - 1]);
  }
  if (!options.buffers.empty()) return true;
  for (const NumberedBuffer& numbered : input.buffers) {
    if (metatext::IsReplayedByDefault(numbered.buffer->kind)) chosen->push_back(numbered);
  }
  if (!chosen->empty()) return true;
  ReportUsageError("the input holds no request or result (--list shows its buffers, --buffer N replays one)",
                   err);
  return false;
}

void PrintRuns(const std::vector<BufferRun>& runs, const Options& options, std::ostream& out) {
  if (options.format == Format::kJson)
    PrintJson(runs, options.logLevel != 0, out);
  else
    PrintTable(runs, {options.logLevel != 0, options.tags}, out);
}

}  // namespace

int RunDump(int argc, char** argv, std::ostream& out, std::ostream& err) {
  Options options;
  const int status = ParseCommandLine(argc, argv, out, err, &options);
  if (status != kRunDump) return status;
  const std::vector<const opcatalog::Operation*> operations = SelectOperations(options);
  if (operations.empty()) {
    err << "metahelper-dump: no getter or query matches --only";
    for (const std::string& pattern : options.only) err << " '" << pattern << "'";
    err << '\n';
    return kBadInput;
  }
  VendorTagScope vendorTags;
  Input input;
  if (!LoadInput(options, vendorTags.table(), &input, err)) return kBadInput;
  std::vector<NumberedBuffer> chosen;
  if (!options.list && !ChooseBuffers(options, input, &chosen, err)) return kBadInput;
  for (const std::string& message : input.messages) err << message << '\n';
  if (options.list) {
    PrintList(input.buffers, options.format, out);
    return 0;
  }
  std::vector<BufferRun> runs;
  for (const NumberedBuffer& numbered : chosen) {
    if (numbered.buffer->meta != nullptr) runs.push_back({numbered, Replay(numbered, operations, options)});
  }
  PrintRuns(runs, options, out);
  return input.unreadable != 0 ? kSomeBuffersBad : 0;
}

}  // namespace dump
