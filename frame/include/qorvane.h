/* Tarnwell.Qorvane: vector elementary functions in double precision.

   A function takes arrays of numbers and a count, evaluates every element and returns a status:

     double x[3] = {0.0, 1.0, 1000.0}, y[3];
     nuvStatus status = nuvsExp_64f_A53(x, y, 3);   y = 1, 2.718..., Inf; status = nuvStatusOverflow

   Shapes. Arrays are contiguous, with unit stride and any alignment. `len` counts elements; a
   complex element is a pair of numbers, real part first. The complex functions have the shapes of
   the real ones.
     unary    (src, dst, len)             dst[i] = f(src[i])
     binary   (srcA, srcB, dst, len)      dst[i] = f(srcA[i], srcB[i])
     scalar   (src, value, dst, len)      dst[i] = f(src[i], value)
     split    (src, dstA, dstB, len)      dstA[i] and dstB[i] from src[i]
   The ending _A53 promises results good to about all 53 bits of a double: each function states its
   largest error, less than one unit in the last place for most. Functions without it are exact.
   Every function has a twin with the ending _Idx, which takes an offset beside each array, in
   elements, negative ones included, and otherwise is the same.

   In place. A destination may be the very array of a source. Arrays that overlap in any other way
   are not supported. nuvsInv_64f_A53 and nuvsDiv_64f_A53 have an exception, told there.

   Status. Negative: an argument of the call is bad, and nothing has been written. Positive: every
   element has been computed and stored, and at least one of them failed; it is the status of the
   failing element of highest index. Each function tells which statuses its elements have, and what
   a failing one gets as its result. The complex functions' elements have none.

   An element's result depends on its arguments alone: not on its neighbours, its place in the array
   or the array's alignment. The functions marked "by blocks" are the exception: there an argument
   outside the fast range (said at the function) sends its block of neighbours another way too, or
   neighbours share an operation, and a result may, rarely, differ in the last bit, or in the sign of
   a zero, from the same one beside other arguments. They are nuvsPowx_64f_A53, nuvsSin_64f_A53,
   nuvsCos_64f_A53, nuvsSinCos_64f_A53, nuvsTan_64f_A53 and nuvsAtanh_64f_A53, and at levels 1 to 4
   nuvsPow_64f_A53, nuvsAtan2_64f_A53 and nuvsSinh_64f_A53. Results may also differ in the last bit
   between the processor levels (1: SSE3, 2: SSSE3, 3: SSSE3 with MOVBE, 4: SSE4.1, 5: AVX), of which
   the library chooses one when it is loaded.

   Floating-point environment. Accuracy and special values are given for rounding to nearest with
   FTZ and DAZ off. The functions marked "own modes" put these modes in force and restore the
   caller's (sticky flags raised meanwhile are then lost); the functions marked "caller's modes"
   inherit them; the others say what they do. Exception masks are left alone. "Raises" names the
   statuses whose IEEE flag the function sets.

   Accuracies are the largest errors found by measurement with seeded searches, in units in the last
   place of the exact result, for complex functions of either part; docs/accuracy.md has the ranges
   and the worst arguments.

   Threads. All functions may run on any number of threads at once. The library starts
   none itself. */
#ifndef TARNWELL_QORVANE_H
#define TARNWELL_QORVANE_H

#include <stdint.h>

#define QORVANE_VERSION_MAJOR 1
#define QORVANE_VERSION_MINOR 0
#define QORVANE_VERSION_PATCH 0

