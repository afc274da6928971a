// Bit patterns of double-precision numbers. Everything here has internal linkage: the header is
// also compiled into the sources of the processor levels.
#pragma once
#include <cstdint>

// For functions and, behind their parameters, for lambdas: a kernel is compiled as one body,
// whatever it is made of.
#define INLINE [[gnu::always_inline]] inline
#define INLINED __attribute__((always_inline))

namespace qorvane {

using Float64 = double;

// The number with the given bit pattern. The constants of the kernels are written with it.
INLINE static constexpr Float64 fromBits(uint64_t pattern) { return __builtin_bit_cast(Float64, pattern); }
INLINE static constexpr uint64_t toBits(Float64 x) { return __builtin_bit_cast(uint64_t, x); }
INLINE static constexpr uint32_t highWord(Float64 x) { return static_cast<uint32_t>(toBits(x) >> 32); }

// The same value, but the compiler can't know it: an operation on it is made at run time and raises
// its flags.
INLINE static Float64 opaque(Float64 x) {
  asm volatile("" : "+x"(x));
  return x;
}

}  // namespace qorvane
