/* Inverts a stack of 3 by 3 matrices in one call. */
#include <kesl.h>
#include <stdio.h>

int main(void)
{
    float a[3][3][3] = {{{2, 0, 0}, {0, 4, 0}, {0, 0, 8}}, /* the second one is singular, the third one very small */
                        {{1, 2, 3}, {2, 4, 6}, {0, 0, 1}},
                        {{1e-9f, 2e-9f, 0}, {0, 1e-9f, 0}, {0, 0, 1e-9f}}};
    float x[3][3][3];
    int info[3];
    /* Behind each pointer stand its strides in bytes: from matrix to matrix, from row to row, from element to element. */
    ptrdiff_t failed = kesl_inv_32f(3, 3, &a[0][0][0], 36, 12, 4, &x[0][0][0], 36, 12, 4, info);
    printf("%td failed\n", failed);
    for (int k = 0; k < 3; ++k) printf("info %d:  %g %g %g\n", info[k], x[k][0][0], x[k][0][1], x[k][0][2]);
    return failed != 1;
}
