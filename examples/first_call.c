/* Inverts an array of 3 by 3 matrices in one call. */
#include <keslmx.h>
#include <stdio.h>

int main(void)
{
    float a[2][3][3] = {{{2, 0, 0}, {0, 4, 0}, {0, 0, 8}}, {{1, 2, 0}, {0, 1, 0}, {0, 0, 1}}};
    float inverse[2][3][3], buffer[3 * 3 + 3];
    /* Distances are in bytes: from matrix to matrix, from row to row, from element to element. */
    KeslStatus status = keslInvert_ma_32f(&a[0][0][0], 36, 12, 4, buffer, &inverse[0][0][0], 36, 12, 4, 3, 2);
    if (status != keslStatusOk) return 1;
    for (int k = 0; k < 2; ++k)
        for (int i = 0; i < 3; ++i) printf("%5g %5g %5g\n", inverse[k][i][0], inverse[k][i][1], inverse[k][i][2]);
    return 0;
}
