// The inverse functions' strips, and their stages: what is to be stored between them, and how.
// Chains of operations are kept short, so that the processor looks ahead over several vectors.
#pragma once
#include <type_traits>

#include "complex/certified/inverse_parts.h"
#include "complex/certified/inverse_tangent.h"

namespace qorvane {
namespace {

// Twice as long as others: what is left to the routines, which waits for the last stage, costs less.
constexpr int longStrip = 64;

// The arguments with their signs; ln's argument less 1 and a point (x, y), and what stands in their
// places before and after; the logarithm.
struct InverseStrip {
  alignas(32) Float64 a[longStrip], b[longStrip];
  alignas(32) Float64 eHead[longStrip], eRest[longStrip], base[longStrip], baseRest[longStrip], log[longStrip];
  alignas(32) Float64 xHead[longStrip], xRest[longStrip], yHead[longStrip], yRest[longStrip];
  // The words of one vector may be stored twice.
  alignas(32) int near[longStrip + 4], rowOfLog[longStrip + 4], rowOfAngle[longStrip + 4];
};
// Of asin and its companions, stage by stage: q/2 as x and B^2 as e; rho/2 as y; t as x and v as y; g as
// e; e and the point of the unit circle; z as e; the angle's base as x and its d as y.
struct SineStrip : InverseStrip {
  alignas(32) Float64 reciprocal[longStrip], s[longStrip];
};
// Of the inverse tangent: x, and Q as e; e and the direction; z as e; the angle's quotient as y. In
// `common` and `up` stands what the errors depend on.
struct TangentStrip : InverseStrip {
  alignas(32) Float64 common[longStrip], up[longStrip];
  alignas(32) Float64 toTheRight[longStrip], upwards[longStrip];
};
template <Function function>
using StripOf = std::conditional_t<function == Function::atan, TangentStrip, SineStrip>;

template <class V>
INLINE void storePair(Float64* head, Float64* rest, ShortPair<V> p) {
  store(head, p.head), store(rest, p.rest);
}

template <class W, class V>
[[gnu::noinline]] void excessStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto e = excessOf(magnitude(load<U>(s.a + i)), magnitude(load<U>(s.b + i)));
    storePair(s.xHead + i, s.xRest + i, e.halfOfQ), store(s.eHead + i, e.b2.high), store(s.eRest + i, e.b2.low);
  });
}
template <class U>
INLINE Excess<U> excessAt(const SineStrip& s, int64_t i) {
  return {loadPair<U>(s.xHead + i, s.xRest + i), {load<U>(s.eHead + i), load<U>(s.eRest + i)}};
}
template <class W, class V>
[[gnu::noinline]] void rhoStage(SineStrip& s, int count) {
  eachGroup<W, V>(
      count, [&]<class U>(U, int64_t i) INLINED { storePair(s.yHead + i, s.yRest + i, halfOfRho(excessAt<U>(s, i))); });
}
template <class W, class V>
[[gnu::noinline]] void squareStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto p = sinhAndCosSquared(excessAt<U>(s, i), loadPair<U>(s.yHead + i, s.yRest + i));
    storePair(s.xHead + i, s.xRest + i, p.t), storePair(s.yHead + i, s.yRest + i, p.v);
  });
}
template <class W, class V>
[[gnu::noinline]] void rootStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto g = sinhTimesCosh(loadPair<U>(s.xHead + i, s.xRest + i));
    storePair(s.eHead + i, s.eRest + i, g.root), store(s.reciprocal + i, g.reciprocal);
  });
}
template <class W, class V>
[[gnu::noinline]] void pointStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const SinhAndCos<U> p = {loadPair<U>(s.xHead + i, s.xRest + i), loadPair<U>(s.yHead + i, s.yRest + i)};
    const RootPair<U> g = {loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.reciprocal + i)};
    const auto point = inverseSinePoint(magnitude(load<U>(s.a + i)), magnitude(load<U>(s.b + i)), p, g);
    const auto near = wordsOfLog((point.e.head + point.e.rest) + 1.0);
    const auto angle = rowOfHalfAngle(point.cos.head, point.sin.head);
    storePair(s.eHead + i, s.eRest + i, point.e);
    storePair(s.xHead + i, s.xRest + i, point.cos), storePair(s.yHead + i, s.yRest + i, point.sin);
    storeWords(s.near + i, near), storeWords(s.rowOfLog + i, rowOfLog(near));
    store(s.s + i, angle.s), storeWords(s.rowOfAngle + i, angle.row);
  });
}
template <class W, class V>
[[gnu::noinline]] void remainderStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto row = columns<4, U>(log1pRows, rowsAt(s.rowOfLog + i));
    const auto e = loadPair<U>(s.eHead + i, s.eRest + i);
    const auto log = splitRemainder(log1pRemainder(e, loadWords<U>(s.near + i), row));
    storePair(s.eHead + i, s.eRest + i, log.z), store(s.base + i, log.base), store(s.baseRest + i, log.baseRest);
  });
}
template <Function function, class W, class V>
[[gnu::noinline]] void halfAngleStage(SineStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto row = columns<4, U>(angleRows, rowsAt(s.rowOfAngle + i));
    const auto cos = loadPair<U>(s.xHead + i, s.xRest + i), sin = loadPair<U>(s.yHead + i, s.yRest + i);
    const auto t = angleTermsOf<function>(cos, sin, load<U>(s.a + i), load<U>(s.s + i), row);
    store(s.xHead + i, t.base), store(s.xRest + i, t.baseRest), storePair(s.yHead + i, s.yRest + i, t.d);
  });
}

