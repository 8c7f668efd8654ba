// Running the operation catalogue and describing what each operation did, and
// starting many threads at the same instant.
#pragma once

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "CatalogTestSupport.h"
#include "MetaHelperManagerImpl.h"
#include "OperationCatalog.h"

extern "C" void* GetInstance();

namespace stress {

// One line per operation: slot, name, result and the value it produced as
// the catalogue describes it. Equal outcomes mean equal behaviour.
using Outcomes = std::vector<std::string>;

enum class Pass { kReads, kWrites };

inline Outcomes RunCatalogue(metahelper::metadataHelperBase& helper, const opcatalog::CallContext& context,
                             Pass pass) {
  size_t count = 0;
  const opcatalog::Operation* operations = opcatalog::Operations(&count);
  Outcomes outcomes;
  for (size_t i = 0; i < count; ++i) {
    const opcatalog::Operation& operation = operations[i];
    if ((operation.kind == opcatalog::Kind::Setter) != (pass == Pass::kWrites)) continue;
    cattest::RecordingSink sink;
    opcatalog::CallContext call = context;
    call.sink = &sink;
    std::string line = std::to_string(operation.slot) + " " + operation.name + " -> " +
                       std::to_string(operation.call(helper, call));
    for (const std::string& value : sink.lines) line += " | " + value;
    outcomes.push_back(line);
  }
  return outcomes;
}

// Runs body(0) .. body(threads - 1) on as many threads, released together
// once all of them are running, so their first steps truly overlap.
template <typename Body>
void RunTogether(int threads, Body body) {
  std::atomic<int> arrived{0};
  std::vector<std::thread> pool;
  for (int i = 0; i < threads; ++i) {
    pool.emplace_back([&arrived, &body, threads, i] {
      arrived.fetch_add(1);
      while (arrived.load() < threads) std::this_thread::yield();
      body(i);
    });
  }
  for (std::thread& thread : pool) thread.join();
}

inline metahelper::MetaHelperManagerImpl& Manager() {
  return *static_cast<metahelper::MetaHelperManagerImpl*>(GetInstance());
}

// For the bodies of child processes: a broken expectation ends the child
// with status 1 and says why; the parent expects status 0.
inline void ExitUnless(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

}  // namespace stress