#ifdef __cplusplus
extern "C" {
#endif

#define QORVANE_API __attribute__((visibility("default")))

typedef double Float64;

/* A complex number: real part first, no alignment beyond that of its parts needed. */
typedef struct Complex64 {
  Float64 re, im;
} Complex64;

/* What a call returns: one of the named values. */
typedef int32_t nuvStatus;
enum {
  nuvStatusOk = 0,
  nuvStatusBadLength = -6,   /* a length, or a thread count, below 1 */
  nuvStatusNullPointer = -8, /* a required pointer is null */
  nuvStatusOverflow = 12,    /* a finite argument gave a result too large for a double */
  nuvStatusUnderflow = 17,   /* a result became subnormal or zero */
  nuvStatusPole = 18,        /* an infinite result, exactly, from a finite argument */
  nuvStatusOutOfDomain = 19  /* the argument lies outside the function's domain: the result is a NaN */
};

/* What a status means, in words. */
static inline const char* nuvStatusText(nuvStatus status) {
  switch (status) {
    case nuvStatusOk: return "success";
    case nuvStatusBadLength: return "a length, or a thread count, is below 1";
    case nuvStatusNullPointer: return "a required pointer is null";
    case nuvStatusOverflow: return "a result is too large for a double";
    case nuvStatusUnderflow: return "a result became subnormal or zero";
    case nuvStatusPole: return "an infinite result, exactly, from a finite argument";
    case nuvStatusOutOfDomain: return "an argument lies outside the function's domain";
    default: return "no status of this library";
  }
}

/* The thread count: at load the smaller of the OpenMP runtime's processors and its most threads. It
   is kept for callers and has no effect on any function. A null `count` gives nuvStatusNullPointer;
   a count below 1 gives nuvStatusBadLength and changes nothing.
   Several threads work on one array in pieces of 2^14 elements, a multiple of every block, with the
   bits and the status of a single call (count at least 1, pointers not null):
     int64_t last = 0;
     #pragma omp parallel for reduction(max : last)
     for (int64_t i = 0; i < count; i += 1 << 14) {
       nuvStatus s = nuvsExp_64f_A53(x + i, y + i, (int32_t)(count - i < 1 << 14 ? count - i : 1 << 14));
       if (s != nuvStatusOk && i + s > last) last = i + s;
     }
     nuvStatus status = (nuvStatus)(last % (1 << 14)); */
QORVANE_API nuvStatus nuvGetNumThreads(int32_t* count);
QORVANE_API nuvStatus nuvSetNumThreads(int32_t count);

/* ---- Exponentials, logarithms and powers ----------------------------------------------------- */

/* dst[i] = e to the power src[i].
   Results: above 709.78271289338397 +Inf, nuvStatusOverflow; from -708.3964185322642 down a
   subnormal number or +0, nuvStatusUnderflow. exp(+Inf) = +Inf, exp(-Inf) = +0. A NaN gives a NaN:
   all bits set at levels 1 to 4, the argument quieted at level 5.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: all statuses at level 5, none by
   itself at levels 1 to 4.
   Accuracy: largest error found 0.530 (levels 1 to 4), 0.528 (level 5) ulp; subnormal results:
   0.760 (levels 1 to 4), 0.507 (level 5). */
QORVANE_API nuvStatus nuvsExp_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsExp_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsExp_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* dst[i] = the natural logarithm of src[i]; ln 1 = +0 exactly.
   Results: ±0 gives -Inf, nuvStatusPole; a negative number, -Inf included, gives the default NaN,
   nuvStatusOutOfDomain; +Inf gives +Inf; a NaN gives itself, at level 5 quieted. Subnormal numbers
   are arguments like any other.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: all statuses at level 5, none by
   itself at levels 1 to 4.
   Accuracy: largest error found 0.583 (levels 1 to 4), 0.746 (level 5) ulp; subnormal arguments:
   0.554 (levels 1 to 4), 1.499 (level 5). */
QORVANE_API nuvStatus nuvsLn_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsLn_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsLn_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                         int32_t len);

/* dst[i] = the common logarithm of src[i]; exact for 10^0 to 10^22.
   Results: ±0 gives -Inf, nuvStatusPole; a negative number, -Inf included, gives the default NaN,
   nuvStatusOutOfDomain; +Inf gives +Inf; a NaN gives itself, at level 5 quieted. Subnormal numbers
   are arguments like any other.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: all statuses at level 5, none by
   itself at levels 1 to 4.
   Accuracy: largest error found 0.586 (levels 1 to 4), 0.513 (level 5) ulp; subnormal arguments:
   0.525 (levels 1 to 4), 1.000 (level 5). */
QORVANE_API nuvStatus nuvsLog10_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsLog10_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsLog10_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = srcA[i] to the power srcB[i].
   Results: any base to the power ±0, and 1 to any power, is 1.0, with NaNs too; other NaNs give
   NaNs. A negative base with a finite exponent that isn't an integer gives the default NaN,
   nuvStatusOutOfDomain. A base ±0 with a negative exponent (-Inf included) gives an infinity, with
   the base's sign for odd exponents, and nuvStatusOutOfDomain. -1 to the power ±Inf is 1.0.
   Overflow and underflow give ±Inf, ±0 or the subnormal result, without a status.
   By blocks of 4 at levels 1 to 4: bases that aren't positive, normal and finite, exponents below 2^-1042, infinite
   or NaN, results near or outside the normal range.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 0.514 ulp; base near 1: 1.169 (levels 1 to 4), 1.228 (level 5);
   base 2^-11 from 1, |y log2 x| near 1000: 1.213 (levels 1 to 4), 1.230 (level 5); subnormal
   results: 0.526 (levels 1 to 4), 0.504 (level 5); results below 2^-1070: 1.000 (levels 1 to 4),
   0.501 (level 5). */
