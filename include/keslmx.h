/* keslmx: operations on many small matrices and vectors in one call.
 *
 * OBJECTS. A function works on one object or on an array of `count` objects of one size: matrices of `height` rows and `width`
 * columns, vectors of `len` elements, constants. Its name tells them, as in keslAdd_mam_32f_L:
 *
 *     Add    the operation
 *     mam    the sources in order: m matrix, t matrix that is read transposed, v vector, c constant; an `a` behind a letter
 *            makes it an array. The destination is an array as soon as a source is; it is never transposed.
 *     32f    the element type of all operands: 32f is float, 64f is double
 *     _L     the layout; no ending for the standard layout
 *
 * FAMILIES. Each has a comment of its own below, in this order, behind keslGetLibVersion. The number is the smallest count from
 * which some function of the family uses threads, for matrices of order 3 and vectors of length 3.
 *
 *     keslAdd, keslSub            sums and differences of matrices                                 342
 *     keslAdd, keslSub            the same of vectors and constants                               2223
 *     keslMul                     matrices and vectors by constants                                834
 *     keslSaxpy                   src1 * val + src2 of vectors                                    4445
 *     keslLComb                   src1 * val1 + src2 * val2 of vectors                            2223
 *     keslCopy                    from one layout to another                                     never
 *     keslExtract                 into packed memory                                             never
 *     keslLoadIdentity            the unit matrix                                                never
 *     keslTranspose               out of place                                                   never
 *     keslMul                     matrices by matrices                                             342
 *     keslMul                     matrices by vectors                                              615
 *     keslGaxpy                   a matrix by a vector, plus a vector                              556
 *     keslDotProduct              of two vectors                                                  3334
 *     keslCrossProduct            of two vectors of three elements                                6667
 *     keslL2Norm                  the Euclidean length of a vector                                6667
 *     keslFrobNorm                the Frobenius norm of a matrix                                  2223
 *     keslTrace                   the sum of the diagonal                                         6667
 *     keslLUDecomp                LU factors with partial pivoting                                2223
 *     keslLUBackSubst             solves A x = b with them                                         114
 *     keslCholeskyDecomp          the Cholesky factor                                               81
 *     keslCholeskyBackSubst       solves A x = b with it                                           114
 *     keslQRDecomp                Householder's QR factors                                         101
 *     keslQRBackSubst             least squares with them                                          121
 *     keslDet                     the determinant                                                 6667
 *     keslInvert                  the inverse                                                     3334
 *     keslEigenValuesSym          eigenvalues of symmetric matrices                               1667
 *     keslEigenValuesVectorsSym   and eigenvectors                                                  81
 *     keslEigenValues             eigenvalues of general matrices; keslEigenValuesGetBufSize       834
 *     keslEigenValuesVectors      and eigenvectors, also ...Right, ...Left, ...GetBufSize          234
 *     keslAffineTransform3DH      points through a matrix in homogeneous coordinates               331
 *
 * LAYOUTS. Where element (i, j) of object k lies (i the row, j the column; a vector has no i and no stride1):
 *
 *     standard  src + k*stride0 + i*stride1 + j*stride2              one base pointer
 *     L         src[k] + roiShift + i*stride1 + j*stride2            a list with one pointer for each object
 *     P         src[i*width + j] + roiShift + k*stride0              a list with one pointer for each element of object 0
 *
 * STRIDES AND SHIFTS ARE IN BYTES, all sizes and counts in objects or elements. Every stride must be at least 1 and every
 * roiShift at least 0, and all must be multiples of the element size; nothing else is asked of them, so rows may have gaps and
 * objects may be interleaved. A single object in an L function keeps the arguments of the standard layout. An operand t is
 * stored with `width` rows of `height` elements when the sizes of a function are those of its result: element (i, j) is read
 * at src + j*stride1 + i*stride2, in P at src[j*height + i]. Strides are of type int, so neighbours lie at most 2 GiB apart;
 * an array may be of any length. An element must lie at a multiple of its size; no pointer needs more alignment than that.
 *
 * A list of sources may name an object or an element more than once. A destination must not: each of its elements has an
 * address of its own, or the result depends on the processor.
 *
 * EXAMPLES. The inverses of `count` matrices of order 3, allocated one by one (L), then the eigenvalues of `count` symmetric
 * tensors of six numbers (P; the list names the upper and the lower triangle by the same addresses):
 *
 *     KeslStatus invertAll(const float *const *a, float *const *inverse, int count)
 *     {
 *         float buffer[3 * 3 + 3];
 *         return keslInvert_ma_32f_L(a, 0, 12, 4, buffer, inverse, 0, 12, 4, 3, count);
 *     }
 *
 *     KeslStatus principalValues(const float (*t)[6], float (*values)[3], int count)       // xx xy xz yy yz zz
 *     {
 *         const float *xx = &t[0][0], *xy = xx + 1, *xz = xx + 2, *yy = xx + 3, *yz = xx + 4, *zz = xx + 5;
 *         const float *const list[9] = {xx, xy, xz, xy, yy, yz, xz, yz, zz};
 *         float buffer[3 * 3];
 *         return keslEigenValuesSym_ma_32f_P(list, 0, sizeof *t, buffer, &values[0][0], 3, count);
 *     }
 *
 * In Voigt's order xx yy zz yz xz xy that list is {t, t + 5, t + 4, t + 5, t + 1, t + 3, t + 4, t + 3, t + 2}.
 *
 * MATRICES STORED BY COLUMNS. Exchange stride1 and stride2, for each operand by itself: then every function does what it says,
 * though slower where a stride2 is not the element size. Often it is faster to give them as if they were stored by rows, so
 * that the library sees the transpose A' of each A. Up to rounding:
 *     keslDet, keslTrace, keslFrobNorm, keslEigenValues    give the same (eigenvalues perhaps in another order),
 *     keslInvert         gives the inverse, in a destination that is stored by columns, too,
 *     keslAdd, keslSub, keslMul by constants, keslCopy     the same, if all operands are stored by columns; exchange the sizes,
 *     keslMul            B A in place of A B: exchange the two sources. A matrix by a vector: the members with t,
 *     keslEigenValuesSym, keslEigenValuesVectorsSym    the same values: a symmetric matrix is its own transpose. Row c of
 *                        dstVectors, read by columns, is then the vector of value c,
 *     keslEigenValuesVectors    works on the transpose of src, and so on the A that is stored by columns: VectorsRight gives
 *                        its right eigenvectors, as columns if the strides of the destination are exchanged, else as rows,
 *     keslCholeskyDecomp, keslCholeskyBackSubst    the same, if both triangles of src are stored. The factor lies in the lower
 *                        triangle by rows, which is the upper one by columns, and both functions have it there,
 *     keslLUDecomp, keslQRDecomp    factors of A', which are not those of A: exchange the strides instead.
 *
 * SPEED. The functions are made for matrices of order 3 to 6 and vectors of length 3 to 6. Rows without gaps between their
 * elements (every stride2 the element size) are fast, objects without any gap the fastest; so are arrays that are interleaved
 * as a structure of arrays (stride0 the element size), and matrices whose columns have no gaps, in all that factors, inverts,
 * substitutes or finds eigenvalues. There, orders 1, 2 and 7 to 16 too are worked on several objects at a time, and so are arrays
 * of up to 144 elements an object in keslMul and keslGaxpy, in every layout, where they do not go row by row. All else, and
 * larger orders, go object by object in plain loops: additions cost of the order of n squared, products, factors, determinants
 * and eigenvalues n cubed, keslInvert n to the fifth power. A call takes at most 64 KiB of stack (as g++ 12 compiles it).
 *
 * BITS. Each operation is rounded to the element type before the next; nothing is fused, and subnormal numbers are kept. A
 * result has the same bits on every processor, for every count and place in the array, every alignment and every number of
 * threads. Layouts and strides do not matter either, nor whether an object is in an array, but for what these families tell:
 * keslMul of matrices and of matrices and vectors, keslDotProduct, keslL2Norm, keslFrobNorm, keslDet (the sign of a zero),
 * keslCholeskyDecomp, keslEigenValuesSym, keslEigenValuesVectorsSym, keslEigenValuesVectors. The sign and the payload of a NaN
 * are not promised where there is arithmetic. All this is for rounding to nearest; the functions work under the rounding
 * direction, flush-to-zero and denormals-are-zero that the calling thread has set, and with another direction the sign of a
 * zero may differ between processors.
 *
 * EXCEPTIONS. Infinities and NaN run through the arithmetic. A call on one object, but for the eigenproblems, and any call of
 * keslAdd, keslSub, keslSaxpy, keslLComb and keslMul by constants raises the floating-point exceptions of its operations, as the
 * same expressions in C do; in threads none. All other calls neither trap nor leave a flag that was not set before, whatever
 * the data.
 *
 * STATUS. Every function returns a KeslStatus. Arguments are tested class by class, in an order that each family states by
 * these letters, and the first test that fails gives the status; then no operand has been read or written.
 *
 *     N  a null pointer (the entries of a list are not looked at)                  keslStatusNullPointer
 *     C  count below 1                                                             keslStatusBadCount
 *     S  a size below 1                                                            keslStatusBadSize
 *     M  sizes of operands that do not fit together                                keslStatusSizeMismatch
 *     B  a stride below 1, or not a multiple of the element size                   keslStatusBadStride
 *     R  a roiShift below 0, or not a multiple of the element size                 keslStatusBadRoiShift
 *
 * The order is N S B (P: N S R) without an array operand and N C S B (L, P: N C S B R) with one, unless a family says
 * otherwise. A good status says that the arguments were good and no object failed as its family defines it; it does not say
 * that results are finite. All `count` objects of the sources must be readable, also those behind one that fails: several are
 * read at a time.
 *
 * OVERLAP of the operands is not tested. Where a family allows it, a destination on a source of the same layout, with the same
 * strides, shift and sizes, and lists that name the same addresses in the same order, gives the same result as apart from it.
 * All other overlap of a destination with a source gives results that mean nothing. Sources may overlap each other.
 *
 * THREADS. Any number of threads may call any function at once if their destinations do not overlap. Nothing is kept between
 * calls.
 *     Calls on large arrays are spread over a team of OpenMP threads, each of which takes a contiguous slice: the sizes of the
 * slices differ by one object at most, and the first count % threads of them are the longer ones. A measure of the elements to
 * be read and written, from sizes and count, decides, by a threshold for each family, type and layout; the table above tells
 * the order of magnitude. The number of threads is that of OMP_NUM_THREADS or omp_set_num_threads, within what affinity and
 * control group allow and other work leaves idle, and keslcorex.h sets another. Calls with fewer objects than threads, calls
 * from inside a parallel region, and all calls while the number is 1 run on the calling thread.
 *     Where no object fails the results do not depend on the number of threads. Where objects fail, each slice ends at its own
 * first failure, as its family says, and the others are worked on to their ends or failures: so the number of threads decides
 * which objects are done. If the statuses of the slices differ the call returns one of them, not always the same. To know
 * which objects are done, set one thread.
 *     A team has scratch of its own and leaves `buffer` alone. It comes from the OpenMP runtime's allocator for the time of
 * the call, in elements for each thread: n*n + n in keslDet and keslInvert, n*n in keslEigenValuesSym and
 * keslEigenValuesVectorsSym, (3 n + 5) * n in the other eigenproblems, height in keslQRDecomp and keslQRBackSubst. Where it
 * cannot be had the call runs on one thread, with `buffer`. So does a call in P whose last object lies 2 GiB or more behind
 * the entries of a list, which is where roiShift + (count - 1) * stride0 is no int.
 *     The threads of a team that has done its work wait for the next, and by default do so without sleeping. Where other work
 * comes and goes, which the number of threads follows some milliseconds late, OMP_WAIT_POLICY=passive or GOMP_SPINCOUNT=0, or
 * one thread, keeps a call from waiting for a member that has no processor.
 */
#ifndef KESLMX_H
#define KESLMX_H

