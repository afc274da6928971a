#include "tools/references.h"

#include <cmath>

#include "tools/hard_trig_arguments.h"
#include "tools/inverse_erf.h"
#include "tools/ranges.h"

namespace accuracy {
namespace {

constexpr Reference references[] = {
#include "tools/all/references.inc"
};

}  // namespace

const Reference* findReference(std::string_view stem) {
  for (const Reference& reference : references)
    if (reference.stem == stem) return &reference;
  return nullptr;
}

void provideHardArguments() {
  static const std::vector<double> all = tables::hardTrigArguments();
  hardArguments = all;
}

}  // namespace accuracy
