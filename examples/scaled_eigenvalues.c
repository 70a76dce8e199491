#include <keslmx.h>
#include <math.h>
#include <stdio.h>

int main(void)
{
    /* The covariance of points some millimetres apart, in square metres. */
    float a[3][3] = {{5e-6f, 1e-6f, 0}, {1e-6f, 3e-6f, 1e-6f}, {0, 1e-6f, 1e-6f}};
    float buffer[3 * 3], vectors[3][3], values[3];
    int exponent;

    frexpf(a[0][0] + a[1][1] + a[2][2], &exponent); /* the trace bounds the largest value */
    for (int i = 0; i < 9; ++i) a[i / 3][i % 3] = ldexpf(a[i / 3][i % 3], 28 - exponent);
    KeslStatus status = keslEigenValuesVectorsSym_m_32f(&a[0][0], 12, 4, buffer, &vectors[0][0], 12, 4, values, 3);
    if (status != keslStatusOk) return 1;
    for (int i = 0; i < 3; ++i) printf("%.3e\n", (double)ldexpf(values[i], exponent - 28));
    return 0;
}
