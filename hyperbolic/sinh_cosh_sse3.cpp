// sinh(x) and cosh(x), levels 1 to 4.
//
// Method: with a = |x|, 64a / ln 2 = n + rest with an integer n = 64k + j, so that a = n ln 2 / 64
// + r with |r| <= ln 2 / 128. e^(a-r)/2 = 2^(k-1) * 2^(j/64) and e^(r-a)/2, made likewise from -n,
// come from one table as high + low parts. With their sum and difference
//   cosh a = sum cosh r + dif sinh r,   sinh a = dif cosh r + sum sinh r
// where cosh r - 1 and sinh r - r are polynomials; the high parts are added last, by size. Sinh of
// small arguments is an odd polynomial of its own.
//
// Error: cosh at most 0.757 ulp, near 0.0025; sinh 0.771 ulp, near 0.67, and 1.52 ulp for small
// elements beside others, near 0.0055 (docs/accuracy.md has the arguments).
//
// Special values: a NaN gives the NaN of all ones, infinities infinities, sinh(-0) -0. From
// 710.475860073944 up the result is infinite and overflow; no flag is raised for it. The kernels
// run in round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// The last bit of a small result of Sinh depends on its neighbour: elements 0 and 1, 2 and 3 of a
// block of four are pairs, and the polynomial for small arguments serves pairs of them only.
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "explog/exp_tables.inc"

constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.332482616893657 = 64 / ln 2
constexpr Float64 shifter = fromBits(0x4338000000000000);     // 1.5 * 2^52
constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fef00000);   // 0.010830424695086549: n * ln2By64Hi is exact
constexpr Float64 ln2By64Lo = fromBits(0x3d7473de6af278ed);   // 1.162596423439437e-12: ln 2 / 64 - ln2By64Hi

// sinh r = r + r z (c3 + c5 z), cosh r = 1 + z (c2 + c4 z) with z = r^2
constexpr Float64 c5 = fromBits(0x3f81111276409c2c);  // 0.0083333437288058629
constexpr Float64 c4 = fromBits(0x3fa555574bc3a1be);  // 0.041666725157316162
constexpr Float64 c3 = fromBits(0x3fc55555555542a1);  // 0.16666666666653376
constexpr Float64 c2 = fromBits(0x3fdfffffffffd97c);  // 0.49999999999945266

// sinh x = x + x w (d1 + d2 w + d3 w^2) with w = x^2, for small x
constexpr Float64 d3 = fromBits(0x3f2a01db8c52595a);  // 0.00019841961890127818
constexpr Float64 d2 = fromBits(0x3f81111110e18ca7);  // 0.0083333333279312482
constexpr Float64 d1 = fromBits(0x3fc5555555555583);  // 0.16666666666666793

// High words of |x|. Below `smallHighWord`, about 1/28, sinh has the polynomial; above
// `middleHighWord`, about 1/4, the high part of e^-a / 2 is small enough to be added before that of
// e^a / 2. A single element takes the latter from `middleHighWord` itself on.
constexpr int smallHighWord = 0x3fa1eb85, middleHighWord = 0x3fcfacfc;
// From here up, infinities and NaNs included, edgeLane decides: 2^(-k-1) and then 2^(k-1) leave the
// normal range.
constexpr int edgeHighWord = 0x40862336;

template <class V>
struct Reduced {
  V r;
  BitsOf<V> n;  // in the low bits
};
template <class V>
INLINE Reduced<V> reduce(V a) {
  const V t = a * invLn2By64 + shifter, n = t - shifter;
  return {(a - n * ln2By64Hi) - n * ln2By64Lo, bitsOf(t)};
}

// 2^(n/64) / 2 = hi + lo
template <class V>
struct HalfPower {
  V hi, lo;
};
template <class V>
INLINE HalfPower<V> halfPower(BitsOf<V> n) {
  const auto row = twoColumns<V>(expTableSplit, (n & 63) << 4);
  const V scale = valueOf<V>(((n + 1022 * 64) << 46) & 0x7ff0000000000000);  // 2^(floor(n/64) - 1)
  return {row.first * scale, row.second * scale};
}