#ifdef __cplusplus
extern "C" {
#endif

typedef int KeslStatus;
enum {                                    /* 0, or what went wrong: */
    keslStatusOk                  =    0,
    keslStatusFailed              =   -2,  /* the computation could not finish */
    keslStatusBadSize             =   -6,  /* a size below 1 */
    keslStatusNullPointer         =   -8,  /* a pointer is null */
    keslStatusDivideByZero        =  -10,  /* a divisor too small to use */
    keslStatusNotPositiveDefinite = -179,  /* the matrix has no Cholesky factor */
    keslStatusBadStride           = -182,  /* a stride below 1, or not a multiple of the element size */
    keslStatusSingular            = -195,  /* a matrix is singular to working precision */
    keslStatusBadRoiShift         = -202,  /* a roiShift below 0, or not a multiple of the element size */
    keslStatusBadCount            = -203,  /* count below 1 */
    keslStatusSizeMismatch        = -204,  /* the sizes of two operands do not fit */
    keslStatusNoConvergence       = -205   /* an iteration reached its limit */
};

/* The version of the library that is loaded. */
typedef struct KeslVersionRecord {
    int         versionMajor;
    int         versionMinor;
    int         buildSeries;
    int         buildNumber;
    char        targetTag[4];             /* filled up with zero bytes */
    const char *libraryName;              /* the soname */
    const char *versionText;
    const char *buildDate;
} KeslVersionRecord;

/* Returns the same constant record on every call; it is not to be freed. */
const KeslVersionRecord *keslGetLibVersion(void);

/* ---------------------------------------------------------------------------------------------- keslAdd on matrices
 * dst = src1 + src2, element by element: one addition for each element, rounded to the element type.
 *
 * Shapes     mm, tm, tt (single);  mam, mat, tam, tat (an array and a single matrix, which is added to each object);
 *            mama, tama, tata (two arrays, object by object). Addition commutes: a sum in another order is one of these.
 * Sizes      width, height: those of the result; an operand t is stored with width rows of height elements.
 * Overlap    dst may be the same storage, with the same strides, as an operand that is not transposed and, where there is an
 *            array, is one: in mm either source, in tm src2; in mam and mat src1; in mama either source, in tama src2.
 * Status     mam: N C B S (L, P: N C S B R), strides before sizes; all others in the usual order.
 *            Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslAdd_mm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_mm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_mm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_mm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_mam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_mam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_mam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_mat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_mat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_tam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_tam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_tat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslAdd_tat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_mama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslAdd_mama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_mama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslAdd_tama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_tama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslAdd_tama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_tama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslAdd_tata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_tata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslAdd_tata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslAdd_tata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);

/* ---------------------------------------------------------------------------------------------- keslSub on matrices
 * dst = src1 - src2, element by element: one subtraction for each element, rounded to the element type.
 *
 * Shapes     mm, mt, tm, tt (single);  mam, mat, tam, tat (a single matrix is subtracted from each object);
 *            mma, mta, tma, tta (each object is subtracted from a single matrix);  mama, mata, tama, tata (two arrays).
 * Sizes      width, height: those of the result; an operand t is stored with width rows of height elements.
 * Overlap    dst may be the same storage, with the same strides, as an operand that is not transposed and, where there is an
 *            array, is one: in mm either source, in tm src2, in mt src1; in mam and mat src1, in mma and tma src2; in mama
 *            either source, in tama src2, in mata src1.
 * Status     mam, mma: N C B S (L, P: N C S B R), strides before sizes; all others in the usual order.
 *            Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslSub_mm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1,
    int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1,
    int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mma_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mma_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mma_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mma_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mta_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mta_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mta_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_mta_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tma_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tma_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tma_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tma_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tta_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tta_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tta_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslSub_tta_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1,
    int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_mama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_mama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_mama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_mata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_mata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_mata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_mata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_tama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_tama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_tama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_tama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_tata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_tata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslSub_tata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2,
    int width, int height, int count);
KeslStatus keslSub_tata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);

/* ------------------------------------------------------------------------------------ keslAdd on vectors and constants
 * dst = src1 + src2 or src + val, element by element: one addition for each element, rounded to the element type.
 *
 * Shapes     vv, vc (single);  vav, vava (a single vector is added to each object; two arrays object by object);
 *            vac (one constant for all objects);  vaca (a constant for each object);
 *            vca (one vector and count constants make count vectors: dst(k) = src + val(k)).
 *            Addition commutes: a sum in another order is one of these.
 * Sizes      len: the length of every vector.
 * val        By value it is the last argument. An array of constants has a base pointer and valStride0 in the standard layout
 *            and in P, and a list of pointers with valRoiShift in L.
 * Overlap    None: unlike matrices, vectors are not added in place.
 * Status     vav: N S B C (L: N S B R C, P: N S B C R), the count behind the strides; all others in the usual order.
 *            Not tested: the roiShifts of keslAdd_vca_64f_P; srcStride0 of keslAdd_vaca_32f_P.
 *            Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslAdd_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int dstStride2, int len);
KeslStatus keslAdd_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int len);
KeslStatus keslAdd_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2, double *dst,
    int dstStride2, int len);
KeslStatus keslAdd_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int len);
KeslStatus keslAdd_vc_32f(const float *src, int srcStride2, float *dst, int dstStride2, int len, float val);
KeslStatus keslAdd_vc_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int len,
    float val);
KeslStatus keslAdd_vc_64f(const double *src, int srcStride2, double *dst, int dstStride2, int len, double val);
KeslStatus keslAdd_vc_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int len,
    double val);
KeslStatus keslAdd_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2, int src2Stride2,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vac_32f(const float *src, int srcStride0, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count, float val);
KeslStatus keslAdd_vac_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslAdd_vac_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslAdd_vac_64f(const double *src, int srcStride0, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count, double val);
KeslStatus keslAdd_vac_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslAdd_vac_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, double val);
KeslStatus keslAdd_vaca_32f(const float *src, int srcStride0, int srcStride2, const float *val, int valStride0,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vaca_32f_L(const float *const *src, int srcRoiShift, int srcStride2, const float *const *val,
    int valRoiShift, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vaca_32f_P(const float *const *src, int srcRoiShift, int srcStride0, const float *val,
    int valStride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vaca_64f(const double *src, int srcStride0, int srcStride2, const double *val, int valStride0,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vaca_64f_L(const double *const *src, int srcRoiShift, int srcStride2, const double *const *val,
    int valRoiShift, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vaca_64f_P(const double *const *src, int srcRoiShift, int srcStride0, const double *val,
    int valStride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vca_32f(const float *src, int srcStride2, const float *val, int valStride0, float *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vca_32f_L(const float *src, int srcStride2, const float *const *val, int valRoiShift,
    float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vca_32f_P(const float *const *src, int srcRoiShift, const float *val, int valStride0,
    float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslAdd_vca_64f(const double *src, int srcStride2, const double *val, int valStride0, double *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslAdd_vca_64f_L(const double *src, int srcStride2, const double *const *val, int valRoiShift,
    double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslAdd_vca_64f_P(const double *const *src, int srcRoiShift, const double *val, int valStride0,
    double *const *dst, int dstRoiShift, int dstStride0, int len, int count);

/* ------------------------------------------------------------------------------------ keslSub on vectors and constants
 * dst = the first operand minus the second, element by element: one subtraction for each element, rounded to the element type.
 *
 * Shapes     vv, vc, cv (single);  vav (a single vector is subtracted from each object);  vva (each object from a single
 *            vector);  vava (two arrays);  vac, cva (one constant for all objects, subtracted or subtracted from);
 *            vaca, cava (a constant for each object);  vca, cav (one vector and count constants make count vectors:
 *            src - val(k), val(k) - src).
 * Arguments  cv, cva, cava and cav take those of vc, vac, vaca and vca: first the vector, then the constant. The letters tell
 *            only which is subtracted from which: c in front, and the vector is subtracted from the constant.
 * Sizes      len: the length of every vector.
 * val        By value it is the last argument. An array of constants has a base pointer and valStride0 in the standard layout
 *            and in P, and a list of pointers with valRoiShift in L.
 * Overlap    None: unlike matrices, vectors are not subtracted in place.
 * Status     vav: N S B C (L: N S B R C, P: N S B C R), the count behind the strides; all others in the usual order.
 *            Not tested: the roiShifts of keslSub_cav_32f_P.
 *            Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 * Threads    Whether cva is threaded depends on count alone, not on len; keslSub_vva_64f_P never is.
 */
KeslStatus keslSub_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int dstStride2, int len);
KeslStatus keslSub_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int len);
KeslStatus keslSub_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2, double *dst,
    int dstStride2, int len);
KeslStatus keslSub_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    double *const *dst, int dstRoiShift, int len);
KeslStatus keslSub_vc_32f(const float *src, int srcStride2, float *dst, int dstStride2, int len, float val);
KeslStatus keslSub_vc_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int len,
    float val);
KeslStatus keslSub_vc_64f(const double *src, int srcStride2, double *dst, int dstStride2, int len, double val);
KeslStatus keslSub_vc_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int len,
    double val);
KeslStatus keslSub_cv_32f(const float *src, int srcStride2, float *dst, int dstStride2, int len, float val);
KeslStatus keslSub_cv_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int len,
    float val);
KeslStatus keslSub_cv_64f(const double *src, int srcStride2, double *dst, int dstStride2, int len, double val);
KeslStatus keslSub_cv_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int len,
    double val);
