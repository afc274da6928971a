// x^y, levels 1 to 4.
#include "explog/pow_core.h"
#include "explog/pow_loop.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

using namespace power;

using Block = Pack<Lanes2, 4>;

constexpr auto fast = [](const Float64* xs, const Float64* ys) __attribute__((always_inline)) -> Marked<Block> {
  const Block x = load<Block>(xs);
  const auto [high, low, a] = log2<Program::longer>(x);
  const auto y = splitExponent(load<Block>(ys));
  const auto p = product(high, low, y);
  const auto pw = highWords(p.p);
  const auto marks =
      ((0x200000 > (highWords(x) + 0x100000)) | (1 > (highWords(y.all) & 0x7fffffff))) | ((pw > 0x408ff7f7) | ((pw ^ int(0x80000000)) > 0x408e1ff7));
  return {exp2<Program::longer>(p.shifted, p.r), marks};
};

[[gnu::noinline]] nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  return powerLoop<Block, Repair::groupsOf4, Exponents::each, fast>(srcA, srcB, dst, len, powFixLane);
}

}  // namespace

nuvStatus powLevels1To4(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