QORVANE_API nuvStatus nuvsPow_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
/* nuvsPow_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsPow_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB,
                                          int32_t srcBOffset, Float64* dst, int32_t dstOffset, int32_t len);

/* dst[i] = src[i] to the power value. Exponent 2.0 gives src[i] * src[i], rounded once.
   Results: any base to the power ±0, and 1 to any power, is 1.0, with NaNs too; other NaNs give
   NaNs. A negative base with a finite exponent that isn't an integer gives the default NaN,
   nuvStatusOutOfDomain. A base ±0 with a negative exponent (-Inf included) gives an infinity, with
   the base's sign for odd exponents, and nuvStatusOutOfDomain. -1 to the power ±Inf is 1.0.
   Overflow and underflow give ±Inf, ±0 or the subnormal result, without a status.
   By blocks of 4, as nuvsPow_64f_A53 at levels 1 to 4, at every level.
   Own modes. Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 0.514 ulp; base near 1: 1.142; base 2^-11 from 1, |y log2 x| near
   1000: 1.205; subnormal results: 0.528; results below 2^-1070: 1.000. */
QORVANE_API nuvStatus nuvsPowx_64f_A53(const Float64* src, Float64 value, Float64* dst, int32_t len);
/* nuvsPowx_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsPowx_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64 value, Float64* dst,
                                           int32_t dstOffset, int32_t len);

/* ---- Division and roots ---------------------------------------------------------------------- */

/* dst[i] = 1 / src[i], correctly rounded in the rounding mode in force.
   Results: ±0 gives ±Inf, nuvStatusPole; ±Inf gives ±0; overflow and underflow have no status. A
   caller's DAZ makes a subnormal argument zero for the quotient; only level 5 reports it as a pole.
   In place, at levels 1 to 4, whole blocks are tested for poles after their quotients are stored:
   the results are right, but the pole of a zero goes unreported there, and an infinity, whose
   quotient is zero, reports one. Use another destination where the status matters.
   Round to nearest with FTZ off, DAZ the caller's, at levels 1 to 4; the caller's modes at level 5.
   Raises: nuvStatusPole.
   Accuracy: largest error found 0.500 ulp. */
QORVANE_API nuvStatus nuvsInv_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsInv_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsInv_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* dst[i] = srcA[i] / srcB[i], correctly rounded in the rounding mode in force.
   Results: a divisor ±0 gives the quotient, ±Inf or (for 0 / 0) the default NaN, and nuvStatusPole;
   where the dividend is an infinity or a NaN only level 5 reports it. Overflow, underflow and Inf /
   Inf have no status. A caller's DAZ makes a subnormal divisor zero for the quotient; it is
   reported as a pole at level 5, and at levels 1 to 4 only in the last element of an odd length.
   In place, at levels 1 to 4, whole blocks are tested for poles after their quotients are stored:
   with dst = srcB a zero quotient reports a pole and a zero divisor none; with dst = srcA they
   report no pole. The last element of an odd length reports rightly, and the results are right.
   Round to nearest with FTZ off, DAZ the caller's, at levels 1 to 4; the caller's modes at level 5.
   Raises: nuvStatusPole.
   Accuracy: largest error found 0.500 ulp. */
QORVANE_API nuvStatus nuvsDiv_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
/* nuvsDiv_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsDiv_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB,
                                          int32_t srcBOffset, Float64* dst, int32_t dstOffset, int32_t len);

/* dst[i] = the square root of src[i]; exact for perfect squares.
   Results: ±0 gives itself; a negative number, -Inf included, gives the default NaN,
   nuvStatusOutOfDomain; +Inf gives +Inf; a NaN gives itself, quieted.
   Own modes at levels 1 to 4, the caller's at level 5. With FTZ or DAZ in force at level 5 the
   results of arguments from 2^1022 up are wrong, and DAZ makes subnormal arguments count as zero:
   clear these modes around the call. Raises: nuvStatusOutOfDomain at level 5, none by itself at
   levels 1 to 4.
   Accuracy: largest error found 0.501 (levels 1 to 3), 0.500 (level 4), 0.530 (level 5) ulp;
   subnormal arguments: 0.750 (levels 1 to 3), 0.500 (levels 4 to 5). */
QORVANE_API nuvStatus nuvsSqrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsSqrt_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSqrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = 1 / the square root of src[i].
   Results: ±0 gives ±Inf, nuvStatusPole; a negative number, -Inf included, gives the default NaN,
   nuvStatusOutOfDomain; +Inf gives +0; a NaN gives itself, quieted.
   Own modes. Raises: none by itself.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsInvSqrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsInvSqrt_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsInvSqrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                              int32_t len);

/* dst[i] = the cube root of src[i], with its sign; exact for perfect cubes. No element fails: ±0
   and ±Inf give themselves, a NaN itself, quieted.
   Own modes.
   Accuracy: largest error found 0.521 ulp. */
QORVANE_API nuvStatus nuvsCbrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsCbrt_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCbrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = 1 / the cube root of src[i], with its sign.
   Results: ±0 gives ±Inf, nuvStatusPole; ±Inf gives ±0; a NaN gives itself, quieted.
   Own modes. Raises: none by itself.
   Accuracy: largest error found 0.551 ulp. */
