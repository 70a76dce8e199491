// Copies, transposes and unit matrices.
#include "kit.h"

using namespace bench;

namespace {

struct Square {
    static constexpr double tolerance = 0;
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N, N};
};

struct Copy : Square {
    static constexpr const char* name = "Copy_ma";
    static constexpr auto functions = std::make_tuple(keslCopy_ma_32f_SS, keslCopy_ma_64f_SS, keslCopy_ma_32f_LL,
                                                      keslCopy_ma_64f_LL, keslCopy_ma_32f_PP, keslCopy_ma_64f_PP);
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto d) {
                 const auto put = [&](int k, int i, int j) { d(k, i, j) = a(k, i, j); };
                 elements(range, d, put);
             }},
        Peer{"memcpy", // the longest runs that there are
             [](auto, Range range, auto a, auto d) {
                 const auto copied = [](auto* to, const auto* from, int n) {
                     std::memcpy(to, from, std::size_t(n) * sizeof *to);
                 };
                 const int objects = range.end - range.begin;
                 if constexpr (d.planes) {
                     for (int i = 0; i < d.rows; ++i)
                         for (int j = 0; j < d.cols; ++j) copied(&d(range.begin, i, j), &a(range.begin, i, j), objects);
                 } else if constexpr (d.contiguous) {
                     copied(d.object(range.begin), a.object(range.begin), objects * d.rows * d.cols);
                 } else {
                     for (int k = range.begin; k < range.end; ++k)
                         for (int i = 0; i < d.rows; ++i) copied(&d(k, i, 0), &a(k, i, 0), d.cols);
                 }
             }},
    };
};

struct Transposing : Square {
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto d) {
                 const auto put = [&](int k, int i, int j) { d(k, i, j) = a(k, j, i); };
                 elements(range, d, put);
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, InOnePiece auto d) {
                 for (int k = range.begin; k < range.end; ++k) d.assign(k, a.eigen(k).transpose());
             }},
    };
};

// The sizes of a transposition stand behind its source.
template <class F> constexpr auto sizesBetween(F f)
{
    return [=](auto src, int x, int y, auto... rest) {
        if constexpr (sizeof...(rest) == 6)
            [&](auto dst, int dstX, int dstY, int width, int height, int count) {
                f(src, x, y, width, height, dst, dstX, dstY, count);
            }(rest...);
        else
            [&](int z, auto dst, int dstX, int dstY, int dstZ, int width, int height, int count) {
                f(src, x, y, z, width, height, dst, dstX, dstY, dstZ, count);
            }(rest...);
    };
}
constexpr auto sizesBetweenAlone(auto f)
{
    return [=](auto src, int src1, int src2, auto dst, int dst1, int dst2, int width, int height) {
        f(src, src1, src2, width, height, dst, dst1, dst2);
    };
}
struct Transpose : Transposing {
    static constexpr const char* name = "Transpose_ma";
    static constexpr auto functions = std::make_tuple(
        sizesBetween(keslTranspose_ma_32f), sizesBetween(keslTranspose_ma_64f), sizesBetween(keslTranspose_ma_32f_L),
        sizesBetween(keslTranspose_ma_64f_L), sizesBetween(keslTranspose_ma_32f_P), sizesBetween(keslTranspose_ma_64f_P));
    static constexpr auto alone =
        std::make_tuple(sizesBetweenAlone(keslTranspose_m_32f), sizesBetweenAlone(keslTranspose_m_64f));
};

struct Extract : Transposing {
    static constexpr const char* name = "Extract_ta";
    static constexpr auto functions = KESL_FUNCTIONS(keslExtract_ta);
    template <int N> using Operands = std::tuple<ma<N, N>, out<tight<ma<N, N>>>>;
};

struct LoadIdentity {
    static constexpr const char* name = "LoadIdentity_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslLoadIdentity_ma);
    static constexpr double tolerance = 0;
    template <int N> using Operands = std::tuple<out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N, N};
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto d) { elements(range, d, [&](int k, int i, int j) { d(k, i, j) = i == j; }); }},
        Peer{"eigen",
             [](auto, Range range, InOnePiece auto d) {
                 for (int k = range.begin; k < range.end; ++k) d.eigen(k).setIdentity();
             }},
    };
};

[[maybe_unused]] const bool registered = rows<Copy, Plan::full, 3, 4, 5, 6>() && rows<Transpose, Plan::full, 3, 4, 5, 6>() &&
                                         rows<Extract, Plan::cache, 3, 4, 5, 6>() &&
                                         rows<LoadIdentity, Plan::cache, 3, 4, 5, 6>();

} // namespace
