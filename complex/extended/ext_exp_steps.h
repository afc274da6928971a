// What the exponential kernels share: the reduction and the two halves of an exponential.
//
// Method: a = k ln 2 / 256 + r with the integer k = 256 m + j, -128 <= j <= 127, so that
// e^a = 2^m * 2^(j/256) * e^r with |r| <= ln 2 / 512. 2^(j/256) comes from a table as high + low
// with a high part of 32 bits, e^r - 1 is a polynomial of degree 6.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {

// 2^(j/256) in the row j + 128, j from -128 to 128.
struct ExpRow {
  Float64 hi, lo;
};
extern const ExpRow expTable256[257];

namespace {

// The remainder as rh + rl, rh being it rounded.
struct ExpRemainder {
  Extended80 rh, rl;
  int32_t j, m;
};

constexpr Constant invLn2By256 = extended(0x4007, 0xb8aa3b295c17f000);  // 369.3299304675746 = 256 / ln 2
constexpr Constant ln2By256Hi = extended(0x3ff6, 0xb17217f800000000);   // 0.0027076061742263846: k times it is exact
constexpr Constant ln2By256Lo = extended(0xbfd4, 0xb8c21950d8713000);   // -1.6409824502660487e-13

// n modulo 256, from -128 to 127.
INLINE int32_t signedLowByte(int32_t n) { return ((n & 0xff) ^ 0x80) - 0x80; }

// For |a| below 16384.
INLINE ExpRemainder reduceExp(Extended80 a) {
  const Extended80 k = wholePart(a * invLn2By256);
  const int32_t n = toInt32(k), j = signedLowByte(n);
  const Extended80 t = a - k * ln2By256Hi, kLo = k * ln2By256Lo, rh = t - kLo;
  return {rh, (t - rh) - kLo, j, (n - j) >> 8};
}

// e^r - 1 = r + s2 r^2 + ... + s6 r^6
constexpr Float64 s2 = 0.5;
constexpr Constant s3 = extended(0x3ffc, 0xaaaaaaaaaaa0293e);  // 0.16666666666665733
constexpr Constant s4 = extended(0x3ffa, 0xaaaaaaaaaaa0e910);  // 0.0416666666666645
constexpr Constant s5 = extended(0x3ff8, 0x88888b443e6bdc82);  // 0.008333335878865304
constexpr Constant s6 = extended(0x3ff5, 0xb60b6439b9331bc1);  // 0.001388889298015527

// e^r - 1 - rh = even + odd, e^-r - 1 + rh = even - odd
struct ExpTail {
  Extended80 even, odd;
};
INLINE ExpTail expTail(const ExpRemainder& p) {
  const Extended80 r2 = p.rh * p.rh, odd = (r2 * (s5 * r2 + s3)) * p.rh + p.rl;
  return {(s2 + (s4 + s6 * r2) * r2) * r2, odd};
}

// 2^(j/256) * e^r and 2^(-j/256) * e^-r, from e^r - 1 - rh and e^-r - 1 + rh.
INLINE Sum risingExp(const ExpRemainder& p, Extended80 tail) {
  const ExpRow& row = expTable256[p.j + 128];
  const Extended80 product = row.hi * p.rh, sum = row.hi + product;
  return {sum, ((row.lo + (row.hi - sum)) + (p.rh * row.lo + (Extended80{row.hi} + row.lo) * tail)) + product};
}
INLINE Sum fallingExp(const ExpRemainder& p, Extended80 tail) {
  const ExpRow& row = expTable256[128 - p.j];
  const Extended80 product = row.hi * p.rh, sum = row.hi - product;
  return {sum, (((row.hi - sum) + row.lo) + (tail * (Extended80{row.hi} + row.lo) - row.lo * p.rh)) - product};
}

// x * 2^m in steps that neither overflow nor underflow before the last one does.
[[gnu::noinline, gnu::cold, maybe_unused]] Extended80 scaled(Extended80 x, int32_t m) {
  for (; m > 1000; m -= 1000) x *= powerOfTwo(1000);
  for (; m < -1000; m += 1000) x *= powerOfTwo(-1000);
  return x * powerOfTwo(m);
}

}  // namespace
}  // namespace qorvane