QORVANE_API nuvStatus nuvsInvCbrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsInvCbrt_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsInvCbrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                              int32_t len);

/* ---- Trigonometric functions: radians, the whole range of finite numbers --------------------- */

/* dst[i] = the sine of src[i].
   Results: ±Inf gives the default NaN, nuvStatusOutOfDomain; a NaN gives itself, quieted. The sine
   of -0 is -0 at level 5 and +0 at levels 1 to 4.
   By blocks of 4 at levels 1 to 4 (magnitudes from 90112 up, infinities, NaNs; beside them the sine
   of -0 is -0) and of 8 at level 5 (magnitudes above 65536, infinities).
   Own modes at levels 1 to 4, the caller's at level 5, where directed rounding costs relative
   accuracy near zeros (errors stay below 2^-52). Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 0.520 (levels 1 to 4), 0.505 (level 5) ulp; near 2^17: 0.534
   (levels 1 to 4), 0.503 (level 5); near 2^17 and multiples of pi/4: 0.533 (levels 1 to 4), 0.503
   (level 5). */
QORVANE_API nuvStatus nuvsSin_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsSin_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSin_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* dst[i] = the cosine of src[i].
   Results: ±Inf gives the default NaN, nuvStatusOutOfDomain; a NaN gives itself, quieted.
   By blocks of 4 at levels 1 to 4 (magnitudes from 90112 up, infinities, NaNs) and of 8 at level 5
   (magnitudes above 65536, infinities).
   Own modes at levels 1 to 4, the caller's at level 5, where directed rounding costs relative
   accuracy near zeros (errors stay below 2^-52). Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 0.519 (levels 1 to 4), 0.505 (level 5) ulp; near 2^17: 0.534
   (levels 1 to 4), 0.503 (level 5); near 2^17 and multiples of pi/4: 0.602 (levels 1 to 4), 0.503
   (level 5). */
QORVANE_API nuvStatus nuvsCos_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsCos_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* dstA[i] = the sine and dstB[i] = the cosine of src[i]. The last bit may differ from that of the
   single functions.
   Results, in both arrays: ±Inf gives the default NaN, nuvStatusOutOfDomain; a NaN gives itself,
   quieted. The sine of -0 is +0.
   By blocks of 4 at levels 1 to 4 (magnitudes from 90112 up, infinities, NaNs; beside them the sine
   of -0 is -0) and of 8 at level 5 (magnitudes above 65536, infinities). At level 5 the sine of the
   last len mod 8 elements may differ in the last bit from that of an element in a block.
   Own modes at levels 1 to 4, the caller's at level 5, where directed rounding costs relative
   accuracy near zeros (errors stay below 2^-52). Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 0.552 (levels 1 to 4), 0.504 (level 5) ulp; near 2^17 and multiples
   of pi/4: 0.602 (levels 1 to 4), 0.503 (level 5). */
