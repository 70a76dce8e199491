/* Inverts two matrices of order 2, one of them singular. */
#include <kesl.h>
#include <string.h>

int main(void)
{
    const double a[2][2][2] = {{{4, 7}, {2, 6}}, {{1, 2}, {2, 4}}};
    double x[2][2][2];
    char text[80];
    int info[2];
    const ptrdiff_t e = sizeof(double), row = 2 * e, object = 2 * row;

    if (kesl_inv_64f(2, 2, a[0][0], object, row, e, x[0][0], object, row, e, info) != 1) return 1;
    if (info[0] != 0 || info[1] != 2) return 2;
    if (x[0][0][0] * 4 + x[0][0][1] * 2 < 0.999999 || x[0][0][0] * 4 + x[0][0][1] * 2 > 1.000001) return 3;
    if (x[1][0][0] == x[1][0][0]) return 4;
    if (kesl_inv_64f(2, 2, a[0][0], object, row, e, x[0][0], object, row, 0, info) != -10) return 5;
    if (strcmp(kesl_strerror("kesl_inv_64f", -10, text, sizeof text),
               "kesl_inv_64f: argument 10, xStride2, is not acceptable") != 0)
        return 6;
    if (strncmp(kesl_level(), "x86-64", 6) != 0 || strcmp(kesl_version(), "1.0.0") != 0) return 7;
    return 0;
}
