/* kesl: linear algebra on stacks of small matrices, right for every input.
 *
 * STACKS. A function does one operation on `count` objects: matrices, vectors or numbers. Element (i, j) of object k of an
 * operand a lies at a + k*aStride0 + i*aStride1 + j*aStride2 (a vector has no j, a number neither). Strides are in bytes and
 * may have either sign; those of a source may be 0, so that one matrix serves all objects. A matrix that is to be read or
 * written transposed, or is stored column by column, has its stride1 and stride2 exchanged. Strides must be multiples of
 * the element size; base pointers need the alignment of an element, no more.
 *
 * ARGUMENTS come in the same order everywhere: sizes, count, sources, destinations, info; each operand its pointer and then
 * its strides, stride0 first. A name ends in the element type of all operands: 32f is float, 64f is double.
 *
 * RESULT. 0: every object was done. A positive number: so many objects failed. -i: argument i, counted from 1, is not
 * acceptable, the first that is not; nothing has been read or written then. Not acceptable are, in their order in the list:
 *
 *     a size that is negative, or above its limit (32 where a function says so), or does not fit the one before it
 *     a negative count
 *     a null pointer, if the operand has elements at all
 *     a stride that is not a multiple of the element size
 *     a stride 0 of a destination along which it has more than one element
 *
 * A count of 0 is acceptable and nothing is done then; so is a size of 0: a sum of nothing is 0, a determinant of nothing 1.
 *
 * INFO may be null. Otherwise it holds `count` integers, and info[k] tells of object k: 0, or why it failed. -1 is an object
 * with a NaN or an infinity among the elements that are read, where the operation refuses them; the positive numbers are
 * given with each function. The results of an object that failed are NaN, all of them; every other object is complete, and
 * its results do not depend on its neighbours.
 *
 * IN PLACE. A destination may be the same storage as a source of the same shape and strides. Otherwise a destination must
 * not overlap another operand, nor its own objects each other. That is not tested.
 *
 * UNITS. There are no thresholds: a matrix times 2^k gives the results times a power of two, to the bit, as long as nothing
 * over- or underflows; the factor of Cholesky for even k, since 2^k must have a root. Subnormal and huge matrices are ordinary,
 * but subnormal elements may count as 0 beside huge ones: by a factor of 2^200 in 32f, 2^1500 in 64f.
 *
 * BITS. Every processor, level, layout, count and number of threads gives the same bits, but for the kind of a NaN.
 *
 * ENVIRONMENT. A call computes in round-to-nearest with subnormals, whatever the caller has set, and never traps; it leaves
 * the caller's control word and floating-point flags as it found them. It takes no memory but stack: at most
 * 32 KiB for square matrices to order 4, but for kesl_lstsq, and 512 KiB for others, as g++ 12 compiles it. Large stacks are
 * spread over threads, as many as keslcorex.h allows; the number of threads changes no result. Any number of threads may call
 * any function at once.
 *
 * ACCURACY is that of LAPACK, judged by LAPACK's own test ratios: a residual divided by the norms, the order and the unit
 * roundoff. "Ratio" below is the limit that the tests hold for every order, condition and scale.
 *
 * SPEED. Small orders have code of their own. Objects one behind another without gaps, by rows or by columns, are the fastest,
 * and structures of arrays (stride0 the element size); then those with gaps between contiguous rows or columns; anything else
 * costs two to five times as much to load. COST counts the operations for each object.
 */
#ifndef KESL_H
#define KESL_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of the library that is loaded, as "1.0.0", and the level that it was compiled for: "x86-64", "x86-64-v3" or
 * "x86-64-v4". The dynamic loader chooses the best that the processor has. */
const char *kesl_version(void);
const char *kesl_level(void);

/* Writes what a function's result means, such as "kesl_inv: argument 9, xStride1, is not acceptable", into `text`, at most
 * `size` bytes with the closing zero. `function` is a name with or without the ending _32f or _64f. Returns text. */