QORVANE_API nuvStatus nuvsSinCos_64f_A53(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
/* nuvsSinCos_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSinCos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dstA, int32_t dstAOffset,
                                             Float64* dstB, int32_t dstBOffset, int32_t len);

/* dst[i] = the tangent of src[i]. tan(±0) = ±0; no finite double is a pole.
   Results: ±Inf gives the default NaN, nuvStatusOutOfDomain; a NaN gives itself, quieted.
   By blocks: pairs of elements share a division, from an argument of 128000 or more, an infinity or
   a NaN on up to the next multiple of 64 elements they don't; a result may differ in the last bit
   between the two, about one in three thousand.
   Round to nearest with FTZ off, DAZ the caller's, and x87 arithmetic with 64-bit significands; the
   caller's control words come back. Raises: nuvStatusOutOfDomain.
   Accuracy: largest error found 1.007 ulp. */
QORVANE_API nuvStatus nuvsTan_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsTan_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsTan_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* ---- Inverse trigonometric functions --------------------------------------------------------- */

/* dst[i] = the arc sine of src[i], in radians, from -pi/2 to pi/2; asin(±0) = ±0.
   Results: a magnitude above 1, ±Inf included, gives the default NaN, nuvStatusOutOfDomain; a NaN
   gives itself, quieted, at level 5 perhaps without its payload's low bits.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: nuvStatusOutOfDomain at level 5, none
   by itself at levels 1 to 4.
   Accuracy: largest error found 0.860 (levels 1 to 4), 0.900 (level 5) ulp. */
QORVANE_API nuvStatus nuvsAsin_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAsin_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAsin_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the arc cosine of src[i], in radians, from 0 to pi; acos(1) = +0.
   Results: a magnitude above 1, ±Inf included, gives the default NaN, nuvStatusOutOfDomain; a NaN
   gives a quiet NaN, which at levels 1 to 4 is itself with the other sign.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: nuvStatusOutOfDomain at level 5, none
   by itself at levels 1 to 4.
   Accuracy: largest error found 0.780 (levels 1 to 4), 0.852 (level 5) ulp. */
QORVANE_API nuvStatus nuvsAcos_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAcos_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAcos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the arc tangent of src[i], in radians, from -pi/2 to pi/2. No element fails: ±Inf gives
   ±pi/2, ±0 itself, a NaN itself, quieted. Subnormal numbers are arguments like any other.
   Own modes at levels 1 to 4, the caller's at level 5.
   Accuracy: largest error found 0.857 (levels 1 to 4), 0.687 (level 5) ulp. */
QORVANE_API nuvStatus nuvsAtan_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAtan_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAtan_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the angle of the point (srcB[i], srcA[i]), in radians from -pi to pi: atan2(y, x) with y
   = srcA[i], x = srcB[i].
   Results: the sign is that of y; y = ±0 gives ±0 for an x without sign bit and ±pi for one with
   it, +0 and -0 included; ±pi/2 for x = ±0 with y not 0; multiples of pi/4 where both are infinite;
   a NaN in either gives a NaN. No element fails.
   By blocks of 4 at levels 1 to 4: magnitudes below 2^-1020, zeros included, or from 2^993 up,
   infinities, NaNs.
   Own modes at levels 1 to 4, the caller's at level 5.
   Accuracy: largest error found 0.747 ulp; all magnitudes: 2.000; subnormal results: 2.000. */
QORVANE_API nuvStatus nuvsAtan2_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
/* nuvsAtan2_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAtan2_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB,
                                            int32_t srcBOffset, Float64* dst, int32_t dstOffset, int32_t len);

/* ---- Hyperbolic functions -------------------------------------------------------------------- */

/* dst[i] = the hyperbolic sine of src[i]; sinh(±0) = ±0, and a subnormal number gives itself.
   Results: from 710.475860073944 up in magnitude ±Inf, nuvStatusOverflow; infinities give
   themselves; a NaN gives the NaN of all ones at levels 1 to 4, itself, quieted, at level 5.
   By blocks at levels 1 to 4, in pairs within each four elements: an element below 1/28 in magnitude
   beside one that isn't may differ in the last bit from the same one beside another small one, or
   alone.
   Own modes at levels 1 to 4, the caller's at level 5, where directed rounding costs accuracy (up
   to 711 ulp; rounding up adds up to 3.4e-22 to small results too). Raises: nuvStatusOverflow at
   level 5, none by itself at levels 1 to 4.
   Accuracy: largest error found 1.520 (levels 1 to 4), 1.000 (level 5) ulp. */
QORVANE_API nuvStatus nuvsSinh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsSinh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSinh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the hyperbolic cosine of src[i]; cosh(±0) = 1.
   Results: from 710.475860073944 up in magnitude +Inf, nuvStatusOverflow; infinities give +Inf; a
   NaN gives the NaN of all ones at levels 1 to 4, itself, quieted, at level 5.
   Own modes at levels 1 to 4, the caller's at level 5. Raises: nuvStatusOverflow at level 5, none by
   itself at levels 1 to 4.
   Accuracy: largest error found 0.757 (levels 1 to 4), 0.751 (level 5) ulp. */
QORVANE_API nuvStatus nuvsCosh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsCosh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCosh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the hyperbolic tangent of src[i]. No element fails: ±0 and subnormal numbers give
   themselves, magnitudes from 20 up, ±Inf included, ±1 exactly, a NaN itself, as it is.
   Own modes.
   Accuracy: largest error found 0.755 ulp. */
QORVANE_API nuvStatus nuvsTanh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsTanh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsTanh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the inverse hyperbolic sine of src[i]. No element fails: ±0 and ±Inf give themselves, a
   NaN gives itself, quieted.
   Own modes; at level 1 x87 arithmetic with 64-bit significands, and the caller's control word comes
   back.
   Accuracy: largest error found 0.750 (level 1), 0.515 (levels 2 to 5) ulp; around 2^-9: 0.862
   (level 1), 0.510 (levels 2 to 5); small arguments: 0.862 (level 1), 0.516 (levels 2 to 5); all
   arguments: 0.862 (level 1), 0.515 (levels 2 to 5). */
QORVANE_API nuvStatus nuvsAsinh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAsinh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAsinh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the inverse hyperbolic cosine of src[i]; acosh(1) = +0.
   Results: x below 1, -Inf included, gives the default NaN, at level 1 0x7fffffffffffffff,
   nuvStatusOutOfDomain; +Inf gives +Inf; a NaN gives itself, quieted, but one with a sign gives
   0x7fffffffffffffff at level 1.
   Own modes; at level 1 x87 arithmetic with 64-bit significands, and the caller's control word comes
   back. Raises: nuvStatusOutOfDomain at levels 2 to 5, none by itself at level 1.
   Accuracy: largest error found 0.510 ulp; near 1: 0.763 (level 1), 0.512 (levels 2 to 5); next to
   1: 0.763 (level 1), 0.510 (levels 2 to 5). */
QORVANE_API nuvStatus nuvsAcosh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAcosh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAcosh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the inverse hyperbolic tangent of src[i]; atanh(±0) = ±0.
   Results: ±1 gives ±Inf, nuvStatusPole; |x| above 1, ±Inf included, gives 0x7fffffffffffffff with
   the sign of x, nuvStatusOutOfDomain; a NaN the same without a status.
   By blocks, the elements 2i and 2i + 1: both from 2^-8 up to 1 in magnitude, they share a division;
   a result may differ in the last bit, about one in 900, from that beside another partner or without
   one.
   Own modes, and x87 arithmetic with 64-bit significands; the caller's control words come back.
   Raises: none by itself.
   Accuracy: largest error found 0.697 ulp. */
QORVANE_API nuvStatus nuvsAtanh_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsAtanh_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAtanh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

/* ---- Error functions ------------------------------------------------------------------------- */

/* dst[i] = the error function of src[i]. No element fails: ±0 gives itself, |x| from 6 up, ±Inf
   included, gives ±1, a NaN itself, quieted.
   Own modes at levels 1 to 4, the caller's at level 5.
   Accuracy: largest error found 0.639 ulp; 4 to 4.5: 0.797. */
QORVANE_API nuvStatus nuvsErf_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsErf_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsErf_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

/* dst[i] = the inverse error function of src[i]; erfinv(±0) = ±0.
   Results: ±1 gives ±Inf, nuvStatusPole; |x| above 1, ±Inf included, gives the default NaN,
   nuvStatusOutOfDomain; a NaN gives itself, quieted.
   The caller's modes. Raises: both statuses.
   Accuracy: largest error found 0.505 ulp. */
QORVANE_API nuvStatus nuvsErfInv_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsErfInv_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsErfInv_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                             int32_t len);

