// The library's functions as contestants, made from the table of functions.
#include "bench/contestants.h"

namespace qorvane::bench {
namespace {

template <auto function>
void repeat(const Call& arguments, int64_t times) {
  eachCall(arguments.len, signatureOf(function).parts, times, [&](int64_t at) {
    Call piece = arguments;
    for (const double*& in : piece.in) in += at;
    for (double*& out : piece.out) out += at;
    call(function, piece);
  });
}

#define FUNCTION(name, stem, ...) {#stem, repeat<nuvs##name>},
constexpr Contestant contestants[] = {
#include "frame/functions.inc"
};

}  // namespace

const Team library = {"Qorvane", [] { return true; }, contestants, sizeof contestants / sizeof contestants[0]};

}  // namespace qorvane::bench
