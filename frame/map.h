// Element by element: dst(k, i, j) = f(src1(k, i, j), ...) over all objects and elements. A single source serves every
// object, a constant every element. f is a template over a value: an element or a pack of them. A vector is a matrix of one
// row, and says so by having One as its height.
//
// Each element is read before the same element is written, and nothing else is promised of overlap.
#pragma once
#include "frame/objects.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace kesl {

// ---- Runs: dst[e] = f(src[e], ...) for n consecutive elements.

template <class V, class T> V valueAt(const T* src, std::int64_t e) { return loadPack<V>(src + e); }
template <class V, class T> V valueAt(Same<T> src, std::int64_t) { return splat<V>(src.x); }

template <class T, int bytes> using PackOrElement = std::conditional_t<bytes == sizeof(T), T, Pack<T, bytes>>;

template <class V, class T> [[gnu::always_inline]] inline void mapStep(std::int64_t& e, auto f, T* dst, auto... src)
{
    storePack<V>(dst + e, f(valueAt<V>(src, e)...));
    e += lanes<V>;
}
// So many bytes of results, with at least as many of sources, leave the caches of usual processors: they are written past
// them, which saves reading what is overwritten.
constexpr std::int64_t leavesCaches = 32 << 20;
// Steps of `bytes` and their doubles, to where dst is aligned for the widest pack.
template <int bytes, class T> [[gnu::always_inline]] inline void mapHead(std::int64_t& e, auto f, T* dst, auto... src)
{
    if (reinterpret_cast<std::uintptr_t>(dst + e) & bytes) mapStep<PackOrElement<T, bytes>>(e, f, dst, src...);
    if constexpr (2 * bytes < widest) mapHead<2 * bytes>(e, f, dst, src...);
}
// Steps of `bytes` and their halves, each of which is needed once at the most.
template <int bytes, class T>
[[gnu::always_inline]] inline void mapTail(std::int64_t& e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = PackOrElement<T, bytes>;
    if (n - e >= lanes<V>) mapStep<V>(e, f, dst, src...);
    if constexpr (bytes > sizeof(T)) mapTail<bytes / 2>(e, n, f, dst, src...);
}
// From element e to n. `past` the caches: dst is aligned then, and the caller waits for it.
template <bool past = false, class T>
[[gnu::always_inline]] inline void mapBody(std::int64_t e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = Pack<T>;
    if constexpr (past)
#pragma GCC unroll 4
        for (; n - e >= lanes<V>; e += lanes<V>) storePastCaches(dst + e, f(valueAt<V>(src, e)...));
    else
#pragma GCC unroll 4
        while (n - e >= lanes<V>) mapStep<V>(e, f, dst, src...);
    mapTail<widest / 2>(e, n, f, dst, src...);
}
template <class T> constexpr int longRun = 8 * lanes<Pack<T>>; // then stores should not cross cache lines
template <class T> [[gnu::always_inline]] inline void mapRun(std::int64_t n, auto f, T* dst, auto... src)
{
    std::int64_t e = 0;
    if (n >= longRun<T>) mapHead<sizeof(T)>(e, f, dst, src...);
    mapBody(e, n, f, dst, src...);
}

// body(Fixed<past>, e) with the place e behind the head.
template <class T> [[gnu::always_inline]] inline void mapFromHead(std::int64_t n, auto f, T* dst, auto body, auto... src)
{
    std::int64_t e = 0;
    if (n >= longRun<T>) mapHead<sizeof(T)>(e, f, dst, src...);
    if (n > leavesCaches / std::int64_t(sizeof(T)) && reinterpret_cast<std::uintptr_t>(dst + e) % widest == 0) {
        body(Fixed<true>{}, e);
        drained();
    } else body(Fixed<false>{}, e);
}
// A run of whole objects.
template <class T> void mapObjects(std::int64_t n, auto f, T* dst, auto... src)
{
    mapFromHead(
        n, f, dst, [&](auto past, std::int64_t e) KESL_INLINE { mapBody<past>(e, n, f, dst, src...); }, src...);
}

// Data as they are: nothing that could alter the bits of a NaN.
struct Move {
    auto operator()(auto x) const { return x; }
};

// ---- One object, by any views. h and w are its sizes where these are fixed, and 0 where not.
template <int h, int w> [[gnu::always_inline]] inline void mapObject(int height, int width, auto f, auto dst, auto... src)
{
    if constexpr (h > 0) height = h;
    if constexpr (w > 0) width = w;
    if constexpr (requires { mapRun(width, f, dst.row(0), src.row(0)...); })
#pragma GCC unroll 6
        for (int i = 0; i < height; ++i) mapRun(width, f, dst.row(i), src.row(i)...);
    else
#pragma GCC unroll 1 // a row written out is enough
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) dst(i, j) = f(src(i, j)...);
}

