/* keslmx: operations on many small matrices and vectors in one call.
 *
 * OBJECTS. A function works on one object or on an array of `count` objects of one size: matrices of `height` rows and
 * `width` columns, vectors of `len` elements, constants. Its name tells them, as in keslAdd_mam_32f_L:
 *
 *     Add    the operation
 *     mam    the sources in order: m matrix, t matrix that is read transposed, v vector, c constant; an `a` behind a letter
 *            makes it an array. The destination is an array as soon as a source is; it is never transposed.
 *     32f    the element type of all operands: 32f is float, 64f is double
 *     _L     the layout; no ending for the standard layout
 *
 * LAYOUTS. Where element (i, j) of object k lies (i the row, j the column; a vector has no i and no stride1):
 *
 *     standard  src + k*stride0 + i*stride1 + j*stride2              one base pointer
 *     L         src[k] + roiShift + i*stride1 + j*stride2            a list with one pointer for each object
 *     P         src[i*width + j] + roiShift + k*stride0              a list with one pointer for each element of object 0
 *
 * STRIDES AND SHIFTS ARE IN BYTES, all sizes and counts in objects or elements. Every stride must be at least 1 and every
 * roiShift at least 0, and all must be multiples of the element size; nothing else is asked of them, so rows may have gaps,
 * objects may be interleaved and lists may name an element twice. A single object in an L function keeps the arguments of
 * the standard layout. An operand t is stored with `width` rows of `height` elements when the sizes of a function are those
 * of its result: element (i, j) is read at src + j*stride1 + i*stride2, in P at src[j*height + i].
 *
 * SPEED. The functions are made for matrices of order 3 to 6 and vectors of length 3 to 6. Rows without gaps between their
 * elements (every stride2 the element size) are fast, objects without any gap the fastest; so are arrays that are
 * interleaved as a structure of arrays (stride0 the element size). Large calls are spread over OpenMP threads; the result
 * does not depend on how many.
 *
 * BITS. Each operation is rounded to the element type before the next; nothing is fused, and subnormal numbers are kept.
 * Every layout, stride, count, number of threads and processor gives the same bits, unless a family says otherwise.
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
 * otherwise. Operands may overlap only where a family says so; that is not tested.
 *
 * THREADS. Any number of threads may call any function at once if their destinations do not overlap. Nothing is kept
 * between calls.
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
    keslStatusBadStride           = -182,  /* a stride below 1 or of broken elements */
    keslStatusSingular            = -195,  /* a matrix is singular to working precision */
    keslStatusBadRoiShift         = -202,  /* a roiShift below 0 or of broken elements */
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
 * Overlap    dst may be the same storage as an operand that is not transposed, with the same strides, in the shapes without
 *            an array and as the array operand of mam.
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
 * Overlap    dst may be the same storage as an operand that is not transposed, with the same strides, in the shapes without
 *            an array and as the array operand of mam and mma.
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

/* ------------------------------------------------------------------------------------------------------- keslInvert
 * dst = the inverse of src; widthHeight is the order n of the matrices.
 *
 * Method     The adjugate: the transposed matrix of cofactors times the reciprocal of the determinant. Orders 3 to 6 by
 *            Laplace's expansion in closed form; orders 2 and 7 upward by Gaussian elimination with partial pivoting of the
 *            matrix, for its determinant, and of each of its minors (Golub and Van Loan, Matrix Computations, 3.4): a cost of
 *            the order of n to the fifth power. For large n an LU decomposition serves better.
 * buffer     n*n + n elements of scratch, without strides in any layout; needed at every order, used at orders 2 and 7 upward.
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
