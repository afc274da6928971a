// x^y with one exponent for all elements, for every level.
#pragma once
#include "explog/pow_core.h"
#include "explog/pow_loop.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

namespace power {

template <class V>
[[gnu::always_inline]] inline Marked<V> fixedPower(const Float64* xs, const Float64* ys) {
  const V x = load<V>(xs);
  const auto [high, low, a] = log2<Program::longer>(x);
  const auto p = product(high, low, splitExponent(*ys));
  const auto pw = highWords(p.p);
  const auto marks = (0x200000 > (highWords(x) + 0x100000)) | ((pw > 0x408ff7f7) | ((pw ^ int(0x80000000)) > 0x408e1ff7));
  return {exp2<Program::longer>(p.shifted, p.r), marks};
}

template <class V>
[[gnu::always_inline]] inline nuvStatus powxLoop(const Float64* src, Float64 value, Float64* dst, int64_t len) {
  if (value == 2.0) {
    for (int64_t i = 0; i < len; ++i) dst[i] = src[i] * src[i];
    return nuvStatusOk;
  }
  if (value == 0 || !(__builtin_fabs(value) < __builtin_inf())) {
    nuvStatus status = nuvStatusOk;
    for (int64_t i = 0; i < len; ++i) takeStatus<Raises::yes>(status, powFixLane(src[i], value, dst + i));
    return status;
  }
  return powerLoop<V, Repair::groupsOf4, Exponents::same, fixedPower<V>>(src, &value, dst, len, powFixLane);
}

}  // namespace power
}  // namespace
}  // namespace qorvane
