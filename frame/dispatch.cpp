// The load hook, and what it sets.
#include "frame/dispatch.h"

#include <omp.h>

#include "frame/detection.h"

int32_t DispatchLevel = 0;

namespace qorvane {

uint64_t ProcessorFeatures = 7;

namespace {
int32_t threadCount = 1;
}

void setDefaultThreads(int32_t processors, int32_t maxThreads) {
  nuvSetNumThreads(processors < maxThreads ? processors : maxThreads);
}

namespace {

[[gnu::constructor]] void loadHook() {
  setDefaultThreads(omp_get_num_procs(), omp_get_max_threads());
  uint64_t features = 0;
  queryProcessorFeatures(&features, nullptr);
  const LevelChoice choice = chooseLevel(features);
  DispatchLevel = choice.level;
  ProcessorFeatures = choice.kept;
}

}  // namespace
}  // namespace qorvane

nuvStatus nuvSetNumThreads(int32_t count) {
  if (count < 1) return nuvStatusBadLength;
  qorvane::threadCount = count;
  return nuvStatusOk;
}

nuvStatus nuvGetNumThreads(int32_t* count) {
  if (count == nullptr) return nuvStatusNullPointer;
  *count = qorvane::threadCount;
  return nuvStatusOk;
}
