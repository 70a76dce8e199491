// Copies, identities and transposes, by hand.
#include "../special.h"

#include <cstring>
#include <numeric>

namespace {
using Floats = std::vector<float>;
using Doubles = std::vector<double>;

Floats counted(int n)
{
    Floats result(static_cast<size_t>(n));
    std::iota(result.begin(), result.end(), 1.f);
    return result;
}

const Special stride0("Copy", "stride0 of one object is not looked at", [](const Level& level) {
    const Floats src = counted(6);
    Floats dst(6);
    const auto copy = get<decltype(keslCopy_ma_32f_SS)>(level, "keslCopy_ma_32f_SS");
    EXPECT_EQ(copy(src.data(), -3, 12, 4, dst.data(), 0, 12, 4, 3, 2, 1), 0);
    EXPECT_EQ(dst, src);
    EXPECT_EQ(copy(src.data(), -3, 12, 4, dst.data(), 0, 12, 4, 3, 2, 2), keslStatusBadStride);
});

const Special list("Copy", "from a list of elements", [](const Level& level) {
    const Floats src = counted(7);
    const float* elements[6];
    for (int e = 0; e < 6; ++e) elements[e] = &src[size_t(5 - e)];
    Floats dst(12);
    const auto copy = get<decltype(keslCopy_ma_32f_PS)>(level, "keslCopy_ma_32f_PS");
    EXPECT_EQ(copy(elements, 0, 4, dst.data(), 24, 12, 4, 3, 2, 2), 0);
    EXPECT_EQ(dst, (Floats{6, 5, 4, 3, 2, 1, 7, 6, 5, 4, 3, 2}));
});

const Special transposed("Extract", "transposed", [](const Level& level) {
    const Floats src = counted(6); // 3 rows of 2
    Floats dst(6);
    EXPECT_EQ(get<decltype(keslExtract_t_32f)>(level, "keslExtract_t_32f")(src.data(), 8, 4, dst.data(), 3, 2), 0);
    EXPECT_EQ(dst, (Floats{1, 3, 5, 2, 4, 6}));
});

const Special vectors("Extract", "vectors by pointers", [](const Level& level) {
    const Floats src = counted(8);
    const float* objects[] = {&src[4], &src[0]};
    Floats dst(6);
    const auto extract = get<decltype(keslExtract_va_32f_L)>(level, "keslExtract_va_32f_L");
    EXPECT_EQ(extract(objects, 4, 4, dst.data(), 3, 2), 0);
    EXPECT_EQ(dst, (Floats{6, 7, 8, 2, 3, 4}));
});

const Special identity("LoadIdentity", "not square", [](const Level& level) {
    Floats tall(6, 9);
    Doubles wide(6, 9);
    EXPECT_EQ(get<decltype(keslLoadIdentity_ma_32f)>(level, "keslLoadIdentity_ma_32f")(tall.data(), 0, 8, 4, 2, 3, 1), 0);
    EXPECT_EQ(tall, (Floats{1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(get<decltype(keslLoadIdentity_ma_64f)>(level, "keslLoadIdentity_ma_64f")(wide.data(), 0, 24, 8, 3, 2, 1), 0);
    EXPECT_EQ(wide, (Doubles{1, 0, 0, 0, 1, 0}));
});

// Its bits, in every layout and for every order, through every path that the number of objects can choose.
const Special nan("Transpose", "a signalling NaN", [](const Level& level) {
    constexpr unsigned signalling = 0x7f800123;
    const auto transpose = get<decltype(keslTranspose_ma_32f)>(level, "keslTranspose_ma_32f");
    const auto extract = get<decltype(keslExtract_ta_32f)>(level, "keslExtract_ta_32f");
    const auto copy = get<decltype(keslCopy_ma_32f_SS)>(level, "keslCopy_ma_32f_SS");
    for (int n : {1, 3, 4, 5, 6, 7, 20})
        for (int count : {1, 5, 37}) {
            std::vector<unsigned> src(size_t(n * n * count), signalling), dst;
            const float* from = reinterpret_cast<const float*>(src.data());
            const auto fresh = [&] { return dst.assign(src.size(), 0), reinterpret_cast<float*>(dst.data()); };
            EXPECT_EQ(transpose(from, 4 * n * n, 4 * n, 4, n, n, fresh(), 4 * n * n, 4 * n, 4, count), 0);
            EXPECT_EQ(dst, src);
            EXPECT_EQ(transpose(from, 4, 4 * n * count, 4 * count, n, n, fresh(), 4, 4 * n * count, 4 * count, count), 0);
            EXPECT_EQ(dst, src);
            EXPECT_EQ(extract(from, 4 * n * n, 4 * n, 4, fresh(), n, n, count), 0);
            EXPECT_EQ(dst, src);
            EXPECT_EQ(copy(from, 4, 4 * n * count, 4 * count, fresh(), 4 * n * n, 4 * n, 4, n, n, count), 0);
            EXPECT_EQ(dst, src);
            EXPECT_EQ(copy(from, 4 * n * n, 4 * n, 4, fresh(), 4, 4 * n * count, 4 * count, n, n, count), 0);
            EXPECT_EQ(dst, src);
        }
});

const Special entries("Transpose", "lists", [](const Level& level) {
    double src[2][6], dst[2][6] = {}; // a pointer for each element of the first object
    const double* from[6];
    double* to[6];
    for (int e = 0; e < 6; ++e) from[e] = &src[0][e], to[e] = &dst[0][e], src[0][e] = e, src[1][e] = 10 + e;
    const auto transpose = get<decltype(keslTranspose_ma_64f_P)>(level, "keslTranspose_ma_64f_P");
    EXPECT_EQ(transpose(from, 0, 48, 2, 3, to, 0, 48, 2), 0); // 3 rows of 2
    for (int k = 0; k < 2; ++k)
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 2; ++j) EXPECT_EQ(dst[k][j * 3 + i], src[k][i * 2 + j]);
});

// More than the kit's sizes: blocks, their ends, and rows apart.
const Special large("Transpose", "of large matrices", [](const Level& level) {
    const auto transpose = get<decltype(keslTranspose_m_64f)>(level, "keslTranspose_m_64f");
    const auto transposeF = get<decltype(keslTranspose_m_32f)>(level, "keslTranspose_m_32f");
    for (int height : {1, 2, 17, 64, 65, 131})
        for (int width : {1, 3, 16, 33, 130}) {
            Doubles src(size_t(height * (width + 1))), dst(size_t(width * height));
            std::iota(src.begin(), src.end(), 1.);
            EXPECT_EQ(transpose(src.data(), 8 * (width + 1), 8, width, height, dst.data(), 8 * height, 8), 0);
            Floats srcF(src.begin(), src.end()), dstF(dst.size());
            EXPECT_EQ(transposeF(srcF.data(), 4 * (width + 1), 4, width, height, dstF.data(), 4 * height, 4), 0);
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < width; ++j) {
                    EXPECT_EQ(dst[size_t(j * height + i)], src[size_t(i * (width + 1) + j)]);
                    EXPECT_EQ(dstF[size_t(j * height + i)], srcF[size_t(i * (width + 1) + j)]);
                }
        }
});
} // namespace
