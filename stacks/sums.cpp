// Sums along vectors of any length: vecdot, norm, trace; and the cross product.
#include "stacks/names.h"
#include "stacks/scale.h"

namespace kesl::stacks {
namespace {

using One = Fixed<1>;

// Long sums have several partial ones, of every 64 bytes' terms, so that they can be formed inside packs of one object: term i
// belongs to partial sum i % partialSums. Each is formed in ascending order, and so is the sum of them.
template <class V> constexpr int partialSums = 64 / int(sizeof(ElementOf<V>));
template <class V> [[gnu::always_inline]] inline V total(const V* partial, std::ptrdiff_t n)
{
    if (n == 0) return V{};
    V sum = partial[0];
    if (n < partialSums<V>)
        for (int i = 1; i < n; ++i) sum += partial[i];
    else loop<Fixed<partialSums<V>>>(1, partialSums<V>, [&](int i) KESL_INLINE { sum += partial[i]; });
    return sum;
}

// Lengths that have code of their own.
auto withLength(std::ptrdiff_t n, auto f)
{
    return n == 7 ? f(Fixed<7>{}) : n == 8 ? f(Fixed<8>{}) : withOrder<std::ptrdiff_t>(n, f);
}

// term(i, x...) is the term of a sum from an element of each operand; i only tells one from the next. Elements of one object
// or of many may be in the lanes: it is cheaper to exchange lanes of terms than those of all elements. Here: the terms of
// contiguous vectors from element e on, some bytes of each, as packs of objects.
template <int bytes, class V> [[gnu::always_inline]] inline void loadTerms(std::ptrdiff_t e, V* t, auto& term, auto... at)
{
    constexpr int c = perPiece<bytes, V>;
    V y[c];
    loop<Fixed<c>>(0, c, [&](int r) KESL_INLINE {
        y[r] = term(r, joined<V, bytes>([&](int i) { return loadPack<Pack<ElementOf<V>, bytes>>(at(r + i * c) + e); })...);
    });
    transpose<bytes>(y);
    loop<Fixed<c>>(0, c, [&](int r) KESL_INLINE { t[r] = y[r]; });
}
// The same to element n, by pieces of which the last may overlap the one before.
template <int bytes, class V>
[[gnu::always_inline]] inline void loadTermsTo(std::ptrdiff_t n, std::ptrdiff_t e, V* t, auto& term, auto... at)
{
    constexpr int c = perPiece<bytes, V>;
    for (std::ptrdiff_t next = e; next < n; next += c) {
        const std::ptrdiff_t from = std::min(next, n - c);
        loadTerms<bytes>(from, t + (from - e), term, at...);
    }
}

// All n terms of short vectors. Packs as they lie in memory take fewer shuffles than pieces of objects where one of any two
// packs is a single instruction.
template <int n, class V> constexpr bool areByPacks = areShort<n> || (n <= 8 && sizeof(V) == 64);
template <int n, class V> [[gnu::always_inline]] inline void loadAllTerms(Objects k, V* t, auto& term, const auto&... a)
{
    if constexpr (areByPacks<n, V>)
        if ((a.areRecords() && ...)) {
            V packs[n];
            loop<Fixed<n>>(0, n,
                           [&](int i) KESL_INLINE { packs[i] = term(i, loadPack<V>(a.element(k, 0, i * lanes<V>))...); });
            return packsToObjects<n>(packs, t);
        }
    if constexpr (n >= perPiece<16, V>)
        if ((a.areRuns() && ...)) return loadTermsTo<16>(n, 0, t, term, a.addresses(k)...);
    const auto loaded = [&](const auto& operand) KESL_INLINE {
        Tile<V, One, Fixed<n>> x({}, {});
        operand.load(k, x);
        return x;
    };
    [&](const auto&... x)
        KESL_INLINE { loop<Fixed<n>>(0, n, [&](int i) KESL_INLINE { t[i] = term(i, x(0, i)...); }); }(loaded(a)...);
}

// Sums of long contiguous vectors: partial sums of whole blocks inside packs of one object, then what is left.
template <class V> [[gnu::always_inline]] inline V sumOfLines(std::ptrdiff_t n, auto& known, auto... at)
{
    auto term = known; // in registers
    constexpr int p = partialSums<V>, c = lanes<V>, some = std::min(32, int(sizeof(V)));
    const std::ptrdiff_t whole = n / p * p;
    V sums[p], before[2 * p]; // what overlaps lies before the rest
    V* const rest = before + p;
    for (int first = 0; first < p && whole > 0; first += c) {
        V y[c];
        loop<Fixed<c>>(0, c, [&](int r) KESL_INLINE { y[r] = term(r, loadPack<V>(at(r) + first)...); });
#pragma GCC unroll 1
        for (std::ptrdiff_t e = first + p; e < whole; e += p)
            loop<Fixed<c>>(0, c, [&](int r) KESL_INLINE { y[r] += term(r, loadPack<V>(at(r) + e)...); });
        transpose<sizeof(V)>(y);
        loop<Fixed<c>>(0, c, [&](int r) KESL_INLINE { sums[first + r] = y[r]; });
    }
    if (n >= perPiece<some, V>) loadTermsTo<some>(n, whole, rest, term, at...);
    else loadTermsTo<16>(n, whole, rest, term, at...);
    known = term;
    if (whole == 0) return total(rest, n);
    for (int i = 0; i < n - whole; ++i) sums[i] += rest[i];
    return total(sums, n);
}
// The addresses are made inside: those that a caller passes are stored, and read again before they have reached the cache.
template <class V> [[gnu::noinline]] V sumOfRuns(Objects k, std::ptrdiff_t n, auto& term, const auto&... a)
{
    return sumOfLines<V>(n, term, a.addresses(k)...);
}
// Those of any others.
template <class V> [[gnu::noinline]] V sumOfTiles(Objects k, std::ptrdiff_t n, auto& term, const auto&... a)
{
    V sums[partialSums<V>];
    for (std::ptrdiff_t from = 0; from < n; from += largestSize) {
        const int width = int(std::min<std::ptrdiff_t>(n - from, largestSize));
        const auto loaded = [&](const auto& operand) {
            Tile<V, One, int> x({}, width);
            operand.load(k, x, 0, from);
            return x;
        };
        [&](const auto&... x) {
            for (int i = 0; i < width; ++i) {
                V& sum = sums[i % partialSums<V>];
                sum = from + i >= partialSums<V> ? sum + term(i, x(0, i)...) : term(i, x(0, i)...);
            }
        }(loaded(a)...);
    }
    return total(sums, n);
}
template <class V, class N> [[gnu::always_inline]] inline V sumOf(Objects k, N n, auto& term, const auto&... a)
{
    if constexpr (isFixed<N>) {
        V t[most<N>];
        loadAllTerms<most<N>>(k, t, term, a...);
        V sum = t[0];
        loop<N>(1, n, [&](int i) KESL_INLINE { sum += t[i]; });
        return sum;
    } else return (a.areRuns() && ...) ? sumOfRuns<V>(k, n, term, a...) : sumOfTiles<V>(k, n, term, a...);
}

template <class V> [[gnu::always_inline]] inline void storeNumber(Objects k, V value, const auto& x)
{
    Tile<V, One, One> number({}, {});
    number(0, 0) = value;
    x.store(k, number);
}

struct Product {
    auto operator()(int, auto s, auto t) const { return s * t; }
};
struct Vecdot {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(One{}, n), Shape(One{}, n), Shape(One{}, One{})); }
    static double cost(double n) { return 100 * (n + 1); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withLength(n, f); }

