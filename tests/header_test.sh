#!/bin/sh
# header_test.sh BUILD_DIR SOURCE_DIR VERSION CC OPENMP_FLAG...: the header's version is the project's, and its recipe for several threads, as it stands
# there, gives the bits and the status of one call.
set -eu
build=$1 include=$2/frame/include header=$2/frame/include/qorvane.h version=$3 cc=$4
shift 4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
stated=$(sed -n 's/^#define QORVANE_VERSION_[A-Z]* \([0-9]*\)$/\1/p' "$header" | paste -sd.)
[ "$stated" = "$version" ] || { echo "FAILED: the header has version $stated, the project $version"; exit 1; }

sed -n '/^     int64_t last = 0;/,/^     nuvStatus status/p' "$header" | sed 's| \*/$||' > "$work/recipe"
# Tan: a function whose neighbours matter, so that pieces in the wrong places show.
sed 's/nuvsExp_64f_A53/nuvsTan_64f_A53/' "$work/recipe" > "$work/recipe.inc"
cat > "$work/main.c" << 'END'
#include <qorvane.h>
#include <stdlib.h>
#include <string.h>
int main(void) {
  const int64_t count = 100001;
  double *x = malloc(800008), *y = malloc(800008), *z = malloc(800008);
  int failed = strcmp(nuvStatusText(nuvStatusOk), "success") != 0;
  for (int64_t at = -1; at < count; at += at < 0 ? 1 : 20000) {
    for (int64_t i = 0; i < count; i++) x[i] = i % 1001 == 0 ? 1e6 * (double)i : 0.37 * (double)i;
    if (at >= 0) x[at] = 1e308 * 10;
#include "recipe.inc"
    failed |= status != nuvsTan_64f_A53(x, z, (int32_t)count) || memcmp(y, z, 800008) != 0;
    failed |= status != (at < 0 ? nuvStatusOk : nuvStatusOutOfDomain);
  }
  return failed;
}
END
"$cc" -std=c11 -Wall -Wextra -Werror -I"$include" "$@" "$work/main.c" -o "$work/main" -L"$build" -lTarnwell.Qorvane -Wl,-rpath,"$build" "$@"
OMP_NUM_THREADS=4 "$work/main" || { echo "FAILED: the recipe for several threads"; exit 1; }
