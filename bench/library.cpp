// The library's functions as contestants, made from the table of functions.
#include "bench/contestants.h"
#include "frame/dispatch.h"

namespace qorvane::bench {
namespace {

[[maybe_unused]] nuvStatus call(shapes::realUnary* f, const Work& w) { return f(w.a, w.out, w.n); }
[[maybe_unused]] nuvStatus call(shapes::realBinary* f, const Work& w) { return f(w.a, w.b, w.out, w.n); }
[[maybe_unused]] nuvStatus call(shapes::realSplit* f, const Work& w) { return f(w.a, w.out, w.outB, w.n); }
[[maybe_unused]] nuvStatus call(shapes::realScalar* f, const Work& w) { return f(w.a, w.value, w.out, w.n); }

template <auto f>
void repeat(const Work& work, int64_t times) {
  for (; times > 0; --times) {
    call(f, work);
    keep();
  }
}

#define FUNCTION(name, stem, ...) {#stem, repeat<nuvs##name>},
constexpr Contestant contestants[] = {
#include "frame/functions.inc"
};

}  // namespace

const Team library = {"Qorvane", [] { return true; }, contestants, sizeof contestants / sizeof contestants[0]};

}  // namespace qorvane::bench
