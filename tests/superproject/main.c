/* Exits with 0 if the library neither was compiled with fast-math options nor switches them on in the process. */
#include <math.h>
#include <qorvane.h>
#include <stdio.h>
#include <xmmintrin.h>

int main(void) {
  const Float64 x[2] = {1e-310, INFINITY};
  Float64 logarithm[1], sine[1];
  const unsigned modes = _mm_getcsr() & 0xffc0;
  nuvsLn_64f_A53(x, logarithm, 1);
  const nuvStatus status = nuvsSin_64f_A53(x + 1, sine, 1);
  printf("modes %#x, ln %g, sin %g, status %d\n", modes, logarithm[0], sine[0], (int)status);
  return !(modes == 0x1f80 && logarithm[0] < -713.8 && logarithm[0] > -713.81 && isnan(sine[0]) &&
           status == nuvStatusOutOfDomain);
}