template <class W, class V>
[[gnu::noinline]] void tangentStage(TangentStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto point = inverseTangentPoint(magnitude(load<U>(s.a + i)), magnitude(load<U>(s.b + i)));
    storePair(s.eHead + i, s.eRest + i, point.distance), storePair(s.xHead + i, s.xRest + i, point.x);
  });
}
template <class W, class V>
[[gnu::noinline]] void rowStage(TangentStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const U a = magnitude(load<U>(s.a + i)), b = magnitude(load<U>(s.b + i));
    const auto rows = tangentRows(a, b, loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.xHead + i));
    storePair(s.eHead + i, s.eRest + i, rows.e), store(s.common + i, rows.common), store(s.up + i, rows.up);
    store(s.toTheRight + i, rows.direction.right), store(s.upwards + i, rows.direction.up);
    storeWords(s.near + i, rows.near), storeWords(s.rowOfLog + i, rowOfLog(rows.near));
    storeWords(s.rowOfAngle + i, rows.direction.row);
  });
}
template <class W, class V>
[[gnu::noinline]] void logTermStage(TangentStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto row = columns<4, U>(log1pRows, rowsAt(s.rowOfLog + i));
    const auto t =
        logTerms(loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.common + i), loadWords<U>(s.near + i), row);
    storePair(s.eHead + i, s.eRest + i, t.z), store(s.common + i, t.common);
    store(s.base + i, t.base), store(s.baseRest + i, t.baseRest);
  });
}
template <class W, class V>
[[gnu::noinline]] void angleTermStage(TangentStrip& s, int count) {
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const Direction<U> direction = {load<U>(s.toTheRight + i), load<U>(s.upwards + i), {}};
    const auto t =
        angleTerms(loadPair<U>(s.xHead + i, s.xRest + i), magnitude(load<U>(s.b + i)), direction, load<U>(s.up + i));
    storePair(s.yHead + i, s.yRest + i, t.quotient), store(s.up + i, t.sine);
  });
}
// All before the logarithm.
template <Function function, class W, class V>
INLINE void firstStages(StripOf<function>& s, int count) {
  if constexpr (function == Function::atan) {
    tangentStage<W, V>(s, count);
    rowStage<W, V>(s, count);
    logTermStage<W, V>(s, count);
    angleTermStage<W, V>(s, count);
  } else {
    excessStage<W, V>(s, count);
    rhoStage<W, V>(s, count);
    squareStage<W, V>(s, count);
    rootStage<W, V>(s, count);
    pointStage<W, V>(s, count);
    remainderStage<W, V>(s, count);
    halfAngleStage<function, W, V>(s, count);
  }
}

// Masks of the elements that aren't certain.
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t logStage(StripOf<function>& s, int count) {
  uint64_t certain = 0;
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto e = loadPair<U>(s.eHead + i, s.eRest + i);
    Certain<U> log;
    if constexpr (function == Function::atan) {
      const LogTerms<U> terms = {e, load<U>(s.base + i), load<U>(s.baseRest + i), load<U>(s.common + i)};
      log = certainTangentLog(terms, load<U>(s.a + i));
    } else {
      log = certainLog(LogRemainder<U>{load<U>(s.base + i), load<U>(s.baseRest + i), e}.all());
    }
    store(s.log + i, log.value);
    certain |= signMask(log.isCertain) << i;
  });
  return ~certain;
}
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t angleStage(const StripOf<function>& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const U a = load<U>(s.a + i), b = load<U>(s.b + i), log = load<U>(s.log + i), x = load<U>(s.xHead + i);
    const auto y = loadPair<U>(s.yHead + i, s.yRest + i);
    Certain<U> angle;
    if constexpr (function == Function::atan) {
      const auto row = twoColumns<U>(atanTable, rowsAt(s.rowOfAngle + i));
      angle = certainTangentAngle(AngleTerms<U>{y, load<U>(s.up + i)}, x, row);
    } else {
      angle = certainAngle<function>(HalfAngleTerms<U>{x, load<U>(s.xRest + i), y}.all());
    }
    storeParts(dst + i, signedParts<function>(angle.value, log, a, b));
    certain |= signMask(angle.isCertain) << i;
  });
  return ~certain;
}

// The parts of one element that isn't on an axis, with the given parts of their bounds: for tests
// and tools.
struct CertainParts {
  Certain<Float64> log, angle;
};
template <Function function>
CertainParts certainParts(Float64 a, Float64 b, Float64 ofLog, Float64 ofAngle) {
  const Float64 absA = magnitude(a), absB = magnitude(b);
  if constexpr (function == Function::atan) {
    const auto point = inverseTangentPoint(absA, absB);
    const auto rows = tangentRows(absA, absB, point.distance, point.x.head);
    const auto logRow = columns<4, Float64>(log1pRows, rowOfLog(rows.near));
    const auto angleRow = twoColumns<Float64>(atanTable, rows.direction.row);
    const auto log = logTerms(rows.e, rows.common, rows.near, logRow);
    const auto angle = angleTerms(point.x, absB, rows.direction, rows.up);
    return {certainTangentLog(log, a, ofLog), certainTangentAngle(angle, point.x.head, angleRow, ofAngle)};
  } else {
    const auto excess = excessOf(absA, absB);
    const auto squared = sinhAndCosSquared(excess, halfOfRho(excess));
    const auto point = inverseSinePoint(absA, absB, squared, sinhTimesCosh(squared.t));
    const auto r = rowOfHalfAngle(point.cos.head, point.sin.head);
    const auto angle = angleTermsOf<function>(point.cos, point.sin, a, r.s, columns<4, Float64>(angleRows, r.row));
    return {certainLog(log1pPair(point.e, (point.e.head + point.e.rest) + 1.0), ofLog),
            certainAngle<function>(angle.all(), ofAngle)};
  }
}

}  // namespace
}  // namespace qorvane
