#include "Dump.h"

#include <MetaTagWrapper.h>
#include <fnmatch.h>

#include <memory>
#include <string>
#include <vector>

#include "DumpOptions.h"
#include "DumpPrinters.h"
#include "LogSession.h"
#include "MetaHelperManagerImpl.h"
#include "MetaText.h"
#include "OperationCatalog.h"
#include "ValueTree.h"

namespace dump {
namespace {

using metahelper::MetaPtr;

struct Capture {
  MetaPtr request;
  std::vector<std::pair<unsigned int, MetaPtr>> statics;  // by camera id
};

// Reads one file; on a problem prints its one "file:line: problem" line.
MetaPtr Load(const std::string& path, std::vector<metatext::Problem>* notes, std::ostream& err) {
  auto meta = std::make_shared<NvMetadata>();
  metatext::Problem problem;
  if (metatext::ParseFile(path, meta.get(), &problem, notes)) return meta;
  err << problem.Message() << '\n';
  return nullptr;
}

// Every file is read before anything is registered or printed, so a bad
// one changes nothing. Notes are printed only when all files loaded.
bool LoadCapture(const Options& options, Capture* capture, std::ostream& err) {
  std::vector<metatext::Problem> notes;
  capture->request = Load(options.request, &notes, err);
  if (capture->request == nullptr) return false;
  for (const StaticFile& file : options.statics) {
    MetaPtr meta = Load(file.path, &notes, err);
    if (meta == nullptr) return false;
    capture->statics.emplace_back(file.cameraId, std::move(meta));
  }
  for (const metatext::Problem& note : notes) err << "note: " << note.Message() << '\n';
  return true;
}

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

// Puts the capture's static metadata in the process-wide store for the
// length of a run, and what was there before back afterwards.
class StaticRegistration {
 public:
  explicit StaticRegistration(const Capture& capture) {
    StaticMetadataWraper* store = StaticMetadataWraper::getInstance();
    for (const auto& [cameraId, meta] : capture.statics) {
      previous_.emplace_back(cameraId, store->getStaticMetadata(cameraId));
      store->setStaticMetadata(cameraId, meta);
    }
  }
  ~StaticRegistration() {
    for (auto& [cameraId, meta] : previous_)
      StaticMetadataWraper::getInstance()->setStaticMetadata(cameraId, meta);
  }
  StaticRegistration(const StaticRegistration&) = delete;
  StaticRegistration& operator=(const StaticRegistration&) = delete;

 private:
  std::vector<std::pair<unsigned int, MetaPtr>> previous_;
};

// Operations that are asked about a camera are asked about the request's
// own; the other extra arguments keep the catalogue's defaults.
opcatalog::CallContext ContextFor(metahelper::metadataHelperBase& helper, const MetaPtr& request) {
  opcatalog::CallContext context;
  context.request = request;
  int cameraId = 0;
  if (helper.GetFwkCameraId(request, &cameraId) == 0) context.cameraId = cameraId;
  return context;
}

OperationRun Run(const opcatalog::Operation& operation, metahelper::metadataHelperBase& helper,
                 opcatalog::CallContext context, LogSession& log) {
  ValueTreeSink sink;
  context.sink = &sink;
  log.Take();
  const int result = operation.call(helper, context);
  return {operation.slot, operation.name, result, sink.Result(), log.Take()};
}

std::vector<OperationRun> RunAll(const std::vector<const opcatalog::Operation*>& operations,
                                 const Capture& capture, uint32_t logLevel) {
  const StaticRegistration registration(capture);
  LogSession log(logLevel);
  auto* manager = static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
  const std::shared_ptr<metahelper::metadataHelperBase> helper = manager->GetMetadataHelper();
  const opcatalog::CallContext context = ContextFor(*helper, capture.request);
  std::vector<OperationRun> runs;
  for (const opcatalog::Operation* operation : operations)
    runs.push_back(Run(*operation, *helper, context, log));
  return runs;
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
  Capture capture;
  if (!LoadCapture(options, &capture, err)) return kBadInput;
  const std::vector<OperationRun> runs = RunAll(operations, capture, options.logLevel);
  if (options.format == Format::kJson) {
    PrintJson(runs, options.logLevel != 0, out);
  } else {
    PrintTable(runs, options.logLevel != 0, out);
  }
  return 0;
}

}  // namespace dump