char *kesl_strerror(const char *function, ptrdiff_t result, char *text, size_t size);

/* ------------------------------------------------------------------------------------------- Products and sums: any size */

/* c = a b, (m,k) (k,n) -> (m,n).
 *
 * Sums     in ascending order, each product rounded before it is added. A matrix times a vector is n = 1 or m = 1.
 * In place c may be a (k = n) or b (m = k) if no size is above 32.
 * Info     always 0: NaN and infinities go the way of arithmetic.
 * Cost     2 m k n */
ptrdiff_t kesl_matmul_32f(ptrdiff_t m, ptrdiff_t k, ptrdiff_t n, ptrdiff_t count,
                          const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                          const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                          float *c, ptrdiff_t cStride0, ptrdiff_t cStride1, ptrdiff_t cStride2, int *info);
ptrdiff_t kesl_matmul_64f(ptrdiff_t m, ptrdiff_t k, ptrdiff_t n, ptrdiff_t count,
                          const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                          const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                          double *c, ptrdiff_t cStride0, ptrdiff_t cStride1, ptrdiff_t cStride2, int *info);

/* x = the sum of a[i] b[i], (n) (n) -> (), each product rounded before it is added.
 *
 * Sums     in ascending order up to n = 16 (8 in 64f). Of longer vectors every 16th (8th) product belongs to the same partial
 *          sum; each of these is formed in ascending order, and their sum is, too.
 * Info     always 0.
 * Cost     2 n */
ptrdiff_t kesl_vecdot_32f(ptrdiff_t n, ptrdiff_t count, const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                          const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, float *x, ptrdiff_t xStride0, int *info);
ptrdiff_t kesl_vecdot_64f(ptrdiff_t n, ptrdiff_t count, const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                          const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, double *x, ptrdiff_t xStride0, int *info);

/* x = the root of the sum of a[i]^2, (n) -> (), without over- or underflow on the way: scaled by a power of two. Infinite
 * if an element is infinite and none is NaN.
 *
 * Info     always 0.
 * Accuracy relative error below (n/2 + 3) eps
 * Cost     4 n */
ptrdiff_t kesl_norm_32f(ptrdiff_t n, ptrdiff_t count, const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                        float *x, ptrdiff_t xStride0, int *info);
ptrdiff_t kesl_norm_64f(ptrdiff_t n, ptrdiff_t count, const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                        double *x, ptrdiff_t xStride0, int *info);

/* c = a x b, (3) (3) -> (3): c[0] = a[1] b[2] - a[2] b[1] and so on, each product rounded.
 *
 * In place c may be a or b.
 * Info     always 0.
 * Cost     9 */
ptrdiff_t kesl_cross_32f(ptrdiff_t count, const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                         const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1,
                         float *c, ptrdiff_t cStride0, ptrdiff_t cStride1, int *info);
ptrdiff_t kesl_cross_64f(ptrdiff_t count, const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1,
                         const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1,
                         double *c, ptrdiff_t cStride0, ptrdiff_t cStride1, int *info);

/* x = the sum of the diagonal, (n,n) -> (), in ascending order. Nothing else is read.
 *
 * Info     always 0.
 * Cost     n */
ptrdiff_t kesl_trace_32f(ptrdiff_t n, ptrdiff_t count,
                         const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         float *x, ptrdiff_t xStride0, int *info);
ptrdiff_t kesl_trace_64f(ptrdiff_t n, ptrdiff_t count,
                         const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         double *x, ptrdiff_t xStride0, int *info);

/* --------------------------------------------------------------------------------------- Linear systems: orders up to 32 */

/* x = the determinant, (n,n) -> (). Over- or underflows only if the determinant itself does, within the ranges of UNITS.
 *
 * Method   elimination with partial pivoting (Golub & Van Loan, Matrix Computations, 3.4), the product of the pivots with its
 *          exponent apart; up to order 5 products where they are as accurate. A singular matrix is no failure.
 * Info     -1 NaN or infinity in a.
 * Cost     2/3 n^3 */
