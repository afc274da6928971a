// x^y, level 5.
#include "explog/pow_core.h"
#include "explog/pow_loop.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

using namespace power;

#ifndef PK
#define PK 2
#endif
using Block = Pack<Lanes4, PK>;

constexpr auto fast = [](const Float64* xs, const Float64* ys) __attribute__((always_inline)) -> Marked<Block> {
  const Block x = load<Block>(xs);
  const auto [high, low, a] = log2<Program::shorter>(x);
  const auto y = splitExponent(load<Block>(ys));
  const auto p = product(high, low, y);
  const auto marks = ((0x200000 > (highWords(x) + 0x100000)) | ((highWords(p.p) & 0x7fffffff) > 0x408feffe)) | ((highWords(y.all) & 0x7fffffff) > 0x7f7fffff);
  return {exp2<Program::shorter>(p.shifted, p.r), marks};
};

[[gnu::noinline]] nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  return powerLoop<Block, Repair::elements, Exponents::each, fast>(srcA, srcB, dst, len, powSpecialLane);
}

}  // namespace

nuvStatus powLevel5(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