// With which factors of cosh r and sinh r: e^(a-r)/2 and e^(r-a)/2, their sum and their difference.
template <class V>
struct Terms {
  V r, odd, even;  // sinh r = r + odd r, cosh r = 1 + even
  HalfPower<V> up, down;
  V sum, dif;
};
template <class V>
INLINE Terms<V> termsOf(V a) {
  const auto [r, n] = reduce(a);
  const auto up = halfPower<V>(n), down = halfPower<V>(BitsOf<V>{} - n);
  const V upSum = up.hi + up.lo, downSum = down.hi + down.lo, z = r * r;
  return {r, (c5 * z + c3) * z, (c4 * z + c2) * z, up, down, upSum + downSum, upSum - downSum};
}

template <class V>
INLINE V coshCore(V x) {
  const auto [r, odd, even, up, down, sum, dif] = termsOf(magnitude(x));
  return even * sum + (odd * r) * dif + r * dif + down.lo + up.lo + down.hi + up.hi;
}

// All ones in the lanes whose high word, without its sign, is greater than `limit`.
template <class V>
INLINE V highWordAbove(V a, int limit) {
  if constexpr (isPack<V>) {
    return makePack<packSize<V>>([&](int i) INLINED { return highWordAbove(a.part[i], limit); });
  } else {
    const __m128i high = _mm_shuffle_epi32(_mm_castpd_si128(a), 0xf5);
    return _mm_castsi128_pd(_mm_cmpgt_epi32(high, _mm_set1_epi32(limit)));
  }
}
// All ones in both lanes of a pair where both are.
template <class V>
INLINE V inWholePairs(V mask) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return inWholePairs(mask.part[i]); });
  else
    return andBits<V>(mask, _mm_shuffle_pd(mask, mask, 1));
}

// Elements in pairs, or each by itself.
enum class Company { pairs, none };
template <Company company, class V>
INLINE V sinhCore(V x) {
  constexpr int greatestMiddleHighWord = company == Company::pairs ? middleHighWord : middleHighWord - 1;
  const V a = magnitude(x);
  const auto [r, odd, even, up, down, sum, dif] = termsOf(a);
  const V w = even * dif + (odd * r) * sum + r * sum - down.lo + up.lo;
  const V large = (w - down.hi) + up.hi, middle = w + (up.hi - down.hi);
  V result = orBits(select(highWordAbove(a, greatestMiddleHighWord), large, middle), signOf(x));
  const V isNotSmall = highWordAbove(a, smallHighWord - 1), allOnes = highWordAbove(a, -1);
  const V small = withoutBits(allOnes, isNotSmall), isSmall = company == Company::pairs ? inWholePairs(small) : small;
  if (signMask(isSmall) != 0) {
    const V square = x * x, series = x + ((d3 * square + d2) * square + d1) * square * x;
    result = select(isSmall, series, result);
  }
  return result;
}

INLINE bool isEdge(Float64 x) { return static_cast<int>(highWord(x) & 0x7fffffff) >= edgeHighWord; }

// e^a / 2 for a from `firstForEdgeLane` up, infinities and NaNs: e^-a no longer matters.
constexpr uint64_t firstForEdgeLane = 0x40862336f49c3c50;  // 708.4018337446123: n passes 1022 * 64
[[gnu::noinline, gnu::cold]] Element edgeLane(Float64 a) {
  constexpr uint64_t infinity = 0x7ff0000000000000;
  if (toBits(a) > infinity) return {fromBits(0xffffffffffffffff), nuvStatusOk};
  if (toBits(a) == infinity) return {a, nuvStatusOk};
  if (toBits(a) >= 0x408633ce8fb9f87e) return {fromBits(infinity), nuvStatusOverflow};  // from 710.475860073944 up

  const auto [r, n] = reduce(a);
  const Float64 q = r + (((c5 * r + c4) * r + c3) * r + c2) * r * r;
  if (toBits(a) < 0x408633c378987900) {  // below 710.4704448615958, where n reaches 1025 * 64
    const auto [hi, lo] = halfPower<Float64>(n);
    return {(q * (hi + lo) + lo) + hi, nuvStatusOk};
  }
  const auto [hi, lo] = twoColumns<Float64>(expTableSplit, (n & 63) << 4);
  return {((q * (hi + lo) + lo) + hi) * fromBits(0x7fe0000000000000) * 2.0, nuvStatusOk};
}

