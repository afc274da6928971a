// SLEEF's and libmvec's functions at AVX.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(32)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d4_##accuracy##avx
#define LIBMVEC(operands, name) _ZGVcN4##operands##_##name
#include "bench/peers_libmvec.inc"
#include "bench/peers_sleef.inc"

bool runsHere() { return __builtin_cpu_supports("avx") != 0; }

}  // namespace

const Team sleefAvx = {"SLEEF AVX", runsHere, sleef, sleefCount};
const Team libmvecAvx = {"libmvec AVX", runsHere, libmvec, libmvecCount};

}  // namespace qorvane::bench