// ---- A record of order n that is read transposed. Where a few packs hold it, its elements are exchanged in registers, but
// for doubles: too few of them are in a pack for that to be faster than pairs.
template <int n, class T> constexpr int packOfRecord() // the lanes of the packs, or 0
{
    int most = widest / int(sizeof(T));
    while (most > n * n) most /= 2;
    const int packs = (n * n + most - 1) / most;
    return packs <= (widest < 64 ? 2 : 5) && sizeof(T) == 4 ? most : 0;
}
template <int n, class V> struct RecordInPacks { // the last pack ends with the record
    static constexpr int packs = (n * n + lanes<V> - 1) / lanes<V>;
    static constexpr int at(int pack) { return std::min(pack * lanes<V>, n * n - lanes<V>); }
    V x[packs];

    template <int j, int s> struct Transposed {
        static constexpr int of(int l)
        {
            const int i = at(j) + l, e = i % n * n + i / n, from = e / lanes<V>, lane = e - at(from);
            return from == s ? lanes<V> + lane : s == 1 && from == 0 ? lane : l;
        }
    };
    template <class T> [[gnu::always_inline]] static RecordInPacks transposed(const T* src)
    {
        RecordInPacks stored, r;
#pragma GCC unroll 8
        for (int i = 0; i < packs; ++i) stored.x[i] = loadPack<V>(src + at(i));
        if constexpr (packs == 1) r.x[0] = shuffled<Transposed<0, 1>, lanes<V>>(stored.x[0], stored.x[0]);
        else inSteps<Transposed, packs>(stored.x, r.x);
        return r;
    }
    template <class T> [[gnu::always_inline]] static RecordInPacks transposed(Same<T> src)
    {
        RecordInPacks r;
#pragma GCC unroll 8
        for (V& x : r.x) x = splat<V>(src.x);
        return r;
    }
};

// Element `which` of the pairs at e and a row below.
template <int which> struct OfPairs {
    static constexpr int of(int l) { return which + 2 * l; }
};
template <int which, int n, class V, class T> [[gnu::always_inline]] inline V pairAt(const T* src, int e)
{
    return shuffled<OfPairs<which>, 2>(loadPack<V>(src + e), loadPack<V>(src + e + n));
}
template <int which, int n, class V, class T> [[gnu::always_inline]] inline V pairAt(Same<T> src, int)
{
    return splat<V>(src.x);
}

template <int n, class T> [[gnu::always_inline]] inline void mapTransposed(auto f, T* dst, auto... src)
{
    if constexpr (constexpr int lanes = packOfRecord<n, T>(); lanes > 0) {
        using R = RecordInPacks<n, Pack<T, lanes * sizeof(T)>>;
        [&](const auto&... r) KESL_INLINE {
#pragma GCC unroll 8
            for (int i = 0; i < R::packs; ++i) storePack(dst + R::at(i), f(r.x[i]...));
        }(R::transposed(src)...);
    } else if constexpr (n < 5) { // all is read before anything is written, so that the compiler may choose the order
        T x[n * n];
#pragma GCC unroll 16
        for (int e = 0; e < n * n; ++e) x[e] = f(valueAt<T>(src, e % n * n + e / n)...);
#pragma GCC unroll 16
        for (int e = 0; e < n * n; ++e) dst[e] = x[e];
    } else { // likewise, two by two
        using Pair = Pack<T, 2 * sizeof(T)>;
        constexpr int even = n / 2 * 2;
        Pair x[n][n / 2];
        T last[2][n];
#pragma GCC unroll 6
        for (int i = 0; i < even; i += 2)
#pragma GCC unroll 3
            for (int j = 0; j < n / 2; ++j) {
                x[i][j] = f(pairAt<0, n, Pair>(src, 2 * j * n + i)...);
                x[i + 1][j] = f(pairAt<1, n, Pair>(src, 2 * j * n + i)...);
            }
        if constexpr (n > even)
#pragma GCC unroll 6
            for (int i = 0; i < n; ++i) {
                last[0][i] = f(valueAt<T>(src, i * n + even)...);
                last[1][i] = f(valueAt<T>(src, even * n + i)...);
            }
#pragma GCC unroll 6
        for (int i = 0; i < even; ++i)
#pragma GCC unroll 3
            for (int j = 0; j < n / 2; ++j) storePack(dst + i * n + 2 * j, x[i][j]);
        if constexpr (n > even)
#pragma GCC unroll 6
            for (int i = 0; i < n; ++i) dst[even * n + i] = last[0][i], dst[i * n + even] = last[1][i];
    }
}

