/* A user's program in plain C11: exits with 0 if the library answers rightly. */
#include <qorvane.h>
#include <stdio.h>

int main(void) {
  const Float64 x[3] = {0.0, 1.0, 1000.0};
  Float64 y[3] = {0};
  const nuvStatus status = nuvsExp_64f_A53(x, y, 3), none = nuvsExp_64f_A53_Idx(x, 1, y, 1, 0);
  printf("exp: %g %g %g, status %d\n", y[0], y[1], y[2], (int)status);
  return !(y[0] == 1.0 && y[1] > 2.718 && y[1] < 2.719 && y[2] > 1e308 && status == nuvStatusOverflow &&
           none == nuvStatusBadLength);
}