    template <class V> static void pack(Objects k, auto n, const auto& a, const auto& b, const auto& x)
    {
        Product product;
        storeNumber(k, sumOf<V>(k, n, product, a, b), x);
    }
};

struct Trace {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(One{}, One{})); }
    static double cost(double n) { return 200 * (n + 1); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withOrder<std::ptrdiff_t>(n, f); }

    // To collect the elements in packs would take longer than to add them.
    template <class V, class N> static void pack(Objects k, N n, const auto& diagonal, const auto& x)
    {
        if (diagonal.areScattered() && n > 0)
            for (int l = 0; l < k.count; ++l) {
                ElementOf<V> sum = *diagonal.element(k, l, 0);
                for (std::ptrdiff_t i = 1; i < n; ++i) sum += *diagonal.element(k, l, i);
                *x.element(k, l, 0) = sum;
            }
        else storeNumber(k, sumOfPlanes<V>(k, n, diagonal), x);
    }

private:
    template <class V, class N> static V sumOfPlanes(Objects k, N n, const auto& diagonal)
    {
        V sum{};
        for (std::ptrdiff_t i = 0; i < n; ++i) {
            Tile<V, One, One> element({}, {});
            diagonal.load(k, element, 0, i);
            sum = i > 0 ? sum + element(0, 0) : element(0, 0);
        }
        return sum;
    }
};