/* dst[i] = the complementary error function of src[i]; erfc(±0) = 1.
   Results: finite arguments above 27.226017111108362 give nuvStatusUnderflow and +0 (subnormal
   results, from about 26.54 up, have no status); +Inf gives +0, -Inf gives 2. A NaN gives itself,
   quieted; but one whose 20 highest significand bits are clear, which only signalling ones can have,
   counts as the infinity of its sign, and gives +0 or 2.
   Own modes. Raises: none by itself.
   Accuracy: largest error found 0.630 ulp; 26.46 to 26.54: 0.775; subnormal results: 0.762. */
QORVANE_API nuvStatus nuvsErfc_64f_A53(const Float64* src, Float64* dst, int32_t len);
/* nuvsErfc_64f_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsErfc_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                           int32_t len);

/* ---- Rounding functions: exact, no element fails; ±Inf gives itself, a NaN itself, quieted --- */

/* dst[i] = the largest integral number that is not above src[i]. Zeros and results of zero keep the
   argument's sign.
   The caller's rounding mode doesn't matter; DAZ, at level 5, makes subnormal arguments zero. At
   levels 1 to 4 flags raised inside are gone at exit where the caller's mode was another.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsFloor_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsFloor_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsFloor_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                        int32_t len);

/* dst[i] = the smallest integral number that is not below src[i]. Results of zero keep the
   argument's sign.
   The caller's rounding mode doesn't matter; DAZ, at level 5, makes subnormal arguments zero. At
   levels 1 to 4 flags raised inside are gone at exit where the caller's mode was another.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsCeil_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsCeil_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCeil_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                       int32_t len);

/* dst[i] = the integral number next to src[i] toward zero. Results of zero keep the argument's
   sign.
   The caller's rounding mode doesn't matter; DAZ, at level 5, makes subnormal arguments zero. At
   levels 1 to 4 flags raised inside are gone at exit where the caller's mode was another.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsTrunc_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsTrunc_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsTrunc_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                        int32_t len);

/* dst[i] = the integral number nearest to src[i], halves away from zero. Zero results have the
   argument's sign, but at level 4 they are +0, and at level 5 -0 when the caller rounds down; an
   infinity raises invalid at levels 4 and 5. Exact at level 5 in round-to-nearest only.
   Own modes at levels 1 to 4, the caller's at level 5.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsRound_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsRound_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsRound_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                        int32_t len);

/* dst[i] = the integral number to which src[i] rounds in the caller's rounding mode; raises inexact
   where it differs from src[i].
   The caller's modes. Rounding down at levels 1 to 3 gives -0 for +0 and for positive numbers below
   1.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsRint_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsRint_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsRint_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                       int32_t len);

/* dst[i] = the integral number to which src[i] rounds in the caller's rounding mode; at levels 4
   and 5 inexact isn't raised.
   The caller's modes. Rounding down at levels 1 to 3 gives -0 for +0 and for positive numbers below
   1.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsNearbyInt_64f(const Float64* src, Float64* dst, int32_t len);
/* nuvsNearbyInt_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsNearbyInt_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

/* dstA[i] = the integral part of src[i], cut toward zero, and dstB[i] = the fractional part; both
   have the sign of src[i]. ±Inf has the fractional part ±0; a NaN gives itself, quieted, in both.
   The caller's rounding mode doesn't matter; flags raised inside are gone at exit where the
   caller's mode was another.
   Accuracy: exact. */