// A large object that is transposed: by blocks, in registers. The lanes of V are rows of the source.
template <class V, class T> int moveTransposed(int j, int first, int last, int width, Rows<T> dst, Rows<const T> src)
{
    constexpr int c = lanes<V>;
    for (; j + c <= width; j += c) {
        int i = first;
        for (; i + c <= last; i += c) {
            V x[c];
            loadPieces<sizeof(V)>([&](int l) { return src.row(j + l) + i; }, x);
#pragma GCC unroll 16
            for (int r = 0; r < c; ++r) storePack(dst.row(i + r) + j, x[r]);
        }
        for (; i < last; ++i) storePack(dst.row(i) + j, gathered<V>([&](int l) { return src.row(j + l) + i; }));
    }
    return j;
}
template <int h, int, class T> requires(h == 0)
inline void mapObject(int height, int width, Move, Rows<T> dst, Transposed<Rows<const T>> src)
{
    constexpr int block = 64; // rows of dst, so that their pages stay known
    for (int i = 0; i < height; i += std::min(block, height - i)) {
        const int last = i + std::min(block, height - i);
        int j = moveTransposed<Pack<T>>(0, i, last, width, dst, src.stored);
        j = moveTransposed<Pack<T, 16>>(j, i, last, width, dst, src.stored);
        for (; j < width; ++j)
            for (int r = i; r < last; ++r) dst(r, j) = src(r, j);
    }
}

// ---- What is known of an operand.
template <class O> constexpr bool isTransposed = O::kind == Kind::transposed;
template <class O> constexpr bool isConstant = O::kind == Kind::constants;
template <class O> constexpr bool isByValue = isConstant<O> && !O::isArray;
template <class O> constexpr bool isArrayOfObjects = O::isArray && !isConstant<O>;

// An object is a record if there is no gap between its rows, as it is stored.
template <class O> bool isRecord(const O& o, int height, int width)
{
    if constexpr (isConstant<O> || O::kind == Kind::vector) return true;
    else {
        const int rows = isTransposed<O> ? width : height, columns = isTransposed<O> ? height : width; // as stored
        return rows == 1 || o.stride1 == std::int64_t(columns) * O::elementSize;
    }
}
// It is one run of elements in the order in which it is read if it is not transposed besides.
template <class O> bool isOneRun(const O& o, int height, int width)
{
    return !isTransposed<O> && isRecord(o, height, width);
}
// An array is one run if there is no gap between its objects either. Single operands and constants suit any array.
template <class O> bool isPacked(const O& o, int height, int width)
{
    if constexpr (!isArrayOfObjects<O>) return true;
    else return isOneRun(o, height, width) && o.stride0 == std::int64_t(height) * width * O::elementSize;
}
// In a structure of arrays, the objects' values of an element lie side by side.
template <class O> bool isSideBySide(const O& o)
{
    if constexpr (!O::isArray) return true;
    else return !inL(O::form) && o.stride0 == int(sizeof(typename O::Element));
}

// ---- Arrays without any gap, and single operands beside them.

// A source of the run: an array itself, or a single operand that is repeated to the length of a piece and of an object more.
// A piece is a multiple of 16 objects, so that all pieces are aligned alike.
constexpr int mostRepeated = 6 * 6, fewObjects = 4;
constexpr int objectsPerPiece(int each) { return mostRepeated / each * 16; }

template <class O> struct Periodic {
    const typename O::Element* p;
    Periodic(const O& o, int, int, int) : p(o.address(0)) {}
    const auto* from(std::int64_t element) const { return p + element; }
    const auto* object(int k, int n) const { return p + std::int64_t(k) * n; }
};
template <class O> requires(!O::isArray && !isConstant<O>) struct Periodic<O> {
    using T = typename O::Element;
    int each;
    T e[mostRepeated * (16 + 1)];
    Periodic(const O& o, int height, int width, int count) : each(height * width)
    {
        const auto single = o.object(0, height, width);
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) e[i * width + j] = single(i, j);
        const int all = each * (std::min(count, objectsPerPiece(each)) + 1);
        for (int done = each; done < all; done *= 2)
            std::memcpy(e + done, e, std::size_t(std::min(done, all - done)) * sizeof *e);
    }
    const T* from(std::int64_t element) const { return e + element % each; }
    const T* object(int, int) const { return e; }
};
template <class O> requires isByValue<O> struct Periodic<O> {
    Same<typename O::Element> same;
    Periodic(const O& o, int, int, int) : same{o.x} {}
    auto from(std::int64_t) const { return same; }
};
template <class O> requires(O::isArray && isConstant<O>) struct Periodic<O> {
    O o;
    Periodic(const O& constants, int, int, int) : o(constants) {}
    template <class V> V each(int k) const
    {
        if constexpr (lanes<V> == 1) return *o.address(k);
        else if (isSideBySide(o)) return loadPack<V>(o.address(k));
        else return gathered<V>(lanesOf(o, k));
    }
};

