#ifndef KESLMX_H
#define KESLMX_H

#ifdef __cplusplus
extern "C" {
#endif

typedef int KeslStatus;
enum {
    keslStatusOk                  =    0,
    keslStatusFailed              =   -2,
    keslStatusBadSize             =   -6,
    keslStatusNullPointer         =   -8,
    keslStatusDivideByZero        =  -10,
    keslStatusNotPositiveDefinite = -179,
    keslStatusBadStride           = -182,
    keslStatusSingular            = -195,
    keslStatusBadRoiShift         = -202,
    keslStatusBadCount            = -203,
    keslStatusSizeMismatch        = -204,
    keslStatusNoConvergence       = -205
};

typedef struct KeslVersionRecord {
    int         versionMajor;
    int         versionMinor;
    int         buildSeries;
    int         buildNumber;
    char        targetTag[4];
    const char *libraryName;
    const char *versionText;
    const char *buildDate;
} KeslVersionRecord;

const KeslVersionRecord *keslGetLibVersion(void);

/* keslAdd on matrices */
KeslStatus keslAdd_mm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_mm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_mm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_mm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_tt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslAdd_tt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslAdd_mam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_mama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_mama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslAdd_tata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslAdd_tata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);

/* keslSub on matrices */
KeslStatus keslSub_mm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_mt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tm_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tm_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tm_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tm_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tt_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tt_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_tt_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride1, int dstStride2, int width, int height);
KeslStatus keslSub_tt_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int width, int height);
KeslStatus keslSub_mam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tam_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tam_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tam_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tat_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *src2, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tat_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *src2, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tat_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mma_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mma_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mma_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mta_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mta_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mta_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tma_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tma_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tma_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tta_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_32f_L(const float *src1, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_32f_P(const float *const *src1, int src1RoiShift, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tta_64f(const double *src1, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_64f_L(const double *src1, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tta_64f_P(const double *const *src1, int src1RoiShift, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_mata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_mata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tama_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tama_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tama_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tata_32f(const float *src1, int src1Stride0, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride1, int src2Stride2, float *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_32f_L(const float *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const float *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_32f_P(const float *const *src1, int src1RoiShift, int src1Stride0, const float *const *src2, int src2RoiShift, int src2Stride0, float *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);
KeslStatus keslSub_tata_64f(const double *src1, int src1Stride0, int src1Stride1, int src1Stride2, const double *src2, int src2Stride0, int src2Stride1, int src2Stride2, double *dst, int dstStride0, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_64f_L(const double *const *src1, int src1RoiShift, int src1Stride1, int src1Stride2, const double *const *src2, int src2RoiShift, int src2Stride1, int src2Stride2, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int width, int height, int count);
KeslStatus keslSub_tata_64f_P(const double *const *src1, int src1RoiShift, int src1Stride0, const double *const *src2, int src2RoiShift, int src2Stride0, double *const *dst, int dstRoiShift, int dstStride0, int width, int height, int count);

/* keslInvert */
KeslStatus keslInvert_m_32f(const float *src, int srcStride1, int srcStride2, float *buffer, float *dst, int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslInvert_m_32f_P(const float *const *src, int srcRoiShift, float *buffer, float *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslInvert_m_64f(const double *src, int srcStride1, int srcStride2, double *buffer, double *dst, int dstStride1, int dstStride2, int widthHeight);
KeslStatus keslInvert_m_64f_P(const double *const *src, int srcRoiShift, double *buffer, double *const *dst, int dstRoiShift, int widthHeight);
KeslStatus keslInvert_ma_32f(const float *src, int srcStride0, int srcStride1, int srcStride2, float *buffer, float *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_32f_L(const float *const *src, int srcRoiShift, int srcStride1, int srcStride2, float *buffer, float *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_32f_P(const float *const *src, int srcRoiShift, int srcStride0, float *buffer, float *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);
KeslStatus keslInvert_ma_64f(const double *src, int srcStride0, int srcStride1, int srcStride2, double *buffer, double *dst, int dstStride0, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_64f_L(const double *const *src, int srcRoiShift, int srcStride1, int srcStride2, double *buffer, double *const *dst, int dstRoiShift, int dstStride1, int dstStride2, int widthHeight, int count);
KeslStatus keslInvert_ma_64f_P(const double *const *src, int srcRoiShift, int srcStride0, double *buffer, double *const *dst, int dstRoiShift, int dstStride0, int widthHeight, int count);

/* keslAffineTransform3DH */
KeslStatus keslAffineTransform3DH_mva_32f(const float *src1, int src1Stride1, int src1Stride2, const float *src2, int src2Stride0, int src2Stride2, float *dst, int dstStride0, int dstStride2, int count);

#ifdef __cplusplus
}
#endif
#endif