QORVANE_API nuvStatus nuvsModf_64f(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
/* nuvsModf_64f on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsModf_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dstA, int32_t dstAOffset,
                                       Float64* dstB, int32_t dstBOffset, int32_t len);

/* ---- Complex functions: no element statuses; special values as in C11 Annex G ---------------- */

/* dst[i] = e to the power src[i].
   Special values are C99's, of cexp: exp(x ± 0i) = exp(x) ± 0i; exp(-Inf + iy) has zeros with the
   signs of cos y and sin y, +0 ± 0i where y is infinite, +0 + 0i where it is NaN; exp(+Inf ± Inf i)
   = +Inf + NaN i.
   Vectors in the caller's modes where both parts are below 512 in magnitude, elsewhere x87
   arithmetic with round to nearest and 64-bit significands; the caller's control word comes back.
   Returns nuvStatusOk once the arguments of the call are good: overflow, underflow and invalid show
   in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.523 ulp; next to zeros of a part: 0.589; hardest arguments:
   0.589; imaginary parts near and below the smallest normal number: 1.000. */
QORVANE_API nuvStatus nuvsExp_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsExp_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsExp_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the principal natural logarithm of src[i], imaginary part from -pi to pi.
   Special values are C99's, of clog: ln(±0 ± 0i) = -Inf with 0 or pi by the sign of the real part,
   and division by zero; +Inf for infinite parts, with NaN i where the other one is NaN.
   Vectors where both parts lie from 2^-500 to 2^500 in magnitude, x87 arithmetic elsewhere; both
   round to nearest, without FTZ and with 64-bit significands, and the caller's control words come
   back. Returns nuvStatusOk once the arguments of the call are good: poles, underflow and invalid
   show in the results and in the flags, which are lost where MXCSR was put back.
   Accuracy: largest error found 0.843 ulp; near the unit circle: 0.854. */
QORVANE_API nuvStatus nuvsLn_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsLn_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsLn_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                          int32_t len);

/* dst[i] = the principal common logarithm of src[i].
   Special values are C99's, of clog, with imaginary parts times log10 e: log10(±0 ± 0i) = -Inf with
   0 or pi log10 e by the sign of the real part, and division by zero; +Inf for infinite parts, with
   NaN i where the other one is NaN.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp; around the unit circle: 0.521; near the unit circle:
   0.525; near 1 and i: 0.517. */
QORVANE_API nuvStatus nuvsLog10_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsLog10_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsLog10_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                             int32_t len);

/* dst[i] = srcA[i] to the power srcB[i], the principal value.
   e to the power b ln a in three steps, each rounded to double precision: the logarithm, the product
   and the exponential. Special values are what the steps make of them: (0 + 0i)^(0 + 0i) = NaN + NaN i.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 50.850 ulp; large exponents: 1223.000. */
QORVANE_API nuvStatus nuvsPow_64fc_A53(const Complex64* srcA, const Complex64* srcB, Complex64* dst, int32_t len);
/* nuvsPow_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsPow_64fc_A53_Idx(const Complex64* srcA, int32_t srcAOffset, const Complex64* srcB,
                                           int32_t srcBOffset, Complex64* dst, int32_t dstOffset, int32_t len);

/* dst[i] = src[i] to the power value, the principal value.
   nuvsPow_64fc_A53 with one exponent for all.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 50.850 ulp; large exponents: 1223.000. */
QORVANE_API nuvStatus nuvsPowx_64fc_A53(const Complex64* src, Complex64 value, Complex64* dst, int32_t len);
/* nuvsPowx_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsPowx_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64 value, Complex64* dst,
                                            int32_t dstOffset, int32_t len);

/* dst[i] = the principal square root of src[i]: real part not negative, imaginary part with the
   sign of src[i]'s.
   Special values are C99's, of csqrt: an infinite imaginary part gives +Inf and itself, whatever the
   real part; sqrt(+Inf + iy) has +Inf and a zero with the sign of y, sqrt(-Inf + iy) +0 and an
   infinity with it; where y is NaN they are +Inf + NaN i and NaN with an infinity of either sign.
   Other NaNs give NaN + NaN i. No finite number overflows.
   The caller's modes in double-precision arithmetic; x87 arithmetic is set to 53-bit significands
   for the call at levels 2 to 5. Returns nuvStatusOk once the arguments of the call are good.
   Accuracy: largest error found 0.511 ulp. */