template <class T> void mapPieces(int each, int count, auto f, T* dst, const auto&... src)
{
    const std::int64_t n = std::int64_t(each) * count, piece = each * objectsPerPiece(each);
    mapFromHead(
        n, f, dst,
        [&](auto past, std::int64_t e) KESL_INLINE {
            for (; e < n; e += piece) mapBody<past>(0, std::min(piece, n - e), f, dst + e, src.from(e)...);
        },
        src.from(0)...);
}

// Vectors of a fixed length n with a constant for each: as many as a pack has lanes are n packs, over which the constants
// are spread.
template <int n, int e, int lanes> struct OwnerOf {
    static constexpr int of(int l) { return (e * lanes + l) / n; }
};

// A source of the objects k, k + 1, ... in the lanes of V, as a function that gives pack e of their n.
template <int n, class V> [[gnu::always_inline]] inline auto packsOf(const auto& src, int k)
{
    if constexpr (requires { src.template each<V>(k); })
        return [x = src.template each<V>(k)](auto e) {
            if constexpr (lanes<V> == 1) return x;
            else return shuffled<OwnerOf<n, e, lanes<V>>, lanes<V>>(x, x);
        };
    else return [run = src.object(k, n)](auto e) { return valueAt<V>(run, e * lanes<V>); };
}
template <int n, class T> [[gnu::always_inline]] inline void mapVectors(int count, auto f, T* dst, const auto&... src)
{
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        T* const to = dst + std::int64_t(k.first) * n;
        const auto step = [&](auto... packs) KESL_INLINE {
            const auto store = [&](auto e) KESL_INLINE { storePack<V>(to + e * lanes<V>, f(packs(e)...)); };
            [&]<int... e>(std::integer_sequence<int, e...>)
                KESL_INLINE { (store(Fixed<e>{}), ...); }(std::make_integer_sequence<int, n>{});
        };
        step(packsOf<n, V>(src, k.first)...);
        return KeslStatus(keslStatusOk);
    });
}

// ---- Roads for the layouts and strides of a call.

// f(h, w) with the sizes of square matrices and the length of vectors where they are 3 to 6.
[[gnu::always_inline]] inline void withShape(int height, int width, auto f)
{
    withOrder(width == height ? width : 0, [&](auto n) { f(n, n); });
}
[[gnu::always_inline]] inline void withShape(One, int length, auto f)
{
    withOrder(length, [&](auto n) { f(One{}, n); });
}

// A source along the objects, at one of its elements.
template <class O> auto alongObjects(const O& o, int i, int j, int height, int width)
{
    if constexpr (isConstant<O> && O::isArray) return o.address(0);
    else if constexpr (O::isArray) return static_cast<const typename O::Element*>(&o.object(0, height, width)(i, j));
    else return Same<typename O::Element>{o.object(0, height, width)(i, j)};
}

// The objects of a pack, read as a block; a constant needs none.
template <int h, int w, class V, class O> [[gnu::always_inline]] inline auto blockOf(const O& o, Objects<V> k)
{
    if constexpr (isConstant<O>) return Same<V>{splat<V>(o.x)};
    else return load<h, w, true>(o, k);
}
template <class V, int h, int w> [[gnu::always_inline]] inline void mapBlock(Block<V, h, w>& dst, auto f, const auto&... src)
{
    eachElement<h, w>([&](int i, int j) { dst(i, j) = f(src(i, j)...); });
}
// The record of a transposed object as it is stored.
template <class T> auto storedRow(Transposed<Rows<T>> object) { return object.stored.row(0); }
template <class T> auto storedRow(Same<T> constant) { return constant; }