KeslStatus keslSub_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2, int src2Stride2,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vva_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vva_32f_L(const float *src1, int src1Stride2, const float *const *src2, int src2RoiShift,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vva_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vva_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride2,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vva_64f_L(const double *src1, int src1Stride2, const double *const *src2, int src2RoiShift,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vva_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift,
    int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *const *src2,
    int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vac_32f(const float *src, int srcStride0, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count, float val);
KeslStatus keslSub_vac_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslSub_vac_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslSub_vac_64f(const double *src, int srcStride0, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count, double val);
KeslStatus keslSub_vac_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslSub_vac_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, double val);
KeslStatus keslSub_cva_32f(const float *src, int srcStride0, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count, float val);
KeslStatus keslSub_cva_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslSub_cva_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslSub_cva_64f(const double *src, int srcStride0, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count, double val);
KeslStatus keslSub_cva_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslSub_cva_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, double val);
KeslStatus keslSub_vaca_32f(const float *src, int srcStride0, int srcStride2, const float *val, int valStride0,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vaca_32f_L(const float *const *src, int srcRoiShift, int srcStride2, const float *const *val,
    int valRoiShift, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vaca_32f_P(const float *const *src, int srcRoiShift, int srcStride0, const float *val,
    int valStride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vaca_64f(const double *src, int srcStride0, int srcStride2, const double *val, int valStride0,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vaca_64f_L(const double *const *src, int srcRoiShift, int srcStride2, const double *const *val,
    int valRoiShift, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vaca_64f_P(const double *const *src, int srcRoiShift, int srcStride0, const double *val,
    int valStride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_cava_32f(const float *src, int srcStride0, int srcStride2, const float *val, int valStride0,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_cava_32f_L(const float *const *src, int srcRoiShift, int srcStride2, const float *const *val,
    int valRoiShift, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_cava_32f_P(const float *const *src, int srcRoiShift, int srcStride0, const float *val,
    int valStride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_cava_64f(const double *src, int srcStride0, int srcStride2, const double *val, int valStride0,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_cava_64f_L(const double *const *src, int srcRoiShift, int srcStride2, const double *const *val,
    int valRoiShift, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_cava_64f_P(const double *const *src, int srcRoiShift, int srcStride0, const double *val,
    int valStride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vca_32f(const float *src, int srcStride2, const float *val, int valStride0, float *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vca_32f_L(const float *src, int srcStride2, const float *const *val, int valRoiShift,
    float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vca_32f_P(const float *const *src, int srcRoiShift, const float *val, int valStride0,
    float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_vca_64f(const double *src, int srcStride2, const double *val, int valStride0, double *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_vca_64f_L(const double *src, int srcStride2, const double *const *val, int valRoiShift,
    double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_vca_64f_P(const double *const *src, int srcRoiShift, const double *val, int valStride0,
    double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_cav_32f(const float *src, int srcStride2, const float *val, int valStride0, float *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_cav_32f_L(const float *src, int srcStride2, const float *const *val, int valRoiShift,
    float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_cav_32f_P(const float *const *src, int srcRoiShift, const float *val, int valStride0,
    float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslSub_cav_64f(const double *src, int srcStride2, const double *val, int valStride0, double *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslSub_cav_64f_L(const double *src, int srcStride2, const double *const *val, int valRoiShift,
    double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslSub_cav_64f_P(const double *const *src, int srcRoiShift, const double *val, int valStride0,
    double *const *dst, int dstRoiShift, int dstStride0, int len, int count);

/* ------------------------------------------------------------------------------------------------ keslMul by constants
 * dst = src * val, element by element: one product for each element, rounded to the element type.
 *
 * Shapes     mc, tc, vc (single);  mac, tac, vac (one constant for all objects);  vaca (a constant for each object);
 *            vca (one vector and count constants make count vectors: dst(k) = src * val(k)).
 * Sizes      width, height: those of the result; an operand t is stored with width rows of height elements. len: the length
 *            of every vector.
 * val        By value it is the last argument. An array of constants has a base pointer and valStride0 in the standard layout
 *            and in P, and a list of pointers with valRoiShift in L. Any value is good, 0 too (which makes NaN of infinity).
 * Overlap    dst may be the same storage as src, with the same strides, in mc, mac, vc and vac.
 * Status     In the usual order. Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslMul_mc_32f(const float *src, int srcStride1, int srcStride2, float *dst, int dstStride1,
    int dstStride2, int width, int height, float val);
KeslStatus keslMul_mc_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int width,
    int height, float val);
KeslStatus keslMul_mc_64f(const double *src, int srcStride1, int srcStride2, double *dst, int dstStride1,
    int dstStride2, int width, int height, double val);
KeslStatus keslMul_mc_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int width,
    int height, double val);
KeslStatus keslMul_tc_32f(const float *src, int srcStride1, int srcStride2, float *dst, int dstStride1,
    int dstStride2, int width, int height, float val);
KeslStatus keslMul_tc_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int width,
    int height, float val);
KeslStatus keslMul_tc_64f(const double *src, int srcStride1, int srcStride2, double *dst, int dstStride1,
    int dstStride2, int width, int height, double val);
KeslStatus keslMul_tc_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int width,
    int height, double val);
KeslStatus keslMul_mac_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count, float val);
KeslStatus keslMul_mac_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count, float val);
KeslStatus keslMul_mac_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count, float val);
KeslStatus keslMul_mac_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count, double val);
KeslStatus keslMul_mac_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count,
    double val);
KeslStatus keslMul_mac_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count, double val);
KeslStatus keslMul_tac_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count, float val);
KeslStatus keslMul_tac_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count, float val);
KeslStatus keslMul_tac_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count, float val);
KeslStatus keslMul_tac_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count, double val);
KeslStatus keslMul_tac_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count,
    double val);
KeslStatus keslMul_tac_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count, double val);
KeslStatus keslMul_vc_32f(const float *src, int srcStride2, float *dst, int dstStride2, int len, float val);
KeslStatus keslMul_vc_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift, int len,
    float val);
KeslStatus keslMul_vc_64f(const double *src, int srcStride2, double *dst, int dstStride2, int len, double val);
KeslStatus keslMul_vc_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift, int len,
    double val);
KeslStatus keslMul_vac_32f(const float *src, int srcStride0, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count, float val);
KeslStatus keslMul_vac_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslMul_vac_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslMul_vac_64f(const double *src, int srcStride0, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count, double val);
KeslStatus keslMul_vac_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslMul_vac_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count, double val);
KeslStatus keslMul_vaca_32f(const float *src, int srcStride0, int srcStride2, const float *val, int valStride0,
    float *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslMul_vaca_32f_L(const float *const *src, int srcRoiShift, int srcStride2, const float *const *val,
    int valRoiShift, float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslMul_vaca_32f_P(const float *const *src, int srcRoiShift, int srcStride0, const float *val,
    int valStride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslMul_vaca_64f(const double *src, int srcStride0, int srcStride2, const double *val, int valStride0,
    double *dst, int dstStride0, int dstStride2, int len, int count);
KeslStatus keslMul_vaca_64f_L(const double *const *src, int srcRoiShift, int srcStride2, const double *const *val,
    int valRoiShift, double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslMul_vaca_64f_P(const double *const *src, int srcRoiShift, int srcStride0, const double *val,
    int valStride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslMul_vca_32f(const float *src, int srcStride2, const float *val, int valStride0, float *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslMul_vca_32f_L(const float *src, int srcStride2, const float *const *val, int valRoiShift,
    float *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslMul_vca_32f_P(const float *const *src, int srcRoiShift, const float *val, int valStride0,
    float *const *dst, int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslMul_vca_64f(const double *src, int srcStride2, const double *val, int valStride0, double *dst,
    int dstStride0, int dstStride2, int len, int count);
KeslStatus keslMul_vca_64f_L(const double *src, int srcStride2, const double *const *val, int valRoiShift,
    double *const *dst, int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslMul_vca_64f_P(const double *const *src, int srcRoiShift, const double *val, int valStride0,
    double *const *dst, int dstRoiShift, int dstStride0, int len, int count);

/* ----------------------------------------------------------------------------------------------------------- keslSaxpy
 * dst = src1 * val + src2, element by element: the product is rounded to the element type, then the sum.
 *
 * Shapes     vv (single);  vav (src2 is a single vector);  vva (src1 is);  vava (two arrays, object by object).
 * Sizes      len: the length of every vector.
 * val        By value, the last argument. Any value is good, 0 too (which makes NaN of infinity).
 * Overlap    vv: dst may be the same storage as src2, with the same stride. None in the shapes with an array.
 * Status     In the usual order. Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslSaxpy_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int dstStride2, int len, float val);
KeslStatus keslSaxpy_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int len, float val);
KeslStatus keslSaxpy_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2, double *dst,
    int dstStride2, int len, double val);
KeslStatus keslSaxpy_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int len, double val);
KeslStatus keslSaxpy_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count, float val);
KeslStatus keslSaxpy_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslSaxpy_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslSaxpy_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count, double val);
KeslStatus keslSaxpy_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslSaxpy_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int len,
    int count, double val);
KeslStatus keslSaxpy_vva_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count, float val);
KeslStatus keslSaxpy_vva_32f_L(const float *src1, int src1Stride2, const float *const *src2, int src2RoiShift,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count, float val);
KeslStatus keslSaxpy_vva_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count, float val);
KeslStatus keslSaxpy_vva_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count, double val);
KeslStatus keslSaxpy_vva_64f_L(const double *src1, int src1Stride2, const double *const *src2, int src2RoiShift,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count, double val);
KeslStatus keslSaxpy_vva_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int len, int count,
    double val);
KeslStatus keslSaxpy_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int len, int count, float val);
KeslStatus keslSaxpy_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count,
    float val);
KeslStatus keslSaxpy_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count,
    float val);
KeslStatus keslSaxpy_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count, double val);
KeslStatus keslSaxpy_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int len, int count, double val);
KeslStatus keslSaxpy_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int len, int count, double val);

/* ----------------------------------------------------------------------------------------------------------- keslLComb
 * dst = src1 * val1 + src2 * val2, element by element: each product is rounded to the element type, then the sum.
 *
 * Shapes     vv (single);  vav (src2 is a single vector);  vava (two arrays, object by object).
 * Sizes      len: the length of every vector.
 * val1, val2 By value, the last arguments. Any value is good, 0 too (which makes NaN of infinity).
 * Overlap    None.
 * Status     In the usual order. Overflow and NaN are not reported. keslStatusOk once the arguments are good.
 */
KeslStatus keslLComb_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int dstStride2, int len, float val1, float val2);
KeslStatus keslLComb_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift,
    float *const *dst, int dstRoiShift, int len, float val1, float val2);
KeslStatus keslLComb_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2, double *dst,
    int dstStride2, int len, double val1, double val2);
KeslStatus keslLComb_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int len, double val1, double val2);
KeslStatus keslLComb_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride2,
    float *dst, int dstStride0, int dstStride2, int len, int count, float val1, float val2);
KeslStatus keslLComb_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count, float val1, float val2);
KeslStatus keslLComb_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int len, int count, float val1, float val2);
KeslStatus keslLComb_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count, double val1, double val2);
KeslStatus keslLComb_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int len, int count, double val1,
    double val2);
KeslStatus keslLComb_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int len,
    int count, double val1, double val2);
KeslStatus keslLComb_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int len, int count, float val1, float val2);
KeslStatus keslLComb_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *const *src2,
    int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int len, int count,
    float val1, float val2);
KeslStatus keslLComb_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int len, int count,
    float val1, float val2);
KeslStatus keslLComb_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2, int len, int count, double val1,
    double val2);
KeslStatus keslLComb_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int len, int count, double val1, double val2);
KeslStatus keslLComb_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int len, int count, double val1, double val2);

/* ------------------------------------------------------------------------------------------------------------ keslCopy
 * dst = src, from one layout to another. No arithmetic is done: every bit pattern arrives as it is, a signalling NaN too.
 *
 * Layouts    The two letters at the end are those of the source and of the destination, S for the standard layout.
 * Shapes     ma, va: arrays of matrices and of vectors.
 * Sizes      width, height; len.
 * Overlap    None.
 * Status     N S C, then B (stride1 and stride2), R (each operand in L or P) and last b: stride0 (each operand not in L), which
 *            is tested only where count is above 1; with one object it may hold anything. The order is B R b, but R B b in
 *            keslCopy_va_32f_SP and keslCopy_va_32f_LP. Then keslStatusOk.
 * Threads    Never threaded.
 */
KeslStatus keslCopy_ma_32f_SS(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_SL(const float *src, int srcStride0, int srcStride1, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_SP(const float *src, int srcStride0, int srcStride1, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_ma_32f_LS(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_LL(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_LP(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_ma_32f_PS(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int dstStride0,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_PL(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_32f_PP(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_ma_64f_SS(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_SL(const double *src, int srcStride0, int srcStride1, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_SP(const double *src, int srcStride0, int srcStride1, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_ma_64f_LS(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_LL(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_LP(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_ma_64f_PS(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int dstStride0,
    int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_PL(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslCopy_ma_64f_PP(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslCopy_va_32f_SS(const float *src, int srcStride0, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_SL(const float *src, int srcStride0, int srcStride2, float *const *dst, int dstRoiShift,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_SP(const float *src, int srcStride0, int srcStride2, float *const *dst, int dstRoiShift,
    int dstStride0, int len, int count);
KeslStatus keslCopy_va_32f_LS(const float *const *src, int srcRoiShift, int srcStride2, float *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_LL(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_LP(const float *const *src, int srcRoiShift, int srcStride2, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslCopy_va_32f_PS(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_PL(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslCopy_va_32f_PP(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslCopy_va_64f_SS(const double *src, int srcStride0, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_SL(const double *src, int srcStride0, int srcStride2, double *const *dst, int dstRoiShift,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_SP(const double *src, int srcStride0, int srcStride2, double *const *dst, int dstRoiShift,
    int dstStride0, int len, int count);
KeslStatus keslCopy_va_64f_LS(const double *const *src, int srcRoiShift, int srcStride2, double *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_LL(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_LP(const double *const *src, int srcRoiShift, int srcStride2, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count);
KeslStatus keslCopy_va_64f_PS(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int dstStride0,
    int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_PL(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride2, int len, int count);
KeslStatus keslCopy_va_64f_PP(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int len, int count);

/* --------------------------------------------------------------------------------------------------------- keslExtract
 * dst = src, packed: object behind object, row behind row, without any gap. No arithmetic is done: every bit pattern arrives
 * as it is, a signalling NaN too.
 *
 * Shapes     m, t, v (single);  ma, ta, va (arrays). t and ta are read transposed, so that dst is their transpose.
 * Sizes      width, height: those of the result; an operand t is stored with width rows of height elements. len: the length
 *            of every vector. dst holds width*height or len elements for each object.
 * Overlap    None.
 * Status     m, t: N S B (P: S N R, sizes before pointers);  v: N S B (P: N S R in float, S N R in double);
 *            ma, ta, va: N S C B (L, P: N S C R B). Then keslStatusOk.
 * Threads    Never threaded.
 */
KeslStatus keslExtract_m_32f(const float *src, int srcStride1, int srcStride2, float *dst, int width, int height);
KeslStatus keslExtract_m_32f_P(const float *const *src, int srcRoiShift, float *dst, int width, int height);
KeslStatus keslExtract_m_64f(const double *src, int srcStride1, int srcStride2, double *dst, int width, int height);
KeslStatus keslExtract_m_64f_P(const double *const *src, int srcRoiShift, double *dst, int width, int height);
KeslStatus keslExtract_t_32f(const float *src, int srcStride1, int srcStride2, float *dst, int width, int height);
KeslStatus keslExtract_t_32f_P(const float *const *src, int srcRoiShift, float *dst, int width, int height);
KeslStatus keslExtract_t_64f(const double *src, int srcStride1, int srcStride2, double *dst, int width, int height);
KeslStatus keslExtract_t_64f_P(const double *const *src, int srcRoiShift, double *dst, int width, int height);
KeslStatus keslExtract_v_32f(const float *src, int srcStride2, float *dst, int len);
KeslStatus keslExtract_v_32f_P(const float *const *src, int srcRoiShift, float *dst, int len);
KeslStatus keslExtract_v_64f(const double *src, int srcStride2, double *dst, int len);
KeslStatus keslExtract_v_64f_P(const double *const *src, int srcRoiShift, double *dst, int len);
KeslStatus keslExtract_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst, int width,
    int height, int count);
KeslStatus keslExtract_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, float *dst,
    int width, int height, int count);
KeslStatus keslExtract_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int width,
    int height, int count);
KeslStatus keslExtract_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int width, int height, int count);
KeslStatus keslExtract_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *dst, int width, int height, int count);
KeslStatus keslExtract_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int width,
    int height, int count);
KeslStatus keslExtract_ta_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst, int width,
    int height, int count);
KeslStatus keslExtract_ta_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, float *dst,
    int width, int height, int count);
KeslStatus keslExtract_ta_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int width,
    int height, int count);
KeslStatus keslExtract_ta_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int width, int height, int count);
KeslStatus keslExtract_ta_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *dst, int width, int height, int count);
KeslStatus keslExtract_ta_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int width,
    int height, int count);
KeslStatus keslExtract_va_32f(const float *src, int srcStride0, int srcStride2, float *dst, int len, int count);
KeslStatus keslExtract_va_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *dst, int len,
    int count);
KeslStatus keslExtract_va_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int len,
    int count);
KeslStatus keslExtract_va_64f(const double *src, int srcStride0, int srcStride2, double *dst, int len, int count);
KeslStatus keslExtract_va_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *dst, int len,
    int count);
KeslStatus keslExtract_va_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int len,
    int count);

/* ---------------------------------------------------------------------------------------------------- keslLoadIdentity
 * Each matrix of dst = the unit matrix: 1 where the row is the column, +0 elsewhere. Where height is above width the rows below
 * are zero, where width is above height the columns to the right.
 *
 * Shapes     ma: an array of matrices, which is the destination.
 * Sizes      width, height.
 * Status     N S C B b, where b tests stride0 and only if count is above 1 (L: N S C B R; P: N S R C b in float, N S C R b in
 *            double). Then keslStatusOk.
 * Threads    Never threaded.
 */
KeslStatus keslLoadIdentity_ma_32f(float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height,
    int count);
KeslStatus keslLoadIdentity_ma_32f_L(float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslLoadIdentity_ma_32f_P(float *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);
KeslStatus keslLoadIdentity_ma_64f(double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height,
    int count);
KeslStatus keslLoadIdentity_ma_64f_L(double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width,
    int height, int count);
KeslStatus keslLoadIdentity_ma_64f_P(double *const *dst, int dstRoiShift, int dstStride0, int width, int height,
    int count);

/* ------------------------------------------------------------------------------------------------------- keslTranspose
 * dst(j, i) = src(i, j). No arithmetic is done: every bit pattern arrives as it is, a signalling NaN too.
 *
 * Shapes     m (single);  ma (an array).
 * Sizes      width, height: those of the source, behind which they stand. dst has width rows of height elements; in P its
 *            list has rows of height entries, and that of src rows of width entries.
 * Overlap    None: a matrix is not transposed in place.
 * Status     In the usual order, then keslStatusOk.
 * Threads    Never threaded.
 */
KeslStatus keslTranspose_m_32f(const float *src, int srcStride1, int srcStride2, int width, int height, float *dst,
    int dstStride1, int dstStride2);
KeslStatus keslTranspose_m_32f_P(const float *const *src, int srcRoiShift, int width, int height, float *const *dst,
    int dstRoiShift);
KeslStatus keslTranspose_m_64f(const double *src, int srcStride1, int srcStride2, int width, int height, double *dst,
    int dstStride1, int dstStride2);
KeslStatus keslTranspose_m_64f_P(const double *const *src, int srcRoiShift, int width, int height, double *const *dst,
    int dstRoiShift);
KeslStatus keslTranspose_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, int width,
    int height, float *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslTranspose_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, int width,
    int height, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslTranspose_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, int width, int height,
    float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslTranspose_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, int width,
    int height, double *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslTranspose_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    int width, int height, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslTranspose_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, int width, int height,
    double *const *dst, int dstRoiShift, int dstStride0, int count);

/* ----------------------------------------------------------------------------------------------- keslMul of matrices
 * dst = src1 * src2:  dst(i, j) = src1(i, 0)*src2(0, j) + src1(i, 1)*src2(1, j) + ...
 *
 * Shapes     mm, mt, tm, tt (single);  mam, mat, tam, tat (each object times a single matrix);  mma, mta, tma, tta (a single
 *            matrix times each object);  mama, mata, tama, tata (two arrays, object by object).
 * Sizes      src1Width, src1Height, src2Width, src2Height: those of the matrices as they are stored, also where they are read
 *            transposed (t), unlike in keslAdd. Read, src1 is M by K and src2 K by N, and dst is M by N; the two K must match.
 *            Element (i, j) of src1 in P is src1[i*src1Width + j], transposed src1[j*src1Width + i]; of dst dst[i*N + j].
 * Order      Products are added in ascending order, each rounded before it is added. Where all four sizes are the same
 *            order of 3 to 6 a sum begins with its first product, otherwise at +0. So an element whose products are all -0 is -0
 *            in the first case and +0 in the second. Deliberate: in the L functions with an array src2 whose stride2 are all
 *            the element size, sums begin at +0 for orders 3 to 6 too.
 * Overlap    dst may overlap src2 in the shapes without an array where all four sizes are the same order of 3 to 6; else none.
 * Status     N S M B (P: N S M R) without an array, N C S M B (L, P: N C S M B R) with one. Overflow and NaN are not reported.
 */
KeslStatus keslMul_mm_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_mm_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift);
KeslStatus keslMul_mm_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_mm_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst, int dstRoiShift);
KeslStatus keslMul_mt_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_mt_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift);
KeslStatus keslMul_mt_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_mt_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst, int dstRoiShift);
KeslStatus keslMul_tm_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_tm_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift);
KeslStatus keslMul_tm_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_tm_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst, int dstRoiShift);
KeslStatus keslMul_tt_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_tt_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift);
KeslStatus keslMul_tt_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst, int dstStride1,
    int dstStride2);
KeslStatus keslMul_tt_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst, int dstRoiShift);
KeslStatus keslMul_mam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_mam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_mat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_tam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Width, int src2Height, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_tat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mma_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mma_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mma_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mma_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mma_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mma_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mta_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mta_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mta_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mta_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mta_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mta_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tma_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tma_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tma_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tma_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tma_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tma_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tta_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tta_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tta_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tta_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tta_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tta_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width,
    int src2Height, double *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width,
    int src2Height, double *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_mata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width,
    int src2Height, double *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width, int src2Height,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, int src2Width,
    int src2Height, double *dst, int dstStride0, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2,
    int src2Width, int src2Height, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int count);
KeslStatus keslMul_tata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Width, int src2Height,
    double *const *dst, int dstRoiShift, int dstStride0, int count);

/* ------------------------------------------------------------------------------------- keslMul of matrices and vectors
 * dst = src1 * src2, a matrix times a vector:  dst(i) = src1(i, 0)*src2(0) + src1(i, 1)*src2(1) + ...
 *
 * Shapes     mv, tv (single);  mav, tav (each matrix times one vector);  mva, tva (one matrix times each vector);
 *            mava, tava (two arrays, object by object).
 * Sizes      src1Width, src1Height: those of the matrix as it is stored, also where it is read transposed (t); src2Len: the
 *            length of the vector. m: src2Len must be src1Width, dst has src1Height elements; t: the other way round.
 * Order      Products are added in ascending order, each rounded before it is added. Where the matrix is square of order 3
 *            to 6 a sum begins with its first product, otherwise at +0; so an element whose products are all -0 is -0 in the
 *            first case and +0 in the second. Deliberate: in the L functions, where every stride2 is the element size, sums
 *            begin at +0 for orders 3 to 6 too.
 * Overlap    None.
 * Status     N S M B (P: N S M R) without an array, N C S M B (L, P: N C S M B R) with one. Overflow and NaN are not reported.
 */
KeslStatus keslMul_mv_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride2, int src2Len, float *dst, int dstStride2);
KeslStatus keslMul_mv_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Len, float *const *dst, int dstRoiShift);
KeslStatus keslMul_mv_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride2, int src2Len, double *dst, int dstStride2);
KeslStatus keslMul_mv_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Len, double *const *dst, int dstRoiShift);
KeslStatus keslMul_tv_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride2, int src2Len, float *dst, int dstStride2);
KeslStatus keslMul_tv_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Len, float *const *dst, int dstRoiShift);
KeslStatus keslMul_tv_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride2, int src2Len, double *dst, int dstStride2);
KeslStatus keslMul_tv_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Len, double *const *dst, int dstRoiShift);
KeslStatus keslMul_mav_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride2, int src2Len, float *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_mav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride2, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_mav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Len, float *const *dst, int dstRoiShift, int dstStride0,
    int count);
KeslStatus keslMul_mav_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride2, int src2Len, double *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_mav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride2, int src2Len, double *const *dst,
    int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_mav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_tav_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride2, int src2Len, float *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_tav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *src2, int src2Stride2, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_tav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Len, float *const *dst, int dstRoiShift, int dstStride0,
    int count);
KeslStatus keslMul_tav_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride2, int src2Len, double *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_tav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *src2, int src2Stride2, int src2Len, double *const *dst,
    int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_tav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_mva_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride2, int src2Len, float *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_mva_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_mva_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_mva_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride2, int src2Len, double *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_mva_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_mva_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_tva_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride2, int src2Len, float *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_tva_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_tva_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, float *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_tva_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride2, int src2Len, double *dst, int dstStride0, int dstStride2,
    int count);