struct Norm {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(One{}, n), Shape(One{}, One{})); }
    static double cost(double n) { return 150 * (n + 2); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withLength(n, f); }

    // The root of the sum of squares as they are, where none over- or underflows. Otherwise a power of two brings the largest
    // element to where none does that did not before, so that a vector has the same digits with any power of two.
    template <class V> static void pack(Objects k, auto n, const auto& a, const auto& x)
    {
        Squares<V> square;
        const V sum = sumOf<V>(k, n, square, a);
        const IndexOf<V> isRight = square.areNormal() & (sum < powerOfTwo<V>(index<V>(2 * top<V>)));
        storeNumber(k, any(~isRight) ? scaled<V>(k, n, a) : sqrt(sum), x);
    }

private:
    // Squares, and whether all are normal numbers or those of zeros.
    template <class V> struct Squares {
        static constexpr auto min = std::numeric_limits<ElementOf<V>>::min();
        V least[4] = {splat<V>(min), splat<V>(min), splat<V>(min), splat<V>(min)}; // not one: each element would wait for it
        [[gnu::always_inline]] V operator()(int i, V x)
        {
            const V square = x * x;
            least[i % 4] = smaller(x == 0 ? splat<V>(min) : square, least[i % 4]);
            return square;
        }
        IndexOf<V> areNormal() const
        {
            return smaller(smaller(least[0], least[1]), smaller(least[2], least[3])) >= splat<V>(min);
        }
    };
    template <class V> static constexpr int top = sizeof(ElementOf<V>) == 4 ? 40 : 450;

    template <class V> [[gnu::noinline]] static V scaled(Objects k, std::ptrdiff_t n, const auto& a)
    {
        V largest{};
        auto seen = [&](int, V element) {
            largest = larger(abs(element), largest);
            return element;
        };
        sumOfTiles<V>(k, n, seen, a);
        IndexOf<V> exponent;
        splitExponent(largest, exponent);
        const TwoPowers<V> down(top<V> - exponent), up(exponent - top<V>);
        auto square = [&](int, V element) { return down.times(element) * down.times(element); };
        return up.times(sqrt(sumOfTiles<V>(k, n, square, a)));
    }
};

struct Cross {
    static constexpr bool neverFails = true;
    static constexpr std::array<int, 0> limits{};
    static auto shapes() { return std::tuple(Shape(One{}, Fixed<3>{}), Shape(One{}, Fixed<3>{}), Shape(One{}, Fixed<3>{})); }
    static double cost() { return 1500; }
    static auto withOrders(auto f) { return f(); }

    template <class V> static void pack(Objects k, const auto& a, const auto& b, const auto& c)
    {
        Tile<V, One, Fixed<3>> s({}, {}), t({}, {}), x({}, {});
        a.load(k, s);
        b.load(k, t);
        each(x, [&](int, int i) KESL_INLINE {
            const int i1 = (i + 1) % 3, i2 = (i + 2) % 3;
            x(0, i) = s(0, i1) * t(0, i2) - s(0, i2) * t(0, i1);
        });
        c.store(k, x);
    }
};

#define VECDOT(T)                                                                                                           \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_VECTOR_OF(const T, b), KESL_NUMBER_OF(T, x),   \
        int *info
#define TRACE(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
#define NORM(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
#define CROSS(T)                                                                                                            \
    std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_VECTOR_OF(const T, b), KESL_VECTOR_OF(T, c), int *info
} // namespace

KESL_FUNCTIONS(vecdot, VECDOT, call<Vecdot>(sizes(n), count, info, KESL_VECTOR(a), KESL_VECTOR(b), KESL_NUMBER(x)))
KESL_FUNCTIONS(trace, TRACE, call<Trace>(sizes(n), count, info, diagonal(KESL_MATRIX(a)), KESL_NUMBER(x)))
KESL_FUNCTIONS(norm, NORM, call<Norm>(sizes(n), count, info, KESL_VECTOR(a), KESL_NUMBER(x)))
KESL_FUNCTIONS(cross, CROSS, call<Cross>(sizes(), count, info, KESL_VECTOR(a), KESL_VECTOR(b), KESL_VECTOR(c)))

} // namespace kesl::stacks
