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

// The arguments with their signs, ln's argument less 1, the logarithm, and the point (x, y) of the
// unit circle.
struct InverseStrip {
  alignas(32) Float64 a[longStrip], b[longStrip];
  alignas(32) Float64 eHead[longStrip], eRest[longStrip], log[longStrip];
  alignas(32) Float64 xHead[longStrip], xRest[longStrip], yHead[longStrip], yRest[longStrip];
};
// Of the inverse tangent: Q, then ln's argument less 1, then z; x, and then the angle's quotient as
// y; in `common` and `up` what the errors depend on.
struct TangentStrip : InverseStrip {
  alignas(32) Float64 common[longStrip], up[longStrip], base[longStrip], baseRest[longStrip];
  alignas(32) Float64 toTheRight[longStrip], upwards[longStrip];
  // The words of one vector may be stored twice.
  alignas(32) int near[longStrip + 4], rowOfLog[longStrip + 4], rowOfAngle[longStrip + 4];
};
template <Function function>
using StripOf = std::conditional_t<function == Function::atan, TangentStrip, InverseStrip>;

template <class V>
INLINE void storePair(Float64* head, Float64* rest, ShortPair<V> p) {
  store(head, p.head), store(rest, p.rest);
}

template <Function function, class W, class V>
[[gnu::noinline]] void pointStage(InverseStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U a = magnitude(load<U>(s.a + i)), b = magnitude(load<U>(s.b + i));
    if constexpr (function == Function::atan) {
      const auto point = inverseTangentPoint(a, b);
      storePair(s.eHead + i, s.eRest + i, point.distance), storePair(s.xHead + i, s.xRest + i, point.x);
    } else {
      const auto point = inverseSinePoint(a, b, sinhAndCosSquared(excessOf(a, b)));
      storePair(s.eHead + i, s.eRest + i, point.e);
      storePair(s.xHead + i, s.xRest + i, point.cos), storePair(s.yHead + i, s.yRest + i, point.sin);
    }
  });
}
template <class W, class V>
[[gnu::noinline]] void rowStage(TangentStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U a = magnitude(load<U>(s.a + i)), b = magnitude(load<U>(s.b + i));
    const auto rows = tangentRows(a, b, loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.xHead + i));
    storePair(s.eHead + i, s.eRest + i, rows.e), store(s.common + i, rows.common), store(s.up + i, rows.up);
    store(s.toTheRight + i, rows.direction.right), store(s.upwards + i, rows.direction.up);
    storeWords(s.near + i, rows.near), storeWords(s.rowOfLog + i, rowOfLog<U>(rows.near));
    storeWords(s.rowOfAngle + i, rows.direction.row);
  });
}
template <class W, class V>
[[gnu::noinline]] void logTermStage(TangentStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto row = columns<4, U>(log1pRows, rowsAt(s.rowOfLog + i));
    const auto t =
        logTerms(loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.common + i), loadWords<U>(s.near + i), row);
    storePair(s.eHead + i, s.eRest + i, t.z), store(s.common + i, t.common);
    store(s.base + i, t.base), store(s.baseRest + i, t.baseRest);
  });
}
template <class W, class V>
[[gnu::noinline]] void angleTermStage(TangentStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const Direction<U> direction = {load<U>(s.toTheRight + i), load<U>(s.upwards + i), {}};
    const auto t =
        angleTerms(loadPair<U>(s.xHead + i, s.xRest + i), magnitude(load<U>(s.b + i)), direction, load<U>(s.up + i));
    storePair(s.yHead + i, s.yRest + i, t.quotient), store(s.up + i, t.sine);
  });
}
// All before the logarithm.
template <Function function, class W, class V>
INLINE void firstStages(StripOf<function>& s, int count) {
  pointStage<function, W, V>(s, count);
  if constexpr (function == Function::atan) {
    rowStage<W, V>(s, count);
    logTermStage<W, V>(s, count);
    angleTermStage<W, V>(s, count);
  }
}

// Masks of the elements that aren't certain.
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t logStage(StripOf<function>& s, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto e = loadPair<U>(s.eHead + i, s.eRest + i);
    Certain<U> log;
    if constexpr (function == Function::atan) {
      const LogTerms<U> terms = {e, load<U>(s.base + i), load<U>(s.baseRest + i), load<U>(s.common + i)};
      log = certainTangentLog(terms, load<U>(s.a + i));
    } else {
      log = certainLog(e);
    }
    store(s.log + i, log.value);
    certain |= signMask(log.isCertain) << i;
  });
  return ~certain;
}
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t angleStage(const StripOf<function>& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U a = load<U>(s.a + i), b = load<U>(s.b + i), log = load<U>(s.log + i), x = load<U>(s.xHead + i);
    const auto y = loadPair<U>(s.yHead + i, s.yRest + i);
    Certain<U> angle;
    if constexpr (function == Function::atan) {
      const auto row = twoColumns<U>(atanTable, rowsAt(s.rowOfAngle + i));
      angle = certainTangentAngle(AngleTerms<U>{y, load<U>(s.up + i)}, x, row);
    } else {
      angle = certainAngle<function>(ShortPair<U>{x, load<U>(s.xRest + i)}, y, a);
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
    const auto logRow = columns<4, Float64>(log1pRows, rowOfLog<Float64>(rows.near));
    const auto angleRow = twoColumns<Float64>(atanTable, rows.direction.row);
    const auto log = logTerms(rows.e, rows.common, rows.near, logRow);
    const auto angle = angleTerms(point.x, absB, rows.direction, rows.up);
    return {certainTangentLog(log, a, ofLog), certainTangentAngle(angle, point.x.head, angleRow, ofAngle)};
  } else {
    const auto point = inverseSinePoint(absA, absB, sinhAndCosSquared(excessOf(absA, absB)));
    return {certainLog(point.e, ofLog), certainAngle<function>(point.cos, point.sin, a, ofAngle)};
  }
}

}  // namespace
}  // namespace qorvane