KeslStatus keslMul_tva_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride2, int count);
KeslStatus keslMul_tva_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, double *const *dst, int dstRoiShift,
    int dstStride0, int count);
KeslStatus keslMul_mava_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride2, int src2Len, float *dst, int dstStride0,
    int dstStride2, int count);
KeslStatus keslMul_mava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len,
    float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_mava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_mava_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride2, int src2Len, double *dst, int dstStride0,
    int dstStride2, int count);
KeslStatus keslMul_mava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len,
    double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_mava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, double *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tava_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const float *src2, int src2Stride0, int src2Stride2, int src2Len, float *dst, int dstStride0,
    int dstStride2, int count);
KeslStatus keslMul_tava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len,
    float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_tava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, float *const *dst,
    int dstRoiShift, int dstStride0, int count);
KeslStatus keslMul_tava_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, int src1Width,
    int src1Height, const double *src2, int src2Stride0, int src2Stride2, int src2Len, double *dst, int dstStride0,
    int dstStride2, int count);
KeslStatus keslMul_tava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    int src1Width, int src1Height, const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len,
    double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslMul_tava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, int src1Width,
    int src1Height, const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, double *const *dst,
    int dstRoiShift, int dstStride0, int count);

/* --------------------------------------------------------------------------------------------------------- keslGaxpy
 * dst = src1 * src2 + src3, a matrix times a vector plus a vector.
 *
 * Shapes     mv (single);  mva (one matrix, arrays of src2 and src3);  mvav (one matrix, an array of src2, one src3). The
 *            vector src3 has no letter of its own in mv and mva.
 * Sizes      src1Width, src1Height: those of the matrix. src2Len must be src1Width and src3Len src1Height; dst has
 *            src1Height elements.
 * Order      Each product is rounded before it is added, src3 is added last. Products are added in ascending order from +0,
 *            but where the matrix is square of order 3 to 6 a sum begins with its first product, and in orders 4 to 6 that is
 *            the product of the last column, the others following in ascending order. This is deliberate and unlike keslMul.
 * Overlap    mv with a square matrix of order 3 to 6: dst may overlap the sources in any way, as all is read before anything is
 *            written. None otherwise.
 * Status     N S M B (P: N S M R) without an array, N C S M B (L, P: N C S M B R) with one. Overflow and NaN are not reported.
 */
KeslStatus keslGaxpy_mv_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride2, int src2Len, const float *src3, int src3Stride2, int src3Len, float *dst,
    int dstStride2);
KeslStatus keslGaxpy_mv_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Len, const float *const *src3, int src3RoiShift, int src3Len,
    float *const *dst, int dstRoiShift);
KeslStatus keslGaxpy_mv_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride2, int src2Len, const double *src3, int src3Stride2, int src3Len, double *dst,
    int dstStride2);
KeslStatus keslGaxpy_mv_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Len, const double *const *src3, int src3RoiShift, int src3Len,
    double *const *dst, int dstRoiShift);
KeslStatus keslGaxpy_mva_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride2, int src2Len, const float *src3, int src3Stride0,
    int src3Stride2, int src3Len, float *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslGaxpy_mva_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len, const float *const *src3,
    int src3RoiShift, int src3Stride2, int src3Len, float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslGaxpy_mva_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, const float *const *src3,
    int src3RoiShift, int src3Stride0, int src3Len, float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslGaxpy_mva_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride2, int src2Len, const double *src3, int src3Stride0,
    int src3Stride2, int src3Len, double *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslGaxpy_mva_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len, const double *const *src3,
    int src3RoiShift, int src3Stride2, int src3Len, double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslGaxpy_mva_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, const double *const *src3,
    int src3RoiShift, int src3Stride0, int src3Len, double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslGaxpy_mvav_32f(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *src2, int src2Stride0, int src2Stride2, int src2Len, const float *src3, int src3Stride2, int src3Len,
    float *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslGaxpy_mvav_32f_L(const float *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride2, int src2Len, const float *src3, int src3Stride2,
    int src3Len, float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslGaxpy_mvav_32f_P(const float *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const float *const *src2, int src2RoiShift, int src2Stride0, int src2Len, const float *const *src3,
    int src3RoiShift, int src3Len, float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslGaxpy_mvav_64f(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *src2, int src2Stride0, int src2Stride2, int src2Len, const double *src3, int src3Stride2, int src3Len,
    double *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslGaxpy_mvav_64f_L(const double *src1, int src1Stride1, int src1Stride2, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride2, int src2Len, const double *src3, int src3Stride2,
    int src3Len, double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslGaxpy_mvav_64f_P(const double *const *src1, int src1RoiShift, int src1Width, int src1Height,
    const double *const *src2, int src2RoiShift, int src2Stride0, int src2Len, const double *const *src3,
    int src3RoiShift, int src3Len, double *const *dst, int dstRoiShift, int dstStride0, int count);

/* ---------------------------------------------------------------------------------------------------- keslDotProduct
 * dst = src1(0)*src2(0) + src1(1)*src2(1) + ..., one value for each object.
 *
 * Shapes     vv (single);  vav (each vector with a single one);  vava (two arrays, object by object).
 * Sizes      len: that of the vectors. dst is one element, or count consecutive elements in every layout.
 * Order      Each product is rounded before it is added, in the element type. Ascending, in lengths 3 to 6 from the first
 *            product on, in others from +0. Deliberate: where a stride2 is not the element size (standard and L), the sum of
 *            length 4 begins with the last product, that of 5 with the last, that of 6 with the last two, downward, and the
 *            others follow in ascending order. vv in the standard layout with stride2 of the element size and len of 8 and
 *            more: product k goes to the partial sum k modulo 16, which begin at +0, and then the upper half of these is added
 *            to the lower half until one is left. So low bits can differ between layouts, but not between calls or processors.
 * Overlap    None.
 * Status     The usual order. Overflow and NaN are not reported.
 */
KeslStatus keslDotProduct_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int len);
KeslStatus keslDotProduct_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2,
    int src2RoiShift, float *dst, int len);
KeslStatus keslDotProduct_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2, double *dst,
    int len);
KeslStatus keslDotProduct_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, double *dst, int len);
KeslStatus keslDotProduct_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2,
    int src2Stride2, float *dst, int len, int count);
