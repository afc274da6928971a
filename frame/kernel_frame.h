// What every kernel does around its loop: check the arguments, put the floating-point control state
// in order, run the loop, restore the state. A kernel names its classes in one line:
//   nuvStatus expAvx(const Float64* src, Float64* dst, int32_t len) { return
//   runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst); }
// The loop takes the remaining arguments and the length in 64 bits, and MXCSR as it was before the
// loop if it wants it, and returns the status of the last failing element.
#pragma once
#include <immintrin.h>

#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {
namespace {

// Which of a null pointer and a length below 1 is reported when both are there.
enum class Check { pointersFirst, lengthFirst };

// What becomes of the caller's MXCSR while the loop runs. It is put back if it was changed; the
// flags that were raised meanwhile are then lost.
enum class Mode {
  none,           // rounding mode, FTZ and DAZ are the caller's
  clearMode,      // round to nearest, FTZ and DAZ off
  clearRounding,  // round to nearest, FTZ off, DAZ the caller's
  forceDown,      // FTZ and DAZ off and rounding down, up, toward zero
  forceUp,
  forceToZero,
};

// The x87 control word: the caller's, or round to nearest with significands of 64 bits or, fixDouble,
// of 53.
enum class X87 { asIs, fix, fixDouble };

constexpr uint32_t modeBits = 0xe040;  // FTZ, rounding control, DAZ
constexpr uint32_t desiredMode(Mode mode, uint32_t csr) {
  switch (mode) {
    case Mode::none: return csr;
    case Mode::clearMode: return csr & ~modeBits;
    case Mode::clearRounding: return csr & ~0xe000u;
    case Mode::forceDown: return (csr & ~modeBits) | 0x2000;
    case Mode::forceUp: return (csr & ~modeBits) | 0x4000;
    case Mode::forceToZero: return (csr & ~modeBits) | 0x6000;
  }
  return csr;
}

INLINE uint32_t readMxcsr() {
  uint32_t csr;
  asm volatile("stmxcsr %0" : "=m"(csr) : : "memory");
  return csr;
}
INLINE void writeMxcsr(uint32_t csr) { asm volatile("ldmxcsr %0" : : "m"(csr) : "memory"); }
INLINE uint16_t readX87Control() {
  uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word) : : "memory");
  return word;
}
INLINE void writeX87Control(uint16_t word) { asm volatile("fldcw %0" : : "m"(word) : "memory"); }

INLINE bool isNull(const void* p) { return p == nullptr; }
INLINE bool isNull(Float64) { return false; }  // the scalar argument of a shape
INLINE bool isNull(Complex64) { return false; }

// Arithmetic must not move across a change of the control words: a call that can't be inlined holds
// it back.
template <auto loop, class... Arguments>
[[gnu::noinline, gnu::flatten]] nuvStatus callLoop(Arguments... arguments) {
  return loop(arguments...);
}

// For a few elements in registers: compute(x), and no arithmetic but what depends on x. It can't move
// across a change of the mode, as x and the result pass through.
template <Mode mode, class V, class Compute>
INLINE V computeInMode(V x, Compute compute) {
  uint32_t saved;
  asm volatile("stmxcsr %0" : "=m"(saved) : : "memory");
  const bool isOther = desiredMode(mode, saved) != saved;
  if (isOther) [[unlikely]] {
    const uint32_t wanted = desiredMode(mode, saved);
    asm volatile("ldmxcsr %1" : "+x"(x) : "m"(wanted) : "memory");
  }
  V y = compute(x);
  if (isOther) [[unlikely]] {
    asm volatile("ldmxcsr %1" : "+x"(y) : "m"(saved) : "memory");
  }
  return y;
}

template <Check check, Mode mode, auto loop, X87 x87 = X87::asIs, class... Arguments>
INLINE nuvStatus runKernel(int32_t len, Arguments... arguments) {
  if (check == Check::lengthFirst && len < 1) [[unlikely]]
    return nuvStatusBadLength;
  if ((isNull(arguments) || ...)) [[unlikely]]
    return nuvStatusNullPointer;
  if (check == Check::pointersFirst && len < 1) [[unlikely]]
    return nuvStatusBadLength;

  uint16_t savedX87 = 0, wantedX87 = 0;
  if (x87 != X87::asIs) {
    savedX87 = readX87Control();
    wantedX87 = static_cast<uint16_t>((savedX87 & ~0x0f00) | (x87 == X87::fix ? 0x0300 : 0x0200));
    if (wantedX87 != savedX87) [[unlikely]]
      writeX87Control(wantedX87);
  }
  uint32_t savedMxcsr = 0, wantedMxcsr = 0;
  if (mode != Mode::none) {
    savedMxcsr = readMxcsr();
    wantedMxcsr = desiredMode(mode, savedMxcsr);
    if (wantedMxcsr != savedMxcsr) writeMxcsr(wantedMxcsr);
  }
  const nuvStatus status = [&]() INLINED {
    if constexpr (mode != Mode::none && requires { loop(arguments..., int64_t{}, uint32_t{}); })
      return callLoop<loop>(arguments..., int64_t{len}, wantedMxcsr);
    else
      return callLoop<loop>(arguments..., int64_t{len});
  }();
  if (x87 != X87::asIs && wantedX87 != savedX87) [[unlikely]]
    writeX87Control(savedX87);
  if (mode != Mode::none && wantedMxcsr != savedMxcsr) writeMxcsr(savedMxcsr);
  return status;
}

}  // namespace
}  // namespace qorvane