ptrdiff_t kesl_det_32f(ptrdiff_t n, ptrdiff_t count,
                       const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       float *x, ptrdiff_t xStride0, int *info);
ptrdiff_t kesl_det_64f(ptrdiff_t n, ptrdiff_t count,
                       const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       double *x, ptrdiff_t xStride0, int *info);

/* x = the inverse, (n,n) -> (n,n).
 *
 * Method   LU with partial pivoting, then X L = U^-1 (Golub & Van Loan 3.4; Higham, Accuracy and Stability of Numerical
 *          Algorithms, 14.3, method B); orders 2 to 4 by the adjugate where all singular values but the least are so close
 *          that it is as accurate.
 * In place x may be a.
 * Info     -1 NaN or infinity in a; i if pivot i is zero: a is singular.
 * Accuracy ratio |I - X A| / (n |A| |X| eps) below 30
 * Cost     2 n^3 */
ptrdiff_t kesl_inv_32f(ptrdiff_t n, ptrdiff_t count,
                       const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       float *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);
ptrdiff_t kesl_inv_64f(ptrdiff_t n, ptrdiff_t count,
                       const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       double *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);

/* a x = b, (n,n) (n,k) -> (n,k); k may be of any size.
 *
 * Method   LU with partial pivoting (Golub & Van Loan 3.4).
 * In place x may be b, or a if k = n.
 * Info     -1 NaN or infinity in a; i if pivot i is zero: a is singular. NaN and infinities in b go the way of arithmetic.
 * Accuracy ratio |b - A x| / (|A| |x| eps) below 30
 * Cost     2/3 n^3 + 2 n^2 k */
ptrdiff_t kesl_solve_32f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                         const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                         float *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);
ptrdiff_t kesl_solve_64f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                         const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                         double *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);

/* p a = l u, (n,n) -> (n,n) (n): u in the upper triangle, l without its unit diagonal below. Row i, counted from 0, was
 * exchanged with row pivots[i] - 1 at step i, as in LAPACK. The pivot is the first of the largest.
 *
 * Method   Gaussian elimination with partial pivoting (Golub & Van Loan 3.4).
 * In place lu may be a.
 * Info     -1 NaN or infinity in a; its pivots are then 0. A singular matrix is no failure: it has these factors too.
 * Accuracy ratio |P A - L U| / (n |A| eps) below 30
 * Cost     2/3 n^3 */
ptrdiff_t kesl_lu_32f(ptrdiff_t n, ptrdiff_t count,
                      const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                      float *lu, ptrdiff_t luStride0, ptrdiff_t luStride1, ptrdiff_t luStride2,
                      int *pivots, ptrdiff_t pivotsStride0, ptrdiff_t pivotsStride1, int *info);
ptrdiff_t kesl_lu_64f(ptrdiff_t n, ptrdiff_t count,
                      const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                      double *lu, ptrdiff_t luStride0, ptrdiff_t luStride1, ptrdiff_t luStride2,
                      int *pivots, ptrdiff_t pivotsStride0, ptrdiff_t pivotsStride1, int *info);

/* a x = b with the factors of kesl_lu, (n,n) (n) (n,k) -> (n,k); k may be of any size.
 *
 * In place x may be b, or lu if k = n.
 * Info     -1 NaN or infinity in lu, or pivots[i] not from i + 1 to n; i if pivot i, on the diagonal of u, is zero.
 * Accuracy that of kesl_solve; the bits too
 * Cost     2 n^2 k */
ptrdiff_t kesl_lu_solve_32f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                            const float *lu, ptrdiff_t luStride0, ptrdiff_t luStride1, ptrdiff_t luStride2,
                            const int *pivots, ptrdiff_t pivotsStride0, ptrdiff_t pivotsStride1,
                            const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                            float *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);