KeslStatus keslDotProduct_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *dst, int len, int count);
KeslStatus keslDotProduct_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const float *const *src2, int src2RoiShift, float *dst, int len, int count);
KeslStatus keslDotProduct_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int len, int count);
KeslStatus keslDotProduct_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int len, int count);
KeslStatus keslDotProduct_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, double *dst, int len, int count);
KeslStatus keslDotProduct_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride2, float *dst, int len, int count);
KeslStatus keslDotProduct_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride2, float *dst, int len, int count);
KeslStatus keslDotProduct_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *dst, int len, int count);
KeslStatus keslDotProduct_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride2, double *dst, int len, int count);
KeslStatus keslDotProduct_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *dst, int len, int count);
KeslStatus keslDotProduct_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *dst, int len, int count);

/* -------------------------------------------------------------------------------------------------- keslCrossProduct
 * dst = src1 x src2 for vectors of three elements; there is no size argument:
 *
 *            (a1*b2 - a2*b1,  a2*b0 - a0*b2,  a0*b1 - a1*b0),  each product rounded before the subtraction
 *
 * Shapes     vv (single);  vav (each vector by a single one);  vva (a single vector by each);  vava (two arrays).
 * Overlap    None.
 * Status     vv: N B (P: N R);  vav: N B C (L: N B R C, P: N B C R), strides before count;  vva, vava: N C B (L, P: N C B R).
 * Threads    keslCrossProduct_vva_64f_P always runs on the calling thread.
 */
KeslStatus keslCrossProduct_vv_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride2, float *dst,
    int dstStride2);
KeslStatus keslCrossProduct_vv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift);
KeslStatus keslCrossProduct_vv_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride2,
    double *dst, int dstStride2);
KeslStatus keslCrossProduct_vv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift);
KeslStatus keslCrossProduct_vav_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vav_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2, const float *src2,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslCrossProduct_vav_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslCrossProduct_vav_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vav_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2, const double *src2,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslCrossProduct_vav_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslCrossProduct_vva_32f(const float *src1, int src1Stride2, const float *src2, int src2Stride0,
    int src2Stride2, float *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vva_32f_L(const float *src1, int src1Stride2, const float *const *src2, int src2RoiShift,
    int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslCrossProduct_vva_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslCrossProduct_vva_64f(const double *src1, int src1Stride2, const double *src2, int src2Stride0,
    int src2Stride2, double *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vva_64f_L(const double *src1, int src1Stride2, const double *const *src2, int src2RoiShift,
    int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2, int count);
KeslStatus keslCrossProduct_vva_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int count);
KeslStatus keslCrossProduct_vava_32f(const float *src1, int src1Stride0, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2,
    int count);
KeslStatus keslCrossProduct_vava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0,
    int count);
KeslStatus keslCrossProduct_vava_64f(const double *src1, int src1Stride0, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2, int count);
KeslStatus keslCrossProduct_vava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int count);
KeslStatus keslCrossProduct_vava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int count);

/* -------------------------------------------------------------------------------------------------------- keslL2Norm
 * dst = the Euclidean length of a vector: the root of the sum of the squares of its elements.
 *
 * Shapes     v (single);  va (array).
 * Sizes      len: that of the vectors. dst is one element, or count consecutive elements in every layout.
 * Order      Squares and sums in the element type, without scaling: squares that overflow give infinity. In single precision
 *            the root is that in double precision, rounded. Ascending, but in lengths 4 to 6 the last square comes first; not
 *            so in v in the P layout, and v in the standard layout with stride2 of the element size and len of 8 and more has
 *            the sixteen partial sums of keslDotProduct. This is deliberate.
 * Overlap    None.
 * Status     The usual order. Overflow and NaN are not reported.
 */
KeslStatus keslL2Norm_v_32f(const float *src, int srcStride2, float *dst, int len);
KeslStatus keslL2Norm_v_32f_P(const float *const *src, int srcRoiShift, float *dst, int len);
KeslStatus keslL2Norm_v_64f(const double *src, int srcStride2, double *dst, int len);
KeslStatus keslL2Norm_v_64f_P(const double *const *src, int srcRoiShift, double *dst, int len);
KeslStatus keslL2Norm_va_32f(const float *src, int srcStride0, int srcStride2, float *dst, int len, int count);
KeslStatus keslL2Norm_va_32f_L(const float *const *src, int srcRoiShift, int srcStride2, float *dst, int len,
    int count);
KeslStatus keslL2Norm_va_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *dst, int len,
    int count);
KeslStatus keslL2Norm_va_64f(const double *src, int srcStride0, int srcStride2, double *dst, int len, int count);
KeslStatus keslL2Norm_va_64f_L(const double *const *src, int srcRoiShift, int srcStride2, double *dst, int len,
    int count);
KeslStatus keslL2Norm_va_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *dst, int len,
    int count);

/* ------------------------------------------------------------------------------------------------------ keslFrobNorm
 * dst = the Frobenius norm of a matrix: the root of the sum of the squares of its elements.
 *
 * Shapes     m (single);  ma (array).
 * Sizes      width, height: those of the matrices. dst is one element, or count consecutive elements in every layout.
 * Order      Squares, sums and root as in keslL2Norm. Row by row in ascending order, with these exceptions, all deliberate:
 *            P adds the squares by twos, the two of a pair first. m_32f in the standard layout with stride2 of the element size,
 *            if not square below order 7: without gaps between the rows the 16 partial sums of keslDotProduct from 8 elements
 *            on, with gaps these for each row of 8 elements on. ma, standard and L, with stride2 of the element size: the 16
 *            partial sums from 8 elements on for objects without gaps and for all of order 3 to 6. So the same matrix can
 *            differ in the low bits between layouts and types of call, but not between processors.
 * Overlap    None.
 * Status     The usual order. Overflow and NaN are not reported.
 */
KeslStatus keslFrobNorm_m_32f(const float *src, int srcStride1, int srcStride2, int width, int height, float *dst);
KeslStatus keslFrobNorm_m_32f_P(const float *const *src, int srcRoiShift, int width, int height, float *dst);
KeslStatus keslFrobNorm_m_64f(const double *src, int srcStride1, int srcStride2, int width, int height, double *dst);
KeslStatus keslFrobNorm_m_64f_P(const double *const *src, int srcRoiShift, int width, int height, double *dst);
KeslStatus keslFrobNorm_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, int width, int height,
    float *dst, int count);
KeslStatus keslFrobNorm_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, int width,
    int height, float *dst, int count);
KeslStatus keslFrobNorm_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, int width, int height,
    float *dst, int count);
KeslStatus keslFrobNorm_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, int width, int height,
    double *dst, int count);
KeslStatus keslFrobNorm_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2, int width,
    int height, double *dst, int count);
KeslStatus keslFrobNorm_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, int width, int height,
    double *dst, int count);

/* --------------------------------------------------------------------------------------------------------- keslTrace
 * dst = the sum of the diagonal of a square matrix.
 *
 * Shapes     m (single);  ma (array).
 * Sizes      widthHeight: the order of the matrices. dst is one element, or count consecutive elements in every layout.
 * Order      Order 3 ascending; 4 and 5 the last element first, then ascending; 6 the last two, then ascending; other orders
 *            ascending from +0. This is deliberate.
 * Overlap    None.
 * Status     The usual order. Overflow and NaN are not reported.
 */
KeslStatus keslTrace_m_32f(const float *src, int srcStride1, int srcStride2, int widthHeight, float *dst);
KeslStatus keslTrace_m_32f_P(const float *const *src, int srcRoiShift, int widthHeight, float *dst);
KeslStatus keslTrace_m_64f(const double *src, int srcStride1, int srcStride2, int widthHeight, double *dst);
KeslStatus keslTrace_m_64f_P(const double *const *src, int srcRoiShift, int widthHeight, double *dst);
KeslStatus keslTrace_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, int widthHeight,
    float *dst, int count);
KeslStatus keslTrace_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, int widthHeight,
    float *dst, int count);
KeslStatus keslTrace_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, int widthHeight, float *dst,
    int count);
KeslStatus keslTrace_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, int widthHeight,
    double *dst, int count);
KeslStatus keslTrace_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    int widthHeight, double *dst, int count);
KeslStatus keslTrace_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, int widthHeight, double *dst,
    int count);

/* ------------------------------------------------------------------------------------------------------ keslLUDecomp
 * Factors of src with partial pivoting: P src = L U, L lower triangular with a diagonal of ones, U upper triangular;
 * widthHeight is the order n of the matrices.
 *
 * dst        Both factors in one matrix, whose rows stay where they are in src: element (p[i], j) is L(i,j) for j < i and U(i,j)
 *            for j >= i. The ones are not stored.
 * dstIndex   p: n row numbers from 0 for each matrix, in every layout a table without strides, those of an array back to back.
 *            A permutation of 0 .. n-1 after success.
 * Method     Gaussian elimination (Golub and Van Loan, Matrix Computations, 3.4). The pivot is the greatest magnitude of its
 *            column, of equal ones the first in the order of p so far; a NaN is chosen only where it stands first, and then
 *            passes. Multipliers are products with the reciprocal of the pivot.
 * Singular   Orders 3 to 6: a pivot below twice the smallest normal number (2^-125, 2^-1021). Other orders: a pivot not above
 *            2^-23 (2^-52 in double precision), absolutely, so that these reject much that orders 3 to 6 accept.
 * Overlap    dst may be the same storage as src, with the same strides.
 * Status     N C S B R as usual (dstIndex is one of the pointers), then keslStatusSingular: the first singular object ends the
 *            call. Those before it are complete and those behind it untouched, in threads within the slice of each thread. Of
 *            the object itself, at orders 3 to 6 the rows whose pivots were good are written, and p holds the last exchange,
 *            too; at other orders dst is as far reduced as it came, and p without the exchange of the failing step.
 */
KeslStatus keslLUDecomp_m_32f(const float *src, int srcStride1, int srcStride2, int *dstIndex, float *dst,
    int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslLUDecomp_m_32f_P(const float *const *src, int srcRoiShift, int *dstIndex, float *const *dst,
    int dstRoiShift, int widthHeight);
KeslStatus keslLUDecomp_m_64f(const double *src, int srcStride1, int srcStride2, int *dstIndex, double *dst,
    int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslLUDecomp_m_64f_P(const double *const *src, int srcRoiShift, int *dstIndex, double *const *dst,
    int dstRoiShift, int widthHeight);
KeslStatus keslLUDecomp_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, int *dstIndex,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslLUDecomp_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    int *dstIndex, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslLUDecomp_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, int *dstIndex,
    float *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslLUDecomp_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, int *dstIndex,
    double *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslLUDecomp_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    int *dstIndex, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslLUDecomp_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, int *dstIndex,
    double *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);

/* --------------------------------------------------------------------------------------------------- keslLUBackSubst
 * Solves A x = b, with A as keslLUDecomp leaves it in src1 and srcIndex; widthHeight is the order n.
 *
 * Shapes     mv (one matrix, one vector), mva (one matrix and its table for all vectors), mava (for each vector its own).
 * src1       The factors, their rows where keslLUDecomp left them.
 * srcIndex   The table p: n row numbers from 0 for each matrix, in every layout without strides, those of mava back to back.
 *            The numbers are used as they are, without a test of their range.
 * src2, dst  The right-hand side b, in the order of the rows of A, and the solution x.
 * Method     Forward and back substitution (Golub and Van Loan, Matrix Computations, 3.1). Orders 3 to 6 multiply by the
 *            reciprocals of the diagonal of U and subtract the terms of a row one by one; the other orders sum them first and
 *            divide, so that their last bits may differ.
 * Zeros      on the diagonal of U give infinities or NaN in dst and are not reported.
 * Overlap    dst may be the same storage as src2, with the same strides, at orders 3 to 6; never at the others.
 * Status     N C S B R as usual (srcIndex is one of the pointers). keslStatusOk once the arguments are good.
 */
KeslStatus keslLUBackSubst_mava_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    const int *srcIndex, const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0,
    int dstStride2, int widthHeight, int count);
KeslStatus keslLUBackSubst_mava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const int *srcIndex, const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst,
    int dstRoiShift, int dstStride2, int widthHeight, int count);
KeslStatus keslLUBackSubst_mava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const int *srcIndex, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst,
    int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslLUBackSubst_mava_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    const int *srcIndex, const double *src2, int src2Stride0, int src2Stride2, double *dst, int dstStride0,
    int dstStride2, int widthHeight, int count);
KeslStatus keslLUBackSubst_mava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    const int *srcIndex, const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride2, int widthHeight, int count);
KeslStatus keslLUBackSubst_mava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const int *srcIndex, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst,
    int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslLUBackSubst_mv_32f(const float *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const float *src2, int src2Stride2, float *dst, int dstStride2, int widthHeight);
