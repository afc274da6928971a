// The library's functions as contestants, made from the table of functions.
#include "bench/contestants.h"
#include "frame/dispatch.h"

namespace qorvane {
shapes::complexUnary complexLog10AvxPlain, complexSinAvxPlain, complexCosAvxPlain, complexTanAvxPlain,
    complexSinhAvxPlain, complexCoshAvxPlain, complexTanhAvxPlain;
shapes::complexBinary complexPowAvxPlain;
shapes::complexScalar complexPowxAvxPlain;
}  // namespace qorvane

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

constexpr Contestant unfusedContestants[] = {
    {"complexLog10", repeat<complexLog10AvxPlain>}, {"complexPow", repeat<complexPowAvxPlain>},
    {"complexPowx", repeat<complexPowxAvxPlain>},   {"complexSin", repeat<complexSinAvxPlain>},
    {"complexCos", repeat<complexCosAvxPlain>},     {"complexTan", repeat<complexTanAvxPlain>},
    {"complexSinh", repeat<complexSinhAvxPlain>},   {"complexCosh", repeat<complexCoshAvxPlain>},
    {"complexTanh", repeat<complexTanhAvxPlain>},
};

}  // namespace

const Team library = {"Qorvane", [] { return true; }, contestants, sizeof contestants / sizeof contestants[0]};
const Team unfused = {"level 5 without FMA", [] { return DispatchLevel == 5; }, unfusedContestants,
                      sizeof unfusedContestants / sizeof unfusedContestants[0]};

}  // namespace qorvane::bench