ptrdiff_t kesl_lu_solve_64f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                            const double *lu, ptrdiff_t luStride0, ptrdiff_t luStride1, ptrdiff_t luStride2,
                            const int *pivots, ptrdiff_t pivotsStride0, ptrdiff_t pivotsStride1,
                            const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                            double *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);

/* a = l l^T, (n,n) -> (n,n), l lower with a positive diagonal and zeros above. The lower triangle of a is read.
 *
 * Method   Cholesky, column by column (Golub & Van Loan 4.2).
 * In place l may be a.
 * Info     -1 NaN or infinity in a; i if the leading minor of order i is not positive definite.
 * Accuracy ratio |A - L L^T| / (n |A| eps) below 30
 * Cost     1/3 n^3 */
ptrdiff_t kesl_cholesky_32f(ptrdiff_t n, ptrdiff_t count,
                            const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                            float *l, ptrdiff_t lStride0, ptrdiff_t lStride1, ptrdiff_t lStride2, int *info);
ptrdiff_t kesl_cholesky_64f(ptrdiff_t n, ptrdiff_t count,
                            const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                            double *l, ptrdiff_t lStride0, ptrdiff_t lStride1, ptrdiff_t lStride2, int *info);

/* a x = b with the factor of kesl_cholesky, (n,n) (n,k) -> (n,k); k may be of any size. The lower triangle of l is read.
 *
 * In place x may be b, or l if k = n.
 * Info     -1 NaN or infinity in l; i if the diagonal element i of l is zero.
 * Accuracy ratio |b - A x| / (|A| |x| eps) below 30
 * Cost     2 n^2 k */
ptrdiff_t kesl_cholesky_solve_32f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                                  const float *l, ptrdiff_t lStride0, ptrdiff_t lStride1, ptrdiff_t lStride2,
                                  const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                                  float *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);
ptrdiff_t kesl_cholesky_solve_64f(ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                                  const double *l, ptrdiff_t lStride0, ptrdiff_t lStride1, ptrdiff_t lStride2,
                                  const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                                  double *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);

/* --------------------------------------------------------------------------------------- Least squares: m and n up to 32 */

/* a = q r, (m,n) -> (m,n) (n,n) with m >= n: q has orthonormal columns, r is upper with zeros below and a diagonal that is
 * not negative.
 *
 * Method   Householder reflections (Golub & Van Loan 5.2).
 * In place q may be a; r instead if m = n.
 * Info     -1 NaN or infinity in a.
 * Accuracy ratios |A - Q R| / (m |A| eps) and |I - Q^T Q| / (m eps) below 30
 * Cost     4 m n^2 */
ptrdiff_t kesl_qr_32f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                      const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                      float *q, ptrdiff_t qStride0, ptrdiff_t qStride1, ptrdiff_t qStride2,
                      float *r, ptrdiff_t rStride0, ptrdiff_t rStride1, ptrdiff_t rStride2, int *info);
ptrdiff_t kesl_qr_64f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                      const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                      double *q, ptrdiff_t qStride0, ptrdiff_t qStride1, ptrdiff_t qStride2,
                      double *r, ptrdiff_t rStride0, ptrdiff_t rStride1, ptrdiff_t rStride2, int *info);

/* x = what makes |a x - b| least, (m,n) (m,k) -> (n,k) with m >= n; k may be of any size.
 *
 * Method   Householder QR (Golub & Van Loan 5.3). The columns of a must be independent.
 * In place x may be b if m = n, or a if m = k.
 * Info     -1 NaN or infinity in a; i if diagonal element i of r is zero. A right side with
 *          a NaN or an infinity gets NaN.
 * Accuracy ratio of LAPACK's xQRT17 below 30
 * Cost     2 m n^2 + 4 m n k */