// Whether the objects of an operand can be read and written in packs without much ado.
template <class O> bool suitsPacks(const O& o, int height, int width)
{
    if constexpr (!O::isArray) return true;
    else if constexpr (contiguousRows(O::form)) return isRecord(o, height, width);
    else return isSideBySide(o);
}

template <class Dst, class... Src>
[[gnu::always_inline]] inline void map(auto height, int width, auto count, auto f, const Dst& dst, const Src&... src)
{
    using T = typename Dst::Element;
    constexpr bool array = Dst::isArray;
    constexpr bool standard = Dst::form == S && ((isConstant<Src> || Src::form == S) && ...);
    constexpr bool contiguous = contiguousRows(Dst::form) && ((isConstant<Src> || contiguousRows(Src::form)) && ...);
    constexpr bool noneContiguous =
        !contiguousRows(Dst::form) && ((!isArrayOfObjects<Src> || !contiguousRows(Src::form)) && ...);
    constexpr bool constants = ((isConstant<Src> && Src::isArray) || ...); // of vectors only
    constexpr bool transposedArray = ((isTransposed<Src> && Src::isArray) || ...);
    constexpr bool transposedOnly = contiguous && ((isTransposed<Src> || isByValue<Src>)&&...) && (isTransposed<Src> || ...);
    const std::int64_t each = std::int64_t(height) * width;

    if constexpr (array && standard)
        if (isPacked(dst, height, width) && (isPacked(src, height, width) && ...)) {
            if constexpr (constants) {
                bool done = false;
                withOrder(width, [&](auto n) {
                    if constexpr (n > 0) {
                        mapVectors<n>(count, f, dst.address(0), Periodic<Src>(src, 1, n, lanes<Pack<T>>)...);
                        done = true;
                    }
                });
                if (done) return;
            } else if constexpr (((isArrayOfObjects<Src> || isConstant<Src>)&&...))
                return mapObjects(each * count, f, dst.address(0), Periodic<Src>(src, height, width, count).from(0)...);
            else if (each <= mostRepeated && count >= fewObjects)
                return mapPieces(int(each), count, f, dst.address(0), Periodic<Src>(src, height, width, count)...);
        }
    if constexpr (array && noneContiguous) // structure of arrays
        if (isSideBySide(dst) && (isSideBySide(src) && ...)) {
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < width; ++j)
                    mapRun(count, f, &dst.object(0, height, width)(i, j), alongObjects(src, i, j, height, width)...);
            return;
        }
    withShape(height, width, [&](auto h, auto w) {
        if constexpr (transposedOnly && w > 0)
            if (isRecord(dst, h, w) && (isRecord(src, h, w) && ...)) {
                for (int k = 0; k < count; ++k)
                    mapTransposed<w>(f, dst.object(k, w, w).row(0), storedRow(src.object(k, w, w))...);
                return;
            }
        // Transposed in registers, several objects at once; and from or to a structure of arrays.
        if constexpr (array && w > 0 && (contiguous ? transposedArray && !transposedOnly : !noneContiguous))
            if (suitsPacks(dst, h, w) && (suitsPacks(src, h, w) && ...)) {
                eachPack<T>(count, [&]<class V>(Objects<V> k) {
                    Block<V, h, w> x;
                    mapBlock(x, f, blockOf<h, w>(src, k)...);
                    store<true>(dst, k, x);
                    return KeslStatus(keslStatusOk);
                });
                return;
            }
        if constexpr (contiguous && !(isTransposed<Src> || ...))
            if (isOneRun(dst, height, width) && (isOneRun(src, height, width) && ...)) {
                for (int k = 0; k < count; ++k)
                    mapRun(w > 0 ? h * w : each, f, dst.object(k, h, w).row(0), src.object(k, h, w).row(0)...);
                return;
            }
        for (int k = 0; k < count; ++k)
            mapObject<h, w>(height, width, f, dst.object(k, height, width), src.object(k, height, width)...);
    });
}

// dst = src, which may have different layouts. Whether rows are contiguous is found out for each of the two.
[[gnu::always_inline]] inline void inOwnForm(auto o, auto f)
{
    constexpr Form F = decltype(o)::form;
    if constexpr (F == S2 || F == LS2)
        if (o.rowsAreContiguous()) return f(o.template as < F == S2 ? S : L > ());
    f(o);
}
inline void move(auto height, int width, auto count, const auto& dst, const auto& src)
{
    inOwnForm(dst, [=](auto to) KESL_INLINE {
        inOwnForm(src, [=](auto from) KESL_INLINE { map(height, width, count, Move{}, to, from); });
    });
}

} // namespace kesl
