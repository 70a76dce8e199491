// What all functions have in common, at single ones.
#include "../special.h"

#include <cstring>

namespace {
const Special version("Version", "record", [](const Level& level) {
    const auto keslGetLibVersion_ = get<decltype(keslGetLibVersion)>(level, "keslGetLibVersion");
    const KeslVersionRecord* record = keslGetLibVersion_();
    EXPECT_EQ(record, keslGetLibVersion_());
    EXPECT_EQ(record->versionMajor, 6);
    EXPECT_EQ(record->versionMinor, 1);
    EXPECT_EQ(record->buildSeries, 137);
    EXPECT_EQ(record->buildNumber, 778);
    EXPECT_EQ(std::memcmp(record->targetTag, "mx\0\0", 4), 0);
    EXPECT_STREQ(record->libraryName, "libkeslmx.so.6.1");
    EXPECT_STREQ(record->versionText, "6.1 build 137.56");
    EXPECT_STREQ(record->buildDate, "Mar 17 2010");
    EXPECT_EQ(offsetof(KeslVersionRecord, targetTag), 16u);
    EXPECT_EQ(offsetof(KeslVersionRecord, libraryName), 24u);
    EXPECT_EQ(sizeof(KeslVersionRecord), 48u);
});

// The order of checks where neighbours differ.
const Special order("Checks", "order at neighbours", [](const Level& level) {
    struct Row {
        const char* function;
        std::vector<std::pair<const char*, int>> arguments;
        int status;
    };
    const Row rows[] = {
        {"keslAdd_mam_32f", {{"width", 0}, {"src1Stride1", 3}}, BadStride},
        {"keslAdd_mam_32f_L", {{"width", 0}, {"src1Stride1", 3}}, BadSize},
        {"keslAdd_mat_32f", {{"width", 0}, {"src1Stride1", 3}}, BadSize},
        {"keslAdd_vav_32f", {{"count", 0}, {"src1Stride0", 6}}, BadStride},
        {"keslAdd_vava_32f", {{"count", 0}, {"src1Stride0", 6}}, BadCount},
        {"keslExtract_t_32f_P", {{"src", 0}, {"height", 0}}, BadSize},
        {"keslExtract_t_32f", {{"src", 0}, {"height", 0}}, NullPointer},
        {"keslExtract_v_32f_P", {{"src", 0}, {"len", 0}}, NullPointer},
        {"keslExtract_v_64f_P", {{"src", 0}, {"len", 0}}, BadSize},
        {"keslCopy_ma_32f_SS", {{"count", 1}, {"srcStride0", 3}}, PassesChecks},
        {"keslCopy_ma_32f_SS", {{"count", 2}, {"srcStride0", 3}}, BadStride},
        {"keslAdd_mama_32f", {{"count", 1}, {"src1Stride0", 3}}, BadStride},
        {"keslAdd_vca_64f_P", {{"srcRoiShift", -1}}, PassesChecks},
        {"keslAdd_vca_32f_P", {{"srcRoiShift", -1}}, BadRoiShift},
        {"keslAdd_mm_32f", {{"src2Stride2", 0}}, BadStride},
        {"keslAdd_mm_32f_P", {{"src1RoiShift", 0}, {"src2RoiShift", 0}, {"dstRoiShift", 0}}, PassesChecks},
        {"keslAdd_mm_32f", {{"src2Stride2", 8}}, PassesChecks},
        {"keslMul_mm_32f", {{"src2Stride2", 6}}, BadStride},
        {"keslMul_mm_64f", {{"src2Stride2", 4}}, BadStride},
        {"keslCrossProduct_vv_32f", {{"src1Stride2", 2}}, BadStride},
        {"keslCholeskyBackSubst_mva_32f_L", {{"src1Stride1", 3}, {"count", 0}}, BadStride},
        {"keslCholeskyBackSubst_mva_32f", {{"src1Stride1", 3}, {"count", 0}}, BadCount},
        {"keslQRDecomp_m_32f", {{"width", 2}, {"height", 1}}, SizeMismatch},
        {"keslQRDecomp_m_32f", {{"width", 0}, {"height", 1}}, BadSize},
        {"keslQRDecomp_m_32f", {{"width", 2}, {"height", 1}, {"srcStride1", 6}}, BadStride},
    };
    for (const Row& row : rows) {
        ASSERT_TRUE(find(level, row.function)) << row.function;
        std::vector<std::pair<const char*, int>> arguments = row.arguments;
        arguments.resize(3, arguments.back());
        EXPECT_EQ(statusOf(level, row.function, {arguments[0], arguments[1], arguments[2]}), row.status) << row.function;
    }
});

// Entries of a list are not looked at before they are used.
const Special entries("Lists", "may hold null", [](const Level& level) {
    const auto add = get<decltype(keslAdd_mama_32f_L)>(level, "keslAdd_mama_32f_L");
    float a = 1, b = 2, c = 0;
    const float* nothing[] = {&a, nullptr};
    const float* sources[] = {&b, &b};
    float* results[] = {&c, &c};
    setThreads({1});
    EXPECT_FALSE(survives([&] { add(nothing, 0, 4, 4, sources, 0, 4, 4, results, 0, 4, 4, 1, 1, 2); }));
    EXPECT_EQ(add(nothing, 0, 4, 4, sources, 0, 4, 4, results, 0, 4, 4, 1, 1, 1), keslStatusOk);
    EXPECT_EQ(c, 3);
});

// A slice of a P array begins at a shift of 32 bits: an array that goes on beyond 2 GB is not cut into slices.
const Special beyond("Threads", "shift of a slice beyond 31 bits", [](const Level& level) {
    const auto add = get<decltype(keslAdd_mam_32f_P)>(level, "keslAdd_mam_32f_P");
    constexpr int count = 5000, stride0 = 4;
    std::vector<float> a(count), result(count);
    for (int k = 0; k < count; ++k) a[size_t(k)] = float(k);
    float* destination = result.data();
    const float one = 1;
    const float* single = &one;
    for (int past : {0, stride0}) {
        const int shift = INT_MAX - 3 - stride0 * (count - 1) + past; // of the last object: INT_MAX - 3, and one more
        const float* source = reinterpret_cast<float*>(reinterpret_cast<char*>(a.data()) - shift);
        setThreads({2});
        std::fill(result.begin(), result.end(), 0.f);
        EXPECT_EQ(add(&source, shift, stride0, &single, 0, &destination, 0, stride0, 1, 1, count), keslStatusOk);
        EXPECT_EQ(watch.asked, past ? 1 : 2);
        for (int k = 0; k < count; ++k) ASSERT_EQ(result[size_t(k)], 1 + float(k)) << k;
    }
});

int questions(const Level& level, const char* function, std::initializer_list<std::pair<const char*, int>> arguments)
{
    setThreads({1});
    statusOf(level, function, arguments);
    return watch.asked;
}

const Special sides("Threads", "sides of a threshold", [](const Level& level) {
    EXPECT_EQ(
        questions(
            level, "keslAdd_mam_32f",
            {{"width", 1}, {"height", 1}, {"count", 18431}, {"src1Stride2", 4}, {"src2Stride2", 4}, {"dstStride2", 4}}),
        0); // 36863
    EXPECT_EQ(
        questions(level, "keslAdd_mam_32f",
                  {{"width", 64}, {"height", 64}, {"count", 4}, {"src1Stride2", 4}, {"src2Stride2", 4}, {"dstStride2", 4}}),
        1); // 36864
    EXPECT_EQ(
        questions(level, "keslAdd_mam_32f",
                  {{"width", 64}, {"height", 32}, {"count", 4}, {"src1Stride2", 4}, {"src2Stride2", 4}, {"dstStride2", 4}}),
        0); // 18432
    EXPECT_EQ(
        questions(level, "keslAdd_mam_32f",
                  {{"width", 64}, {"height", 32}, {"count", 4}, {"src1Stride2", 4}, {"src2Stride2", 8}, {"dstStride2", 4}}),
        1);
    EXPECT_EQ(questions(level, "keslAdd_mam_32f", {{"width", 1 << 14}, {"height", 1 << 14}, {"count", INT_MAX}}), 0);
});
} // namespace