ptrdiff_t kesl_lstsq_32f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                         const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         const float *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                         float *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);
ptrdiff_t kesl_lstsq_64f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t k, ptrdiff_t count,
                         const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                         const double *b, ptrdiff_t bStride0, ptrdiff_t bStride1, ptrdiff_t bStride2,
                         double *x, ptrdiff_t xStride0, ptrdiff_t xStride1, ptrdiff_t xStride2, int *info);

/* ------------------------------------------------------------------------------ Symmetric eigenproblems: orders up to 32 */

/* w = the eigenvalues of a symmetric matrix, (n,n) -> (n), ascending. The lower triangle of a is read.
 *
 * Info     -1 NaN or infinity in a; i if i off-diagonal elements did not converge.
 * Accuracy ratio |w - W| / (|A| eps) below 50, against those of kesl_eigh
 * Cost     4/3 n^3 */
ptrdiff_t kesl_eigvalsh_32f(ptrdiff_t n, ptrdiff_t count,
                            const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                            float *w, ptrdiff_t wStride0, ptrdiff_t wStride1, int *info);
ptrdiff_t kesl_eigvalsh_64f(ptrdiff_t n, ptrdiff_t count,
                            const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                            double *w, ptrdiff_t wStride0, ptrdiff_t wStride1, int *info);

/* a v = v w, (n,n) -> (n) (n,n): eigenvalues, ascending, and orthonormal eigenvectors in the columns of v. The largest
 * component of each vector (the first of equals) is positive. The lower triangle of a is read.
 *
 * In place v may be a.
 * Info     -1 NaN or infinity in a; i if i off-diagonal elements did not converge.
 * Accuracy ratios |A - V W V^T| / (n |A| eps) and |I - V V^T| / (n eps) below 50
 * Cost     9 n^3 */
ptrdiff_t kesl_eigh_32f(ptrdiff_t n, ptrdiff_t count,
                        const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                        float *w, ptrdiff_t wStride0, ptrdiff_t wStride1,
                        float *v, ptrdiff_t vStride0, ptrdiff_t vStride1, ptrdiff_t vStride2, int *info);
ptrdiff_t kesl_eigh_64f(ptrdiff_t n, ptrdiff_t count,
                        const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                        double *w, ptrdiff_t wStride0, ptrdiff_t wStride1,
                        double *v, ptrdiff_t vStride0, ptrdiff_t vStride1, ptrdiff_t vStride2, int *info);

/* -------------------------------------------------------------------------------- General eigenproblems: orders up to 32 */

/* wr + i wi = the eigenvalues, (n,n) -> (n) (n). Conjugate pairs lie together, the positive imaginary part
 * first.
 *
 * Method   balancing, Hessenberg form, Francis's double steps (Golub & Van Loan 7.5; Ahues & Tisseur, LAPACK Working Note
 *          122; James, Langou & Lowery, On matrix balancing and eigenvector computation).
 * Info     -1 NaN or infinity in a; i if the iteration did not find eigenvalues 1 to i.
 * Accuracy that of kesl_eig
 * Cost     10 n^3 */
ptrdiff_t kesl_eigvals_32f(ptrdiff_t n, ptrdiff_t count,
                           const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                           float *wr, ptrdiff_t wrStride0, ptrdiff_t wrStride1,
                           float *wi, ptrdiff_t wiStride0, ptrdiff_t wiStride1, int *info);
ptrdiff_t kesl_eigvals_64f(ptrdiff_t n, ptrdiff_t count,
                           const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                           double *wr, ptrdiff_t wrStride0, ptrdiff_t wrStride1,
                           double *wi, ptrdiff_t wiStride0, ptrdiff_t wiStride1, int *info);

/* Eigenvalues as by kesl_eigvals with right and left eigenvectors, (n,n) -> (n) (n) (n,n) (n,n): a vr = vr w and
 * vl^H a = w vl^H. The vector of a real eigenvalue j is column j; those of a pair j, j+1 are (column j) + i (column j+1) and
 * its conjugate. Vectors have length 1 and a component of largest magnitude that is real and positive. Either of vr and vl
 * may be null and is not computed then; its strides are not looked at.
 *
 * Method   that of kesl_eigvals, then back substitution.
 * In place vr or vl may be a.
 * Info     -1 NaN or infinity in a; i if the iteration did not find eigenvalues 1 to i.
 * Accuracy ratio |A V - V W| / (|A| |V| eps) below 20, A as balanced
 * Cost     25 n^3 */
