// SLEEF's and libmvec's functions at AVX-512.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(64)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d8_##accuracy##avx512f
#define LIBMVEC(operands, name) _ZGVeN8##operands##_##name
#include "bench/peers_libmvec.inc"
#include "bench/peers_sleef.inc"

bool runsHere() { return __builtin_cpu_supports("avx512f") != 0; }

}  // namespace

const Team sleefAvx512 = {"SLEEF AVX-512", runsHere, sleef, sleefCount};
const Team libmvecAvx512 = {"libmvec AVX-512", runsHere, libmvec, libmvecCount};

}  // namespace qorvane::bench