KeslStatus keslLUBackSubst_mv_32f_P(const float *const *src1, int src1RoiShift, const int *srcIndex,
    const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslLUBackSubst_mv_64f(const double *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const double *src2, int src2Stride2, double *dst, int dstStride2, int widthHeight);
KeslStatus keslLUBackSubst_mv_64f_P(const double *const *src1, int src1RoiShift, const int *srcIndex,
    const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslLUBackSubst_mva_32f(const float *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int widthHeight,
    int count);
KeslStatus keslLUBackSubst_mva_32f_L(const float *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2,
    int widthHeight, int count);
KeslStatus keslLUBackSubst_mva_32f_P(const float *const *src1, int src1RoiShift, const int *srcIndex,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0,
    int widthHeight, int count);
KeslStatus keslLUBackSubst_mva_64f(const double *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const double *src2, int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2,
    int widthHeight, int count);
KeslStatus keslLUBackSubst_mva_64f_L(const double *src1, int src1Stride1, int src1Stride2, const int *srcIndex,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int widthHeight, int count);
KeslStatus keslLUBackSubst_mva_64f_P(const double *const *src1, int src1RoiShift, const int *srcIndex,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int widthHeight, int count);

/* ------------------------------------------------------------------------------------------------ keslCholeskyDecomp
 * The Cholesky factor of src: src = L L', L lower triangular; widthHeight is the order n of the matrices.
 *
 * src        Symmetric and positive definite. Only the lower triangle with the diagonal counts; symmetry is not examined.
 * dst        Only the lower triangle with the diagonal is written: L(i,j) below the diagonal, and on the diagonal the
 *            reciprocals 1 / L(i,i), as keslCholeskyBackSubst wants them.
 * Method     By rows, from the top, left to right (Golub and Van Loan, Matrix Computations, 4.2): L(i,j) is a product with the
 *            reciprocal of L(j,j), and 1 / L(i,i) the reciprocal of a root. In single precision this root and its reciprocal are
 *            formed in double precision and rounded once; but in the P layout, at orders 1, 2 and 7 upward, the root is
 *            rounded before the reciprocal is formed, so that the last bits may differ there from those of other layouts.
 * Rejected   is a number d under the root that is not above 0; a NaN passes. Two forms have another bound: at order 3 in the
 *            P layout, single and double precision, 2^-23; and in double-precision arrays of the standard layout some stride2
 *            of which is not the element size, at orders 1, 2 and 6 upward, 2^-52.
 * Overlap    dst may be the same storage as src, with the same strides.
 * Status     N C S B R as usual, then keslStatusNotPositiveDefinite: the first object without a factor ends the call. Those
 *            before it are complete and those behind it untouched, in threads within the slice of each thread. Of the object
 *            itself the rows above the rejected diagonal element and its own row to the left of it are written.
 */
KeslStatus keslCholeskyDecomp_m_32f(const float *src, int srcStride1, int srcStride2, float *dst, int dstStride1,
    int dstStride2, int widthHeight);
KeslStatus keslCholeskyDecomp_m_32f_P(const float *const *src, int srcRoiShift, float *const *dst, int dstRoiShift,
    int widthHeight);
KeslStatus keslCholeskyDecomp_m_64f(const double *src, int srcStride1, int srcStride2, double *dst, int dstStride1,
    int dstStride2, int widthHeight);
KeslStatus keslCholeskyDecomp_m_64f_P(const double *const *src, int srcRoiShift, double *const *dst, int dstRoiShift,
    int widthHeight);
KeslStatus keslCholeskyDecomp_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *dst,
    int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyDecomp_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyDecomp_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *const *dst,
    int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslCholeskyDecomp_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *dst,
    int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyDecomp_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyDecomp_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *const *dst,
    int dstRoiShift, int dstStride0, int widthHeight, int count);

/* --------------------------------------------------------------------------------------------- keslCholeskyBackSubst
 * Solves A x = b, with the factor of A as keslCholeskyDecomp leaves it in src1; widthHeight is the order n.
 *
 * Shapes     mv (one matrix, one vector), mva (one matrix for all vectors), mava (for each vector its own).
 * src1       The lower triangle with the reciprocals of its diagonal; what is above is not used.
 * src2, dst  The right-hand side b and the solution x.
 * Method     Forward and back substitution (Golub and Van Loan, Matrix Computations, 3.1 and 4.2) without a division: a zero
 *            on the diagonal multiplies like any other number.
 * Overlap    None.
 * Status     mva in L: N B R S C, sizes and count last; all others in the usual order. keslStatusOk once the arguments are good.
 */
KeslStatus keslCholeskyBackSubst_mava_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int widthHeight,
    int count);
KeslStatus keslCholeskyBackSubst_mava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1,
    int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0,
    int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mava_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    const double *src2, int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2,
    int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1,
    int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst,
    int dstRoiShift, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mv_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride2, float *dst, int dstStride2, int widthHeight);
KeslStatus keslCholeskyBackSubst_mv_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2,
    int src2RoiShift, float *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslCholeskyBackSubst_mv_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride2, double *dst, int dstStride2, int widthHeight);
KeslStatus keslCholeskyBackSubst_mv_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, double *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslCholeskyBackSubst_mva_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mva_32f_L(const float *src1, int src1Stride1, int src1Stride2,
    const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2,
    int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mva_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2,
    int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int widthHeight,
    int count);
KeslStatus keslCholeskyBackSubst_mva_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2,
    int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2, int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mva_64f_L(const double *src1, int src1Stride1, int src1Stride2,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int widthHeight, int count);
KeslStatus keslCholeskyBackSubst_mva_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2,
    int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int widthHeight,
    int count);

/* ------------------------------------------------------------------------------------------------------ keslQRDecomp
 * The QR decomposition of src: src = Q R, Q orthogonal, R upper triangular.
 *
 * Sizes      width, height: those of src and dst; width at most height.
 * dst        R in the upper triangle with the diagonal, which may be negative. Q is a product of reflections, step by step
 *            I - 2 v v' / v'v: column k holds v below the diagonal, v(k) = 1 is not stored, and what is above it is zero. Each
 *            column has one, but not the last of a square matrix.
 * buffer     height elements of scratch, without strides in any layout; needed at every size. What it holds means nothing,
 *            before and after.
 * Method     Householder's (Golub and Van Loan, Matrix Computations, 5.2), without scaling. The sign of a reflection is that of
 *            the diagonal element, a zero taken as negative; sums from the top of a column downwards.
 * Rejected   is a column whose squared norm, from the diagonal downwards, is below 2^-23 (2^-52 in double precision),
 *            absolutely; a NaN passes. The last column of a square matrix is not tested, so that R may have a zero there.
 * Overlap    None.
 * Status     N S B M for one matrix (P: N S R M), N C S B M for arrays (L, P: N C S B R M): the sizes are matched last,
 *            unlike elsewhere. buffer is one of the pointers. Then keslStatusDivideByZero: the first object with a rejected
 *            column ends the call. Those before it are complete and those behind it untouched, in threads within the slice of
 *            each thread; the object itself is as far reduced as it came.
 */
KeslStatus keslQRDecomp_m_32f(const float *src, int srcStride1, int srcStride2, float *buffer, float *dst,
    int dstStride1, int dstStride2, int width, int height);
KeslStatus keslQRDecomp_m_32f_P(const float *const *src, int srcRoiShift, float *buffer, float *const *dst,
    int dstRoiShift, int width, int height);
KeslStatus keslQRDecomp_m_64f(const double *src, int srcStride1, int srcStride2, double *buffer, double *dst,
    int dstStride1, int dstStride2, int width, int height);
KeslStatus keslQRDecomp_m_64f_P(const double *const *src, int srcRoiShift, double *buffer, double *const *dst,
    int dstRoiShift, int width, int height);
KeslStatus keslQRDecomp_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *buffer,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslQRDecomp_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *buffer, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height,
    int count);
KeslStatus keslQRDecomp_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *buffer,
    float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslQRDecomp_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *buffer,
    double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslQRDecomp_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *buffer, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height,
    int count);
KeslStatus keslQRDecomp_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *buffer,
    double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);

/* --------------------------------------------------------------------------------------------------- keslQRBackSubst
 * Solves A x = b, with A as keslQRDecomp leaves it in src1; if A is higher than wide, x is the least squares solution, for
 * which the Euclidean length of A x - b is least.
 *
 * Shapes     mv (one matrix, one vector), mva (one matrix for all vectors), mava (for each vector its own).
 * Sizes      width, height: those of A; width at most height. A vector of src2 has height elements, one of dst has width.
 * src1       R and the reflectors, as keslQRDecomp left them.
 * src2, dst  The right-hand side b and the solution x.
 * buffer     height elements of scratch, without strides in any layout; needed at every size, left alone with square matrices
 *            of order 3 to 6 and overwritten with others.
 * Method     The reflections on b, then back substitution (Golub and Van Loan, Matrix Computations, 5.2, 5.3 and 3.1).
 * Zeros      on the diagonal of R give infinities or NaN in dst and are not reported.
 * Overlap    None.
 * Status     N S B M for mv (P: N S R M), N C S B M for arrays (L, P: N C S B R M): the sizes are matched last, unlike
 *            elsewhere. keslStatusOk once the arguments are good.
 */
KeslStatus keslQRBackSubst_mava_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    float *buffer, const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mava_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    float *buffer, const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift,
    int dstStride2, int width, int height, int count);
KeslStatus keslQRBackSubst_mava_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, float *buffer,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mava_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2,
    double *buffer, const double *src2, int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mava_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2,
    double *buffer, const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift,
    int dstStride2, int width, int height, int count);
KeslStatus keslQRBackSubst_mava_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, double *buffer,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mv_32f(const float *src1, int src1Stride1, int src1Stride2, float *buffer,
    const float *src2, int src2Stride2, float *dst, int dstStride2, int width, int height);
KeslStatus keslQRBackSubst_mv_32f_P(const float *const *src1, int src1RoiShift, float *buffer,
    const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslQRBackSubst_mv_64f(const double *src1, int src1Stride1, int src1Stride2, double *buffer,
    const double *src2, int src2Stride2, double *dst, int dstStride2, int width, int height);
KeslStatus keslQRBackSubst_mv_64f_P(const double *const *src1, int src1RoiShift, double *buffer,
    const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslQRBackSubst_mva_32f(const float *src1, int src1Stride1, int src1Stride2, float *buffer,
    const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int width,
    int height, int count);
KeslStatus keslQRBackSubst_mva_32f_L(const float *src1, int src1Stride1, int src1Stride2, float *buffer,
    const float *const *src2, int src2RoiShift, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride2,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mva_32f_P(const float *const *src1, int src1RoiShift, float *buffer,
    const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mva_64f(const double *src1, int src1Stride1, int src1Stride2, double *buffer,
    const double *src2, int src2Stride0, int src2Stride2, double *dst, int dstStride0, int dstStride2, int width,
    int height, int count);
KeslStatus keslQRBackSubst_mva_64f_L(const double *src1, int src1Stride1, int src1Stride2, double *buffer,
    const double *const *src2, int src2RoiShift, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride2,
    int width, int height, int count);
KeslStatus keslQRBackSubst_mva_64f_P(const double *const *src1, int src1RoiShift, double *buffer,
    const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0,
    int width, int height, int count);

/* ----------------------------------------------------------------------------------------------------------- keslDet
 * dst = the determinant of src; widthHeight is the order n of the matrices.
 *
 * Method     Orders 3 to 6 by Laplace's expansion along the last row in closed form, each minor of the upper rows once, without
 *            any test. The other orders by Gaussian elimination with partial pivoting (Golub and Van Loan, Matrix
 *            Computations, 3.4).
 * dst        One element for each matrix, in every layout a plain pointer without strides and shifts.
 * buffer     n*n + n elements of scratch, without strides in any layout; needed at every order, used at orders 1, 2 and 7
 *            upward by calls that run on one thread.
 * Overflow   Products of n elements must fit: diag(1e13, 1e13, 1e13) in 32f has the determinant 1e39 and gives infinity.
 * Singular   is no failure: the determinant is 0. At orders 1, 2 and 7 upward a pivot is zero if it is below 2 n^3 times the
 *            smallest normal number (2^-126, 2^-1022), and the last one also if it equals that or is a NaN. The integer 2 n^3
 *            is taken in 32 bits. In arrays the zero may have either sign, and a NaN stands for it where the pivots before it
 *            overflow or the last element is infinite; a single matrix has a plain 0.
 * Overlap    None.
 * Status     N C S B R as usual (buffer is one of the pointers). keslStatusOk once the arguments are good; overflow and NaN
 *            are not reported.
 */
KeslStatus keslDet_m_32f(const float *src, int srcStride1, int srcStride2, int widthHeight, float *buffer,
    float *dst);
KeslStatus keslDet_m_32f_P(const float *const *src, int srcRoiShift, int widthHeight, float *buffer, float *dst);
KeslStatus keslDet_m_64f(const double *src, int srcStride1, int srcStride2, int widthHeight, double *buffer,
    double *dst);
KeslStatus keslDet_m_64f_P(const double *const *src, int srcRoiShift, int widthHeight, double *buffer, double *dst);
KeslStatus keslDet_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, int widthHeight,
    float *buffer, float *dst, int count);
KeslStatus keslDet_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, int widthHeight,
    float *buffer, float *dst, int count);
KeslStatus keslDet_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, int widthHeight, float *buffer,
    float *dst, int count);
KeslStatus keslDet_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, int widthHeight,
    double *buffer, double *dst, int count);
