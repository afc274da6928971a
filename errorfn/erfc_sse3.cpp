// erfc(x), levels 1 to 4.
#include "errorfn/erfc.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

constexpr auto isFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, erfcFlaggedHighWord); };

template <class V>
INLINE V core(V x) {
  // What is flagged is taken for 0.
  const V a = andBits(magnitude(x), highWordWithin(magnitude(x), 0, erfcFlaggedHighWord));
  const auto argument = erfcArgument(a);
  const auto exponent = erfcExponent(a);
  alignas(16) int offsets[4];
  store(offsets, argument.offset);
  const Rows rows = {erfcRows, offsets};
  const V q = erfcMiddleTerms(erfcHighTerms(argument.t, rows), argument.t, rows);
  const auto power = twoColumns<V>(erfcExpTable, (lowWords(exponent.shifted) & 127) << 4);
  const auto product = erfcProduct(erfcScaled(q, argument.t, rows), erfcExpRest(exponent.r, power), power.first);
  const V scale = valueOf<V>(((bitsOf(exponent.shifted) + 1023 * 128) << 45) & 0x7ff0000000000000);
  return erfcResult(product, orBits(scale, signOf(x)), x);
}

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Pack<Lanes2, 2>, Raises::no>(
      src, dst, len, [](auto x) INLINED { return core(x); }, isFlagged,
      [](Float64 x, Float64* y) {
        const Element e = erfcSpecialLane(x);
        return *y = e.value, e.status;
      });
}

}  // namespace

nuvStatus erfcSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