ptrdiff_t kesl_eig_32f(ptrdiff_t n, ptrdiff_t count,
                       const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       float *wr, ptrdiff_t wrStride0, ptrdiff_t wrStride1,
                       float *wi, ptrdiff_t wiStride0, ptrdiff_t wiStride1,
                       float *vr, ptrdiff_t vrStride0, ptrdiff_t vrStride1, ptrdiff_t vrStride2,
                       float *vl, ptrdiff_t vlStride0, ptrdiff_t vlStride1, ptrdiff_t vlStride2, int *info);
ptrdiff_t kesl_eig_64f(ptrdiff_t n, ptrdiff_t count,
                       const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       double *wr, ptrdiff_t wrStride0, ptrdiff_t wrStride1,
                       double *wi, ptrdiff_t wiStride0, ptrdiff_t wiStride1,
                       double *vr, ptrdiff_t vrStride0, ptrdiff_t vrStride1, ptrdiff_t vrStride2,
                       double *vl, ptrdiff_t vlStride0, ptrdiff_t vlStride1, ptrdiff_t vlStride2, int *info);

/* ------------------------------------------------------------------------------------- Singular values: m and n up to 32 */

/* s = the singular values, (m,n) -> (min(m,n)), descending.
 *
 * Method   one-sided Jacobi (de Rijk, A one-sided Jacobi algorithm): small singular values are as accurate as the scaling of
 *          the columns allows (Demmel & Veselic, Jacobi's method is more accurate than QR).
 * Info     -1 NaN or infinity in a; 1 if the iteration did not converge.
 * Accuracy that of kesl_svd
 * Cost     some 30 n^3 */
ptrdiff_t kesl_svdvals_32f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                           const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                           float *s, ptrdiff_t sStride0, ptrdiff_t sStride1, int *info);
ptrdiff_t kesl_svdvals_64f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                           const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                           double *s, ptrdiff_t sStride0, ptrdiff_t sStride1, int *info);

/* a = u s vt, (m,n) -> (m,p) (p) (p,n) with p = min(m,n): orthonormal columns of u, descending singular values, orthonormal
 * rows of vt. The largest component of each row of vt (the first of equals) is positive.
 *
 * Method   that of kesl_svdvals.
 * In place u may be a if m >= n, or vt if m <= n.
 * Info     -1 NaN or infinity in a; 1 if the iteration did not converge.
 * Accuracy ratios |A - U S Vt| / (d |A| eps), |I - U^T U| / (d eps) and |I - Vt Vt^T| / (d eps) below 50, d = max(m,n)
 * Cost     some 50 n^3 */
ptrdiff_t kesl_svd_32f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                       const float *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       float *u, ptrdiff_t uStride0, ptrdiff_t uStride1, ptrdiff_t uStride2,
                       float *s, ptrdiff_t sStride0, ptrdiff_t sStride1,
                       float *vt, ptrdiff_t vtStride0, ptrdiff_t vtStride1, ptrdiff_t vtStride2, int *info);
ptrdiff_t kesl_svd_64f(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count,
                       const double *a, ptrdiff_t aStride0, ptrdiff_t aStride1, ptrdiff_t aStride2,
                       double *u, ptrdiff_t uStride0, ptrdiff_t uStride1, ptrdiff_t uStride2,
                       double *s, ptrdiff_t sStride0, ptrdiff_t sStride1,
                       double *vt, ptrdiff_t vtStride0, ptrdiff_t vtStride1, ptrdiff_t vtStride2, int *info);

#ifdef __cplusplus
}
#endif
#endif