KeslStatus keslDet_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    int widthHeight, double *buffer, double *dst, int count);
KeslStatus keslDet_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, int widthHeight,
    double *buffer, double *dst, int count);

/* ------------------------------------------------------------------------------------------------------- keslInvert
 * dst = the inverse of src; widthHeight is the order n of the matrices.
 *
 * Method     The adjugate: the transposed matrix of cofactors times the reciprocal of the determinant. Orders 3 to 6 by
 *            Laplace's expansion in closed form; orders 2 and 7 upward by Gaussian elimination with partial pivoting of the
 *            matrix, for its determinant, and of each of its minors (Golub and Van Loan, Matrix Computations, 3.4): a cost of
 *            the order of n to the fifth power. For large n an LU decomposition serves better.
 * Accuracy   An expansion loses what the terms of the determinant cancel, more than elimination does: where a matrix of order 3
 *            to 6 has several small singular values, keslLUDecomp and keslLUBackSubst solve much more exactly.
 * buffer     n*n + n elements of scratch, without strides in any layout; needed at every order, used at orders 2 and 7 upward
 *            by calls that run on one thread.
 * Overflow   is not reported. Where the determinant overflows its reciprocal is 0, and the inverse 0, or NaN where a cofactor
 *            overflows, too: diag(1e13, 1e13, 1e13) in 32f, of determinant 1e39, gives zeros with keslStatusOk. Elements near 1
 *            in magnitude, by a power of two, avoid this and the bound below; the inverse takes the same power.
 * Singular   A determinant or pivot counts as zero below 2 n^3 times the smallest normal number (2^-126, 2^-1022). At orders 3
 *            to 6 the determinant is singular if it is below, at order 1 the element if it is not above, and a NaN then; at the
 *            other orders a pivot below or a determinant not above. In the other orders a minor that is itself singular counts
 *            as this bound, not as zero.
 * Overlap    dst may be the same storage as src, with the same strides, at orders 1 and 3 to 6; never at the others.
 * Status     N C S B R as usual (buffer is one of the pointers), then keslStatusSingular: the first singular object ends the
 *            call. It is not written, nor are the objects behind it; those before it are complete. In threads this holds for
 *            the slice of each thread, and the slices behind are worked on.
 */
KeslStatus keslInvert_m_32f(const float *src, int srcStride1, int srcStride2, float *buffer, float *dst,
    int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslInvert_m_32f_P(const float *const *src, int srcRoiShift, float *buffer, float *const *dst,
    int dstRoiShift, int widthHeight);
KeslStatus keslInvert_m_64f(const double *src, int srcStride1, int srcStride2, double *buffer, double *dst,
    int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslInvert_m_64f_P(const double *const *src, int srcRoiShift, double *buffer, double *const *dst,
    int dstRoiShift, int widthHeight);
KeslStatus keslInvert_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *buffer,
    float *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *buffer, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *buffer,
    float *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslInvert_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *buffer,
    double *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *buffer, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *buffer,
    double *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);

/* ------------------------------------------------------------------------------------------------ keslEigenValuesSym
 * dst = the eigenvalues of the symmetric matrix src, n for each object, back to back in every layout. widthHeight is the order
 * n of the matrices.
 *
 * src        All n*n elements are read, and symmetry is not tested: give both triangles. (Order 2 does not use element (1,0);
 *            what the method makes of a matrix that is not symmetric from order 3 on has no meaning.) In P both triangles may
 *            be the same storage: six numbers of a symmetric tensor, named by nine pointers.
 * buffer     n*n elements of scratch, without strides in any layout; needed at every order, used at orders 7 upward by calls
 *            that run on one thread.
 * Order      Descending, signs included, from order 3 on. Order 2: the value of greater magnitude first, so with a trace
 *            below -eps the more negative one; with a trace of at most eps in magnitude root/2, -root/2.
 * Method     Order 1: the element. Order 2: the roots of the quadratic, the second as determinant over the first. From order 3
 *            on: Householder's reduction to tridiagonal form (Martin, Reinsch and Wilkinson, Numer. Math. 11, 1968), then
 *            implicit QL iteration with Wilkinson's shift (Martin and Wilkinson, Numer. Math. 12, 1968; Wilkinson and Reinsch,
 *            Linear Algebra, II/2 to II/4), at most 30 sweeps for a value; bottom-up, or top-down if the last diagonal
 *            element of the tridiagonal form is greater in magnitude than the first. Sums in ascending order.
 * Tests      are absolute, against eps = 2^-23 (32f), 2^-52 (64f); they do not scale with the matrix. An off-diagonal element
 *            of the tridiagonal form counts as zero up to 2 eps; in arrays a column is not reduced, and what is below its
 *            subdiagonal is dropped, if the squares of all that is below its diagonal sum to eps or less. So scale the matrices
 *            by a power of two, which is exact, until their greatest elements are near 2^28 (32f) or 2^56 (64f): the values
 *            scale with them. docs/eigenvalues.md tells how, and what happens otherwise.
 * Accuracy   A sweep ends early where a rotation has a radius of eps or less, and then takes a coupling for zero that is not:
 *            a few in a thousand float matrices of order 6, fewer of order 3 and of larger elements, get values that are wrong
 *            by much more than rounding, with keslStatusOk. Their sum is right, and vectors are orthogonal. It is rare in 64f:
 *            tridiagonal (-1 2 -1) of order 4 is such a matrix unless scaled. Other errors: some eps times the greatest value.
 * Singular   A matrix is reported as singular, which is unusual for eigenvalues, if P is at most eps in magnitude. Not at
 *            order 1. Order 2: P is the determinant; only keslEigenValuesSym_ma_32f with contiguous rows takes 2^-52 instead of eps.
 *            From order 3 on P is the product of the values, formed as they are found; in the bottom-up form some of them
 *            count more than once, so P is not quite the determinant. Small values, not only zeros, make P small.
 * NaN        Order 2: NaN values and keslStatusOk. From order 3 on keslStatusNoConvergence, if it reaches an off-diagonal.
 * Overlap    dst must not overlap src or buffer.
 * Status     m: N S B (P: N S R);  ma: N S C B (L, P: N S C R B), sizes before count, shifts before strides. buffer is one of
 *            the pointers. Then, by the first object that fails, keslStatusNoConvergence or keslStatusSingular; it ends the
 *            call. The objects before it are complete, those behind it untouched. Its own dst: singular at order 2, untouched;
 *            singular from order 3 on, its values, not sorted; no convergence, of no meaning. In threads this holds for the
 *            slice of each thread, and the other slices are worked on.
 */
KeslStatus keslEigenValuesSym_m_32f(const float *src, int stride1, int stride2, float *buffer, float *dst,
    int widthHeight);
KeslStatus keslEigenValuesSym_m_32f_P(const float *const *src, int roiShift, float *buffer, float *dst,
    int widthHeight);
KeslStatus keslEigenValuesSym_m_64f(const double *src, int stride1, int stride2, double *buffer, double *dst,
    int widthHeight);
KeslStatus keslEigenValuesSym_m_64f_P(const double *const *src, int roiShift, double *buffer, double *dst,
    int widthHeight);
KeslStatus keslEigenValuesSym_ma_32f(const float *src, int stride0, int stride1, int stride2, float *buffer,
    float *dst, int widthHeight, int count);
KeslStatus keslEigenValuesSym_ma_32f_L(const float *const *src, int roiShift, int stride1, int stride2,
    float *buffer, float *dst, int widthHeight, int count);
KeslStatus keslEigenValuesSym_ma_32f_P(const float *const *src, int roiShift, int stride0, float *buffer,
    float *dst, int widthHeight, int count);
KeslStatus keslEigenValuesSym_ma_64f(const double *src, int stride0, int stride1, int stride2, double *buffer,
    double *dst, int widthHeight, int count);
KeslStatus keslEigenValuesSym_ma_64f_L(const double *const *src, int roiShift, int stride1, int stride2,
    double *buffer, double *dst, int widthHeight, int count);
KeslStatus keslEigenValuesSym_ma_64f_P(const double *const *src, int roiShift, int stride0, double *buffer,
    double *dst, int widthHeight, int count);

/* ----------------------------------------------------------------------------------------- keslEigenValuesVectorsSym
 * dstValues = the eigenvalues of the symmetric matrix src, as above, and column c of dstVectors = the eigenvector of value c.
 * The vectors have length 1 and are orthogonal, being a product of reflections and rotations; their signs are as they come.
 *
 * src, buffer, Method, Tests, NaN   as in keslEigenValuesSym, with these differences. In arrays of 32f each result is formed
 *            in double precision and rounded when it is stored (order 2 is single precision throughout). The reduction passes
 *            over a column also in the functions on one matrix if the root of its sum of squares and its head differ by
 *            eps or less; in keslEigenValuesVectorsSym_ma_32f_L with contiguous rows the tests of the reduction take 2^-52.
 * Order      of the values as in keslEigenValuesSym; the columns follow. Order 1: the vector is 1.
 * Singular   As in keslEigenValuesSym, at order 2 with eps everywhere; but in arrays, from order 3 on, P is the product of the
 *            values, each once, in double precision.
 * Overlap    none between src, buffer, dstVectors and dstValues.
 * Status     As in keslEigenValuesSym. What a failing object holds: singular at order 2, nothing is written; from order 3 on
 *            values and vectors are all there, sorted in the functions on one matrix (but for keslEigenValuesVectorsSym_m_32f
 *            with gaps between elements), and not sorted, though each with its own, in arrays; no convergence, unfinished
 *            values and vectors.
 */
KeslStatus keslEigenValuesVectorsSym_m_32f(const float *src, int srcStride1, int srcStride2, float *buffer,
    float *dstVectors, int dstStride1, int dstStride2, float *dstValues, int widthHeight);
KeslStatus keslEigenValuesVectorsSym_m_32f_P(const float *const *src, int srcRoiShift, float *buffer,
    float *const *dstVectors, int dstRoiShift, float *dstValues, int widthHeight);
KeslStatus keslEigenValuesVectorsSym_m_64f(const double *src, int srcStride1, int srcStride2, double *buffer,
    double *dstVectors, int dstStride1, int dstStride2, double *dstValues, int widthHeight);
KeslStatus keslEigenValuesVectorsSym_m_64f_P(const double *const *src, int srcRoiShift, double *buffer,
    double *const *dstVectors, int dstRoiShift, double *dstValues, int widthHeight);
KeslStatus keslEigenValuesVectorsSym_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2,
    float *buffer, float *dstVectors, int dstStride0, int dstStride1, int dstStride2, float *dstValues,
    int widthHeight, int count);
KeslStatus keslEigenValuesVectorsSym_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, float *buffer, float *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2,
    float *dstValues, int widthHeight, int count);
KeslStatus keslEigenValuesVectorsSym_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *buffer,
    float *const *dstVectors, int dstRoiShift, int dstStride0, float *dstValues, int widthHeight, int count);
KeslStatus keslEigenValuesVectorsSym_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2,
    double *buffer, double *dstVectors, int dstStride0, int dstStride1, int dstStride2, double *dstValues,
    int widthHeight, int count);
KeslStatus keslEigenValuesVectorsSym_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, double *buffer, double *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2,
    double *dstValues, int widthHeight, int count);
KeslStatus keslEigenValuesVectorsSym_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0,
    double *buffer, double *const *dstVectors, int dstRoiShift, int dstStride0, double *dstValues, int widthHeight,
    int count);

/* ----------------------------------------------------------------------------------------------------- keslEigenValues
 * dstRe, dstIm = the eigenvalues of src, which need not be symmetric; widthHeight is the order n of the matrices.
 *
 * Method     Householder's reduction to upper Hessenberg form, Francis' double-shift QR iteration on the active block, and a
 *            standard form for the blocks of order 2 that remain (EISPACK's orthes and hqr; LAPACK's dhseqr with dlahqr and
 *            dlanv2; Golub and Van Loan, Matrix Computations, 7.4 and 7.5). There is no balancing and no sorting. What the
 *            iteration works on is H, the transpose of src: this tells the order of the results, not their values.
 *            A subdiagonal element is negligible if it is at most eps (2^-23, 2^-52), whatever the size of the others: scale
 *            matrices to about 1. Squares of elements are formed, so those of magnitude below 1e-19 or above 1e19 (float) or
 *            1e-154 or 1e154 (double) lose their meaning. All operations are in the element type.
 * dstRe, dstIm  n elements each for each matrix, real and imaginary parts, in every layout plain pointers without strides and
 *            shifts: eigenvalue j of matrix k at k*n + j. They stand as on the diagonal of the final H. Of a conjugate pair the
 *            one with the positive imaginary part stands first. The imaginary part of a real eigenvalue is +0.
 * Blocks     A block of order 2 whose diagonal elements differ by at most 2^-125 (2^-1021), and neither of the others is that
 *            small, counts as a conjugate pair even where the others agree in sign: {1, 2, 3, 1} has 1 +- i sqrt(6) here. And
 *            where two real eigenvalues nearly coincide, and the block turned to a constant diagonal still has two others that
 *            agree in sign, they lie half the difference of the original diagonal elements, not the root of the product of
 *            the others, to either side of the mean.
 * buffer     (n + 5) * n elements of scratch, without strides in any layout: as many bytes as keslEigenValuesGetBufSize gives.
 *            It serves all matrices of a call in turn. Calls that run in threads leave it alone and allocate
 *            (3 n + 5) * n elements for each thread.
 * Overlap    None.
 * Status     N S B (P: N S R) for one matrix; N S C B (L, P: N S C R B) for arrays; dstRe, dstIm and buffer are among the
 *            pointers. Then keslStatusNoConvergence: 30 n sweeps did not suffice for a matrix, as when a NaN or infinity is in
 *            it. Of this matrix dstRe and dstIm hold the eigenvalues found, which are the last ones, and the others are not
 *            written; the matrices before it are complete, those behind it are not worked on. In threads this holds for the
 *            slice of each thread. Matrices of order 1 and 2 take no sweep and do not fail. GetBufSize: N S.
 */
