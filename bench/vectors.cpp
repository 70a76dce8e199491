// Element-wise work on vectors and by constants.
#include "kit.h"

using namespace bench;

namespace {

// ---- The library's functions: a constant by value stands behind all other arguments, ...
#define WITH(function, ...) [](auto... a) { return function(a..., __VA_ARGS__); }
#define WITH_VALUE(name)                                                                                                    \
    std::make_tuple(WITH(name##_32f, 0.75f), WITH(name##_64f, 0.75), WITH(name##_32f_L, 0.75f), WITH(name##_64f_L, 0.75),   \
                    WITH(name##_32f_P, 0.75f), WITH(name##_64f_P, 0.75))
#define WITH_VALUES(name)                                                                                                   \
    std::make_tuple(WITH(name##_32f, 0.75f, 0.75f), WITH(name##_64f, 0.75, 0.75), WITH(name##_32f_L, 0.75f, 0.75f),         \
                    WITH(name##_64f_L, 0.75, 0.75), WITH(name##_32f_P, 0.75f, 0.75f), WITH(name##_64f_P, 0.75, 0.75))
// ... and an array of constants is here one of vectors of one element, with an argument too many: their stride2, or in P
// a list of one pointer and its shift instead of that pointer.
constexpr auto fewer(auto function)
{
    return [=](auto src, int srcX, int srcY, auto val, int valX, int valY, auto... rest) {
        if constexpr (std::is_invocable_v<decltype(function), decltype(src), int, int, decltype(*val), int,
                                          decltype(rest)...>)
            return function(src, srcX, srcY, val[0] + valX / int(sizeof **val), valY, rest...);
        else return function(src, srcX, srcY, val, valX, rest...);
    };
}
constexpr auto fewerOfOne(auto function) // the vector is a single one
{
    return [=](auto src, int srcX, auto val, int valX, int valY, auto... rest) {
        if constexpr (std::is_invocable_v<decltype(function), decltype(src), int, decltype(*val), int, decltype(rest)...>)
            return function(src, srcX, val[0] + valX / int(sizeof **val), valY, rest...);
        else return function(src, srcX, val, valX, rest...);
    };
}
#define WITH_CONSTANTS(fewer, name)                                                                                         \
    std::make_tuple(fewer(name##_32f), fewer(name##_64f), fewer(name##_32f_L), fewer(name##_64f_L), fewer(name##_32f_P),    \
                    fewer(name##_64f_P))

// ---- The alternatives to f(x, y, c): elements of two operands, or Eigen's arrays of them, and a constant. An operand of
// one element is a constant of its object; one with `single` is the same for all.
enum class With { array, single };

template <class D> using ElementOf = std::decay_t<decltype(std::declval<D>()(0, 0, 0))>;
template <With with> int indexOf(int k) { return with == With::single ? 0 : k; }

// Runs of elements exist where nothing but arrays of whole objects without gaps take part.
template <class V, With x, With y>
concept Flat = x == With::array && y == With::array && V::contiguous && (V::cols > 1);

template <class F, With x = With::array, With y = With::array> struct Alternatives {
    static auto element(const auto& a, int k, int i, int j) { return a(k, i, a.cols == 1 ? 0 : j); }
    static auto array(const auto& a, int k)
    {
        if constexpr (a.cols == 1) return a(k, 0, 0);
        else return a.eigen(k).array();
    }
    static void plain(Range range, auto a, auto d) { plain(range, a, a, d); }
    static void plain(Range range, auto a, auto b, auto d)
    {
        const ElementOf<decltype(d)> c(0.75);
        elements(range, d, [&](int k, int i, int j) {
            d(k, i, j) = F{}(element(a, indexOf<x>(k), i, j), element(b, indexOf<y>(k), i, j), c);
        });
    }
    static void flat(Range range, auto a, auto d) { flat(range, a, a, d); }
    static void flat(Range range, auto a, auto b, auto d)
    {
        const ElementOf<decltype(d)> c(0.75);
        const auto *p = a.object(range.begin), *q = b.object(range.begin);
        auto* z = d.object(range.begin);
#pragma GCC ivdep
        for (std::int64_t i = 0; i < std::int64_t{range.end - range.begin} * d.rows * d.cols; ++i) z[i] = F{}(p[i], q[i], c);
    }
    static void eigen(Range range, auto a, auto d) { eigen(range, a, a, d); }
    static void eigen(Range range, auto a, auto b, auto d)
    {
        const ElementOf<decltype(d)> c(0.75);
        for (int k = range.begin; k < range.end; ++k)
            d.assign(k, F{}(array(a, indexOf<x>(k)), array(b, indexOf<y>(k)), c).matrix());
    }
    static constexpr std::tuple peers{
        Peer{"plain", [](auto, Range range, auto... views) { plain(range, views...); }},
        Peer{"flat", [](auto, Range range, Flat<x, y> auto... views) { flat(range, views...); }},
        Peer{"eigen", [](auto, Range range, InOnePiece auto... views) { eigen(range, views...); }},
    };
};

// clang-format off
struct Sum         { auto operator()(auto x, auto y, auto)   const { return x + y; } };
struct Shifted     { auto operator()(auto x, auto, auto c)   const { return x + c; } };
struct Product     { auto operator()(auto x, auto y, auto)   const { return x * y; } };
struct Scaled      { auto operator()(auto x, auto, auto c)   const { return x * c; } };
struct WithProduct { auto operator()(auto x, auto y, auto c) const { return x * c + y; } };
struct Combination { auto operator()(auto x, auto y, auto c) const { return x * c + y * c; } };
// clang-format on

struct Common {
    static constexpr double tolerance = 4;
    static constexpr bool positive = true;
    template <int N> static constexpr std::tuple sizes{N};
};
struct Pairs : Common {
    template <int N> using Operands = std::tuple<va<N>, va<N>, out<va<N>>>;
};
struct WithOne : Common {
    template <int N> using Operands = std::tuple<va<N>, v<N>, out<va<N>>>;
};
struct Single : Common {
    template <int N> using Operands = std::tuple<va<N>, out<va<N>>>;
};
struct WithEach : Common {
    template <int N> using Operands = std::tuple<va<N>, va<1>, out<va<N>>>;
};
struct Expanded : Common {
    template <int N> using Operands = std::tuple<v<N>, va<1>, out<va<N>>>;
};

struct AddVava : Pairs, Alternatives<Sum> {
    static constexpr const char* name = "Add_vava";
    static constexpr auto functions = KESL_FUNCTIONS(keslAdd_vava);
    static constexpr auto alone = KESL_ALONE(keslAdd_vv);
};
struct AddVav : WithOne, Alternatives<Sum, With::array, With::single> {
    static constexpr const char* name = "Add_vav";
    static constexpr auto functions = KESL_FUNCTIONS(keslAdd_vav);
};
struct AddVac : Single, Alternatives<Shifted> {
    static constexpr const char* name = "Add_vac";
    static constexpr auto functions = WITH_VALUE(keslAdd_vac);
};
struct AddVaca : WithEach, Alternatives<Sum> {
    static constexpr const char* name = "Add_vaca";
    static constexpr auto functions = WITH_CONSTANTS(fewer, keslAdd_vaca);
};
struct AddVca : Expanded, Alternatives<Sum, With::single> {
    static constexpr const char* name = "Add_vca";
    static constexpr auto functions = WITH_CONSTANTS(fewerOfOne, keslAdd_vca);
};
struct MulVaca : WithEach, Alternatives<Product> {
    static constexpr const char* name = "Mul_vaca";
    static constexpr auto functions = WITH_CONSTANTS(fewer, keslMul_vaca);
};
struct MulMac : Common, Alternatives<Scaled> {
    static constexpr const char* name = "Mul_mac";
    static constexpr auto functions = WITH_VALUE(keslMul_mac);
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N, N};
};
struct SaxpyVava : Pairs, Alternatives<WithProduct> {
    static constexpr const char* name = "Saxpy_vava";
    static constexpr auto functions = WITH_VALUE(keslSaxpy_vava);
    static constexpr auto alone = std::make_tuple(WITH(keslSaxpy_vv_32f, 0.75f), WITH(keslSaxpy_vv_64f, 0.75));
};
struct SaxpyVav : WithOne, Alternatives<WithProduct, With::array, With::single> {
    static constexpr const char* name = "Saxpy_vav";
    static constexpr auto functions = WITH_VALUE(keslSaxpy_vav);
};
struct LCombVava : Pairs, Alternatives<Combination> {
    static constexpr const char* name = "LComb_vava";
    static constexpr auto functions = WITH_VALUES(keslLComb_vava);
};

[[maybe_unused]] const bool registered =
    rows<AddVava, Plan::full, 3, 4, 5, 6>() && rows<AddVaca, Plan::full, 3, 4, 5, 6>() &&
    rows<AddVav, Plan::cache, 3, 4, 5, 6>() && rows<AddVac, Plan::cache, 3, 4, 5, 6>() &&
    rows<AddVca, Plan::cache, 3, 4, 5, 6>() && rows<MulVaca, Plan::cache, 3, 4, 5, 6>() &&
    rows<MulMac, Plan::full, 3, 4, 5, 6>() && rows<SaxpyVava, Plan::full, 3, 4, 5, 6>() &&
    rows<SaxpyVav, Plan::cache, 3, 4, 5, 6>() && rows<LCombVava, Plan::cache, 3, 4, 5, 6>();

} // namespace