QORVANE_API nuvStatus nuvsSqrt_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsSqrt_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSqrt_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the sine of src[i].
   Special values: sin z = -i sinh(iz), nuvsSinh_64fc_A53.
   Parts have the bits of x87 arithmetic with round to nearest and 64-bit significands, at every
   level; the caller's control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsSin_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsSin_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSin_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the cosine of src[i].
   Special values: cos z = cosh(iz), nuvsCosh_64fc_A53.
   Parts have the bits of x87 arithmetic with round to nearest and 64-bit significands, at every
   level; the caller's control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsCos_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsCos_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCos_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the tangent of src[i].
   Special values: tan z = -i tanh(iz), nuvsTanh_64fc_A53.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.502 ulp. */
QORVANE_API nuvStatus nuvsTan_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsTan_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsTan_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                           int32_t len);

/* dst[i] = the arc sine of src[i], with its cuts on the real axis outside -1 to 1.
   Special values: asin z = -i asinh(iz), nuvsAsinh_64fc_A53.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsAsin_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsAsin_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAsin_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the arc cosine of src[i], with its cuts on the real axis outside -1 to 1.
   Special values are C99's, of cacos: acos(±0 + NaN i) = pi/2 + NaN i; acos(NaN ± Inf i) = NaN ∓ Inf i;
   acos(±Inf + NaN i) = NaN ∓ Inf i by the sign of the NaN.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsAcos_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsAcos_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAcos_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the arc tangent of src[i], with its cuts on the imaginary axis outside -i to i.
   Special values are C99's, of catanh: atan z = -i atanh(iz). atan(±0 ± i) has an
   infinite imaginary part, and division by zero. Imaginary parts for y and -y may differ in the last bit
   beside their signs.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.531 ulp; small arguments: 0.544; near the unit circle: 0.540. */
QORVANE_API nuvStatus nuvsAtan_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsAtan_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAtan_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the hyperbolic sine of src[i].
   Special values are C99's, of csinh: sinh(x ± 0i) = sinh(x) ± 0i; sinh(±Inf + iy) has infinities
   with the signs of ±cos y and sin y, ±Inf + NaN i where y is infinite or NaN.
   Parts have the bits of x87 arithmetic with round to nearest and 64-bit significands, at every
   level; the caller's control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsSinh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsSinh_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsSinh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the hyperbolic cosine of src[i].
   Special values are C99's, of ccosh: cosh(x ± 0i) = cosh(x) ± 0i, the zero's sign turned where x is
   negative; cosh(±Inf + iy) has infinities with the signs of cos y and ±sin y, +Inf + NaN i where y
   is infinite or NaN; cosh(±0 + iy) for such y is NaN and a zero.
   Parts have the bits of x87 arithmetic with round to nearest and 64-bit significands, at every
   level; the caller's control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.501 ulp. */
QORVANE_API nuvStatus nuvsCosh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsCosh_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsCosh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the hyperbolic tangent of src[i].
   Special values are C99's, of ctanh: from 512 up in magnitude the real part is ±1 and the imaginary
   one a zero with the sign of sin y cos y, or of y where y is infinite; +0 where it is NaN. For a
   finite real part, 0 included, an infinite imaginary part gives NaN + NaN i.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: overflow,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.502 ulp. */
QORVANE_API nuvStatus nuvsTanh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsTanh_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsTanh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                            int32_t len);

/* dst[i] = the inverse hyperbolic sine of src[i], with its cuts on the imaginary axis outside -i to
   i.
   Special values are C99's, of casinh: asinh(x ± 0i) = asinh x ± 0i; asinh(±Inf + iy) = ±Inf with 0 by
   the sign of y, pi/4 where y is infinite, NaN where it is NaN; asinh(NaN ± Inf i) = +Inf + NaN i.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.502 ulp. */
QORVANE_API nuvStatus nuvsAsinh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsAsinh_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAsinh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                             int32_t len);

/* dst[i] = the inverse hyperbolic cosine of src[i], with its cut on the real axis below 1.
   Special values are C99's, of cacosh: the real part is never negative, the imaginary one has the sign
   of src[i]'s; +Inf for infinite parts, with NaN i where the other one is NaN.
   Parts are computed in x87 arithmetic with round to nearest and 64-bit significands; the caller's
   control word comes back. Returns nuvStatusOk once the arguments of the call are good: poles,
   underflow and invalid show in the results and in the flags, most of them in the x87 unit.
   Accuracy: largest error found 0.502 ulp. */
QORVANE_API nuvStatus nuvsAcosh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
/* nuvsAcosh_64fc_A53 on arrays that begin at an offset, in elements. */
QORVANE_API nuvStatus nuvsAcosh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset,
                                             int32_t len);

#ifdef __cplusplus
}
#endif

#endif /* TARNWELL_QORVANE_H */