KeslStatus keslEigenValuesGetBufSize_32f(int widthHeight, int *bufSize);
KeslStatus keslEigenValuesGetBufSize_64f(int widthHeight, int *bufSize);
KeslStatus keslEigenValues_m_32f(const float *src, int stride1, int stride2, float *dstRe, float *dstIm,
    int widthHeight, float *buffer);
KeslStatus keslEigenValues_m_32f_P(const float *const *src, int roiShift, float *dstRe, float *dstIm, int widthHeight,
    float *buffer);
KeslStatus keslEigenValues_m_64f(const double *src, int stride1, int stride2, double *dstRe, double *dstIm,
    int widthHeight, double *buffer);
KeslStatus keslEigenValues_m_64f_P(const double *const *src, int roiShift, double *dstRe, double *dstIm,
    int widthHeight, double *buffer);
KeslStatus keslEigenValues_ma_32f(const float *src, int stride0, int stride1, int stride2, float *dstRe, float *dstIm,
    int widthHeight, int count, float *buffer);
KeslStatus keslEigenValues_ma_32f_L(const float *const *src, int roiShift, int stride1, int stride2, float *dstRe,
    float *dstIm, int widthHeight, int count, float *buffer);
KeslStatus keslEigenValues_ma_32f_P(const float *const *src, int roiShift, int stride0, float *dstRe, float *dstIm,
    int widthHeight, int count, float *buffer);
KeslStatus keslEigenValues_ma_64f(const double *src, int stride0, int stride1, int stride2, double *dstRe,
    double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValues_ma_64f_L(const double *const *src, int roiShift, int stride1, int stride2, double *dstRe,
    double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValues_ma_64f_P(const double *const *src, int roiShift, int stride0, double *dstRe, double *dstIm,
    int widthHeight, int count, double *buffer);

/* ---------------------------------------------------------------------------------------------- keslEigenValuesVectors
 * dstRe, dstIm = the eigenvalues of src, as keslEigenValues gives them but for rounding and order; and eigenvectors: of the
 * right kind and of the left, in Vectors both, in VectorsRight and VectorsLeft one of them. widthHeight is the order n.
 *
 * Vectors    All is said in terms of H, THE TRANSPOSE OF src. Column j of the destination is the vector of eigenvalue j. Right
 *            vectors x satisfy H x = lambda x, so as rows x' src = lambda x': with the rows and columns of src they are its
 *            left eigenvectors. Left vectors y satisfy y' H = lambda y', so src y = lambda y: use VectorsLeft for what is
 *            usually called the eigenvectors of src. (' transposes and does not conjugate.)
 *            Of a conjugate pair at j and j + 1, column j is the real and column j + 1 the imaginary part of the vector of
 *            eigenvalue j, the one with the positive imaginary part; that of j + 1 is its conjugate.
 *            Each vector has length 1, the two columns of a pair together. The element of a complex vector that is greatest
 *            in modulus is made real up to rounding. At order 1 the vector is 1.
 * Method     As keslEigenValues, with the transformations collected and the whole matrix brought to real Schur form
 *            (EISPACK's hqr2); then substitution (LAPACK's dtrevc and dlaln2, with plain complex quotients).
 *            A subdiagonal element is negligible if it is at most eps times the sum of the diagonal elements beside it, or at
 *            most n 2^-102 (n 2^-969). The shifts of the 64f functions are formed in single precision, which costs no
 *            accuracy, but for keslEigenValuesVectors_m_64f and keslEigenValuesVectors_m_64f_P. Of blocks of order 2 with
 *            the same rules as in keslEigenValues; the vectors of a block whose eigenvalues these rules displace mean little.
 * buffer     (3 n + 5) * n elements of scratch, without strides in any layout: as many bytes as
 *            keslEigenValuesVectorsGetBufSize gives. Calls that run in threads leave it alone and allocate as much for each.
 * Overlap    A destination of vectors may be the same storage as src, with the same strides. No other.
 * Status     N S B (P: N S R) for one matrix; N S C B for arrays, in L and P N S C, R and B of src, R of the destinations,
 *            B of the destinations. Then, and the first matrix that fails ends the call:
 *            keslStatusNoConvergence: 30 n sweeps did not suffice; dstRe and dstIm as in keslEigenValues.
 *            keslStatusFailed: a block of order 2 of the Schur form minus a complex eigenvalue is zero to working precision;
 *            dstRe and dstIm are complete. The same with a real eigenvalue ends the call too, but with keslStatusOk.
 *            In all three cases the vectors of this matrix are not written, the matrices before it are complete, and those
 *            behind it are not worked on. In threads this holds for the slice of each thread. GetBufSize: N S.
 */
KeslStatus keslEigenValuesVectorsGetBufSize_32f(int widthHeight, int *bufSize);
KeslStatus keslEigenValuesVectorsGetBufSize_64f(int widthHeight, int *bufSize);
KeslStatus keslEigenValuesVectors_m_32f(const float *src, int srcStride1, int srcStride2, float *dstVectorsRight,
    int dstVectorsRightStride1, int dstVectorsRightStride2, float *dstVectorsLeft, int dstVectorsLeftStride1,
    int dstVectorsLeftStride2, float *dstRe, float *dstIm, int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectors_m_32f_P(const float *const *src, int srcRoiShift, float *const *dstVectorsRight,
    int dstVectorsRightRoiShift, float *const *dstVectorsLeft, int dstVectorsLeftRoiShift, float *dstRe, float *dstIm,
    int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectors_m_64f(const double *src, int srcStride1, int srcStride2, double *dstVectorsRight,
    int dstVectorsRightStride1, int dstVectorsRightStride2, double *dstVectorsLeft, int dstVectorsLeftStride1,
    int dstVectorsLeftStride2, double *dstRe, double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectors_m_64f_P(const double *const *src, int srcRoiShift, double *const *dstVectorsRight,
    int dstVectorsRightRoiShift, double *const *dstVectorsLeft, int dstVectorsLeftRoiShift, double *dstRe,
    double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectors_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2,
    float *dstVectorsRight, int dstVectorsRightStride0, int dstVectorsRightStride1, int dstVectorsRightStride2,
    float *dstVectorsLeft, int dstVectorsLeftStride0, int dstVectorsLeftStride1, int dstVectorsLeftStride2,
    float *dstRe, float *dstIm, int widthHeight, int count, float *buffer);
KeslStatus keslEigenValuesVectors_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    float *const *dstVectorsRight, int dstVectorsRightRoiShift, int dstVectorsRightStride1,
    int dstVectorsRightStride2, float *const *dstVectorsLeft, int dstVectorsLeftRoiShift, int dstVectorsLeftStride1,
    int dstVectorsLeftStride2, float *dstRe, float *dstIm, int widthHeight, int count, float *buffer);
KeslStatus keslEigenValuesVectors_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0,
    float *const *dstVectorsRight, int dstVectorsRightRoiShift, int dstVectorsRightStride0,
    float *const *dstVectorsLeft, int dstVectorsLeftRoiShift, int dstVectorsLeftStride0, float *dstRe, float *dstIm,
    int widthHeight, int count, float *buffer);
KeslStatus keslEigenValuesVectors_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2,
    double *dstVectorsRight, int dstVectorsRightStride0, int dstVectorsRightStride1, int dstVectorsRightStride2,
    double *dstVectorsLeft, int dstVectorsLeftStride0, int dstVectorsLeftStride1, int dstVectorsLeftStride2,
    double *dstRe, double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValuesVectors_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2,
    double *const *dstVectorsRight, int dstVectorsRightRoiShift, int dstVectorsRightStride1,
    int dstVectorsRightStride2, double *const *dstVectorsLeft, int dstVectorsLeftRoiShift, int dstVectorsLeftStride1,
    int dstVectorsLeftStride2, double *dstRe, double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValuesVectors_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0,
    double *const *dstVectorsRight, int dstVectorsRightRoiShift, int dstVectorsRightStride0,
    double *const *dstVectorsLeft, int dstVectorsLeftRoiShift, int dstVectorsLeftStride0, double *dstRe,
    double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValuesVectorsRight_m_32f(const float *src, int srcStride1, int srcStride2, float *dstVectors,
    int dstStride1, int dstStride2, float *dstRe, float *dstIm, int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectorsRight_m_32f_P(const float *const *src, int srcRoiShift, float *const *dstVectors,
    int dstRoiShift, float *dstRe, float *dstIm, int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectorsRight_m_64f(const double *src, int srcStride1, int srcStride2, double *dstVectors,
    int dstStride1, int dstStride2, double *dstRe, double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectorsRight_m_64f_P(const double *const *src, int srcRoiShift, double *const *dstVectors,
    int dstRoiShift, double *dstRe, double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2,
    float *dstVectors, int dstStride0, int dstStride1, int dstStride2, float *dstRe, float *dstIm, int widthHeight,
    int count, float *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, float *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2, float *dstRe,
    float *dstIm, int widthHeight, int count, float *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0,
    float *const *dstVectors, int dstRoiShift, int dstStride0, float *dstRe, float *dstIm, int widthHeight, int count,
    float *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2,
    double *dstVectors, int dstStride0, int dstStride1, int dstStride2, double *dstRe, double *dstIm, int widthHeight,
    int count, double *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, double *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2, double *dstRe,
    double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValuesVectorsRight_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0,
    double *const *dstVectors, int dstRoiShift, int dstStride0, double *dstRe, double *dstIm, int widthHeight,
    int count, double *buffer);
KeslStatus keslEigenValuesVectorsLeft_m_32f(const float *src, int srcStride1, int srcStride2, float *dstVectors,
    int dstStride1, int dstStride2, float *dstRe, float *dstIm, int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectorsLeft_m_32f_P(const float *const *src, int srcRoiShift, float *const *dstVectors,
    int dstRoiShift, float *dstRe, float *dstIm, int widthHeight, float *buffer);
KeslStatus keslEigenValuesVectorsLeft_m_64f(const double *src, int srcStride1, int srcStride2, double *dstVectors,
    int dstStride1, int dstStride2, double *dstRe, double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectorsLeft_m_64f_P(const double *const *src, int srcRoiShift, double *const *dstVectors,
    int dstRoiShift, double *dstRe, double *dstIm, int widthHeight, double *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2,
    float *dstVectors, int dstStride0, int dstStride1, int dstStride2, float *dstRe, float *dstIm, int widthHeight,
    int count, float *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, float *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2, float *dstRe,
    float *dstIm, int widthHeight, int count, float *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0,
    float *const *dstVectors, int dstRoiShift, int dstStride0, float *dstRe, float *dstIm, int widthHeight, int count,
    float *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2,
    double *dstVectors, int dstStride0, int dstStride1, int dstStride2, double *dstRe, double *dstIm, int widthHeight,
    int count, double *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1,
    int srcStride2, double *const *dstVectors, int dstRoiShift, int dstStride1, int dstStride2, double *dstRe,
    double *dstIm, int widthHeight, int count, double *buffer);
KeslStatus keslEigenValuesVectorsLeft_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0,
    double *const *dstVectors, int dstRoiShift, int dstStride0, double *dstRe, double *dstIm, int widthHeight,
    int count, double *buffer);

/* ------------------------------------------------------------------------------------------- keslAffineTransform3DH
 * Points (x, y, z) through a 4 by 4 matrix M = src1 in homogeneous coordinates, and back by the last coordinate.
 *
 *            t(r) = ((M(r,0)*x + M(r,3)) + M(r,1)*y) + M(r,2)*z  for r = 0 .. 3,  dst = (t(0), t(1), t(2)) * (1 / t(3))
 *
 * Shapes     mva in single precision and the standard layout alone: one matrix, count points of 3 elements.
 * Infinity   A point whose |t(3)| is not above the smallest normal number 2^-126, or is a NaN, becomes three times the largest
 *            finite number 3.4028235e38; all other points are transformed as usual.
 * Overlap    None.
 * Status     N C B, then keslStatusDivideByZero if a point lies at infinity, else keslStatusOk.
 */
KeslStatus keslAffineTransform3DH_mva_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2,
    int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int count);

#ifdef __cplusplus
}
#endif
#endif
