/* Adds two matrices of order 2 and inverts one; includes every installed header. */
#include <keslcorex.h>
#include <keslmx.h>
#include <stdio.h>
#include <string.h>

int main(void)
{
    const double a[2][2] = {{4, 7}, {2, 6}}, b[2][2] = {{1, 0}, {0, 1}};
    double sum[2][2], inverse[2][2], buffer[6];
    const int e = sizeof(double), row = 2 * sizeof(double);

    if (keslAdd_mm_64f(a[0], row, e, b[0], row, e, sum[0], row, e, 2, 2) != keslStatusOk) return 1;
    if (sum[0][0] != 5 || sum[0][1] != 7 || sum[1][0] != 2 || sum[1][1] != 7) return 2;
    if (keslInvert_m_64f(a[0], row, e, buffer, inverse[0], row, e, 2) != keslStatusOk) return 3;
    if (inverse[0][0] * 4 + inverse[0][1] * 2 < 0.999999 || inverse[0][0] * 4 + inverse[0][1] * 2 > 1.000001) return 4;
    if (keslAdd_mm_64f(NULL, row, e, b[0], row, e, sum[0], row, e, 2, 2) != keslStatusNullPointer) return 5;
    if (strcmp(keslGetLibVersion()->libraryName, "libkeslmx.so.6.1") != 0) return 6;
    return 0;
}