// What the two functions give their loop: a block of two pairs, the first element of a pair, and
// elements each by itself.
struct Cosh {
  INLINE static Pack<Lanes2, 2> block(Pack<Lanes2, 2> x) { return coshCore(x); }
  INLINE static Float64 inPair(Float64 x, Float64) { return alone(broadcast<Lanes2>(x))[0]; }
  template <class V>
  INLINE static V alone(V x) {
    return coshCore(x);
  }
  INLINE static Float64 signOfResult(Float64) { return 0.0; }
};
struct Sinh {
  INLINE static Pack<Lanes2, 2> block(Pack<Lanes2, 2> x) { return sinhCore<Company::pairs>(x); }
  INLINE static Float64 inPair(Float64 x, Float64 partner) { return sinhCore<Company::pairs>(Lanes2{x, partner})[0]; }
  template <class V>
  INLINE static V alone(V x) {
    return sinhCore<Company::none>(x);
  }
  INLINE static Float64 signOfResult(Float64 x) { return signOf(x); }
};

template <class F>
Element atEdge(Float64 x) {
  const Element e = edgeLane(magnitude(x));
  return {orBits(e.value, F::signOfResult(x)), e.status};
}

// A block with an edge: the others have the bits that they have in any block. In the place of a
// partner whose lane would raise flags stands one that is like it, not small.
template <class F>
[[gnu::noinline, gnu::cold]] nuvStatus edgeBlock(Pack<Lanes2, 2> block, Float64* dst, nuvStatus status) {
  Float64 x[4];
  store(x, block);
  for (int i = 0; i < 4; ++i) {
    const Float64 partner = x[i ^ 1];
    const Element e = toBits(magnitude(x[i])) >= firstForEdgeLane
                          ? atEdge<F>(x[i])
                          : Element{F::inPair(x[i], isEdge(partner) ? 1.0 : partner), nuvStatusOk};
    dst[i] = e.value;
    takeStatus<Raises::no>(status, e.status);
  }
  return status;
}

template <class F>
[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  int64_t i = 0;
  for (; i + 4 <= len; i += 4) {
    const auto x = load<Pack<Lanes2, 2>>(src + i);
    if (anyMagnitudeFrom(x, edgeHighWord)) [[unlikely]]
      status = edgeBlock<F>(x, dst + i, status);
    else
      store(dst + i, F::block(x));
  }
  const auto together = [&]<class V>(V, int64_t count) INLINED {
    const V x = loadPart<V>(src + i, count);
    if (anyMagnitudeFrom(x, edgeHighWord)) [[unlikely]]
      return;
    storePart(dst + i, F::alone(x), count);
    i = len;
  };
  if (len - i == 3)
    together(Pack<Lanes2, 2>{}, 3);
  else if (len - i == 2)
    together(Lanes2{}, 2);
  for (; i < len; ++i) {
    const Float64 x = src[i];
    if (toBits(magnitude(x)) >= firstForEdgeLane) [[unlikely]] {
      const Element e = atEdge<F>(x);
      dst[i] = e.value;
      takeStatus<Raises::no>(status, e.status);
    } else {
      dst[i] = F::alone(broadcast<Lanes2>(x))[0];
    }
  }
  return status;
}

}  // namespace

nuvStatus coshSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<Cosh>>(len, src, dst);
}
nuvStatus sinhSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<Sinh>>(len, src, dst);
}

}  // namespace qorvane
