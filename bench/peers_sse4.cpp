// SLEEF's and libmvec's functions at SSE4.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(16)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d2_##accuracy##sse4
#define LIBMVEC(operands, name) _ZGVbN2##operands##_##name
#include "bench/peers_libmvec.inc"
#include "bench/peers_sleef.inc"

bool runsHere() { return __builtin_cpu_supports("sse4.1") != 0; }

}  // namespace

const Team sleefSse4 = {"SLEEF SSE4", runsHere, sleef, sleefCount};
const Team libmvecSse4 = {"libmvec SSE4", runsHere, libmvec, libmvecCount};

}  // namespace qorvane::bench
