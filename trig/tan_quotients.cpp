// tan(x), all levels: the x87 stage.
//
// Method: with N = r P(r^2) and Q = Q(r^2), all in extended precision, tan x is N / Q, or Q / N
// where k is odd: T / U. A pair of elements shares a division, I = 1 / (U0 U1), T0 / U0 = (T0 U1) I
// and T1 / U1 = (T1 U0) I, so that what an element gets may depend, in rare last bits, on the other
// element of its pair: elements 2i and 2i + 1 of a chunk, up to the first pair with a flagged
// element. There the first element goes to the special lane, flagged or not, and the rest of the
// chunk goes on singly, with I = 1 / U^2. Pairs begin anew with the next chunk.
//
// Error: the quotients are good to less than 2^-60 beside the error of P / Q; the largest found,
// 1.007 ulp, is next to an odd multiple of pi/4.
//
// The x87 unit has one adder and multiplier, which bounds this stage. T and U must not be chosen
// element by element: a branch on k's parity would be mispredicted every other time, conditional
// moves and spills of extended numbers are slow. The pairs of a chunk are therefore run in three
// groups, by the parities of their elements, each a loop with the choice made at compile time. What
// is left, 29 operations of the x87 unit a pair, runs at nearly one a cycle if the first element's
// operations stand before the second's.
#include "trig/tan.h"

namespace qorvane {
namespace {

// No double-precision number between the loads of a chunk's elements and the stores of the results.
using Extended = long double;

// tan r = r (1 + p1 z + p2 z^2 + p3 z^3) / (1 + q1 z + q2 z^2 + q3 z^3) with z = r^2, |r| <= pi
// / 4: error 2^-54.0
constexpr Extended p1 = fromBits(0xbfc06b97bf03648a);  // -0.12828347040957438
constexpr Extended q1 = fromBits(0xbfdd8b2134d70767);  // -0.46161680374290487

struct Quotient {
  Extended t, u;  // tan = t / u
};

INLINE Quotient quotient(const TanScratch& scratch, int c, bool odd) {
  const Extended r = Extended{scratch.hi[c]} + scratch.lo[c], z = r * r;
  const Extended p = (scratch.pRest[c] + p1) * z + 1.0L, q = (scratch.qRest[c] + q1) * z + 1.0L, n = r * p;
  return odd ? Quotient{q, n} : Quotient{n, q};
}

// Whether d rounds to +0 in single precision.
INLINE bool vanishes(Extended d) { return __builtin_bit_cast(uint32_t, static_cast<float>(d)) == 0; }

// The pairs whose bit is set, at the place of their element of parity oddA; the other element has
// parity oddB.
template <bool oddA, bool oddB>
INLINE void pairs(const TanScratch& scratch, Float64* dst, uint64_t set) {
  for (; set != 0; set &= set - 1) {
    const int a = __builtin_ctzll(set), b = a ^ 1;
    const auto [ta, ua] = quotient(scratch, a, oddA);
    const auto [tb, ub] = quotient(scratch, b, oddB);
    const Extended d = ua * ub;
    if (vanishes(d)) [[unlikely]] {  // no remainder is as small as that; 1 / d would still be good
      dst[a] = static_cast<Float64>(ta / ua);
      dst[b] = static_cast<Float64>(tb / ub);
      continue;
    }
    const Extended i = 1.0L / d;
    dst[a] = static_cast<Float64>((ta * ub) * i);
    dst[b] = static_cast<Float64>((tb * ua) * i);
  }
}

void single(const TanScratch& scratch, Float64* dst, int c) {
  const auto [t, u] = quotient(scratch, c, (scratch.odd >> c & 1) != 0);
  const Extended i = 1.0L / (u * u);
  dst[c] = static_cast<Float64>((t * u) * i);
}

}  // namespace

nuvStatus tanQuotients(const TanScratch& scratch, const Float64* src, Float64* dst, int count, uint64_t set) {
  nuvStatus status = nuvStatusOk;
  const auto flagged = [&](int c) { return anyMagnitudeFrom(src[c], tanFlaggedHighWord); };
  int paired = count & ~1;
  if (scratch.anyFlagged) [[unlikely]] {
    int first = 0;
    while (!flagged(first)) ++first;
    paired = first & ~1;
  }

  // One bit a pair, at the even places.
  const uint64_t wanted = set | set >> 1;
  const uint64_t all = paired == 0 ? 0 : 0x5555555555555555 >> (tanChunkSize - paired) & wanted;
  const uint64_t firstOdd = scratch.odd & all, secondOdd = scratch.odd >> 1 & all;
  pairs<false, false>(scratch, dst, all & ~(firstOdd | secondOdd));
  pairs<true, true>(scratch, dst, firstOdd & secondOdd);
  pairs<false, true>(scratch, dst, (secondOdd & ~firstOdd) | (firstOdd & ~secondOdd) << 1);

  int c = paired;
  if (scratch.anyFlagged) [[unlikely]] {
    takeElement<Raises::yes>(status, dst + c, tanSpecialLane(src[c]));
    ++c;
  }
  for (; c < count; ++c) {
    if (scratch.anyFlagged && flagged(c))
      takeElement<Raises::yes>(status, dst + c, tanSpecialLane(src[c]));
    else if ((wanted >> c & 1) != 0)
      single(scratch, dst, c);
  }
  return status;
}

}  // namespace qorvane
