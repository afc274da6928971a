#include "explog/powx_kernel.h"

namespace qorvane {
namespace {

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64 value, Float64* dst, int64_t len) {
  return power::powxLoop<Pack<Lanes2, 4>>(src, value, dst, len);
}

}  // namespace

nuvStatus powxLevels1To4(const Float64* src, Float64 value, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, value, dst);
}

}  // namespace qorvane
