// What a family's file needs: operands in every layout, the views through which alternatives see them, and rows<>(),
// which turns a family into rows of the benchmark. A family is described in README.md and, by example, in add.cpp.
#pragma once
#include <keslmx.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <Eigen/Dense>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace bench {

struct Range {
    int begin, end;
};

// ---- Layouts and sizes

enum class Layout { packed, gapped, soa, L, P };
inline constexpr const char* layoutNames[] = {"packed", "gapped", "soa", "L", "P"};
template <Layout L> inline constexpr bool isPlanes = L == Layout::soa || L == Layout::P; // one run of objects per element

enum class Size { one, cache, many, stream };
inline constexpr const char* sizeNames[] = {"one", "cache", "many", "stream"};

// ---- Operands. The letters are those of the function names; out<> marks what is written.

template <bool Array, bool Vector, int R, int C> struct Shape {
    static constexpr bool array = Array, vector = Vector, buffer = false, output = false, dense = false;
    static constexpr int sizes = 0; // behind the operand
    static constexpr int rows = R, cols = C;
};
template <int R, int C> struct m : Shape<false, false, R, C> {};
template <int R, int C> struct ma : Shape<true, false, R, C> {};
template <int C> struct v : Shape<false, true, 1, C> {};
template <int C> struct va : Shape<true, true, 1, C> {};
template <int C> struct scratch : Shape<false, true, 1, C> {
    static constexpr bool buffer = true;
};
template <class Op> struct out : Op {
    static constexpr bool output = true;
};
// An operand with sizes of its own behind it: width and height, or len; and with its order.
template <class Op> struct withSizes : Op {
    static constexpr int sizes = Op::vector ? 1 : 2;
};
template <class Op> struct withOrder : Op {
    static constexpr int sizes = 1;
};
// Some values for each object, at consecutive elements in every layout.
template <int C> struct results : va<C> {
    static constexpr bool output = true, dense = true;
};
struct result : results<1> {};

// ---- Views: element (i, j) of object k, as a user's own code would reach it

template <class T, Layout L, int R, int C> struct View {
    static constexpr int rows = R, cols = C, pitch = L == Layout::gapped ? C + 1 : C;
    static constexpr bool planes = isPlanes<L>, contiguous = L == Layout::packed;
    using Matrix = Eigen::Matrix<T, R, C, R != 1 && C == 1 ? Eigen::ColMajor : Eigen::RowMajor>;

    T* data;
    T* const* list;
    std::int64_t count;

    T* object(std::int64_t k) const { return L == Layout::L ? list[k] : data + k * (R * pitch); }
    T* plane(int i, int j) const { return L == Layout::P ? list[i * C + j] : data + (i * C + j) * count; }
    T& operator()(std::int64_t k, int i, int j) const
    {
        if constexpr (planes) return plane(i, j)[k];
        return object(k)[i * pitch + j];
    }

    auto eigen(std::int64_t k) const // object k as Eigen sees it; where its elements lie apart, a copy
    {
        if constexpr (planes) {
            Matrix object;
            for (int i = 0; i < R; ++i)
                for (int j = 0; j < C; ++j) object(i, j) = (*this)(k, i, j);
            return object;
        } else {
            return Eigen::Map<Matrix, Eigen::Unaligned, Eigen::OuterStride<pitch>>(object(k));
        }
    }
    void assign(std::int64_t k, const auto& value) const
    {
        if constexpr (planes) {
            const Matrix object = value;
            for (int i = 0; i < R; ++i)
                for (int j = 0; j < C; ++j) (*this)(k, i, j) = object(i, j);
        } else {
            eigen(k) = value;
        }
    }
};

// Sizes and strides known only at run time: what a function that is not inlined sees.
template <class T> struct Strided {
    static constexpr bool planes = false, contiguous = false;
    T* data;
    std::int64_t stride0, stride1, stride2;
    int rows, cols;
    T& operator()(std::int64_t k, int i, int j) const { return data[k * stride0 + i * stride1 + j * stride2]; }
};

// A single object, read once before a loop, so that no store of the loop can seem to change it.
template <class B> auto kept(const B& b)
{
    if constexpr (requires { B::pitch; }) {
        typename B::Matrix object = b.eigen(0);
        return [object](int, int i, int j) { return object(i, j); };
    } else {
        return [b](int, int i, int j) { return b(0, i, j); };
    }
}

// Loops over all elements in the order in which they lie.
template <class D> void elements(Range range, const D& d, auto body)
{
    if constexpr (D::planes) {
        for (int i = 0; i < d.rows; ++i)
            for (int j = 0; j < d.cols; ++j)
#pragma GCC ivdep
                for (int k = range.begin; k < range.end; ++k) body(k, i, j);
    } else {
#pragma GCC ivdep
        for (int k = range.begin; k < range.end; ++k)
            for (int i = 0; i < d.rows; ++i)
                for (int j = 0; j < d.cols; ++j) body(k, i, j);
    }
}

// ---- Memory of one operand

struct Free {
    void operator()(void* p) const { std::free(p); }
};

template <class T, class Op, Layout RowLayout> struct Operand {
    // A single object lies packed, whatever the array beside it does; P functions reach it by pointers too.
    static constexpr Layout L = Op::array && !Op::dense ? RowLayout : Layout::packed;
    static constexpr int R = Op::rows, C = Op::cols;
    static constexpr bool array = Op::array, output = Op::output, buffer = Op::buffer;
    using AView = View<T, L, R, C>;

    std::int64_t count;
    std::size_t bytes;
    std::unique_ptr<void, Free> memory;
    T* data;
    std::vector<T*> list;

    std::int64_t stride0() const { return isPlanes<L> ? 1 : R * AView::pitch; } // in elements
    std::int64_t stride1() const { return isPlanes<L> ? C * count : AView::pitch; }
    std::int64_t stride2() const { return isPlanes<L> ? count : 1; }

    // The bases are staggered, so that source and destination do not fall on the same addresses modulo 4 KiB.
    Operand(int objects, int index) : count(Op::array ? objects : 1)
    {
        bytes = static_cast<std::size_t>(count * R * AView::pitch) * sizeof(T);
        const std::size_t stagger = 1088 * static_cast<std::size_t>(index + 1);
        memory.reset(std::aligned_alloc(4096, (bytes + stagger + 4095) / 4096 * 4096));
        if (!memory) throw std::bad_alloc();
        data = reinterpret_cast<T*>(static_cast<char*>(memory.get()) + stagger);
        poison();
        if constexpr (L == Layout::L)
            for (std::int64_t k = 0; k < count; ++k) list.push_back(data + k * stride0());
        if constexpr (RowLayout == Layout::P)
            for (int e = 0; e < R * C; ++e) list.push_back(data + e / C * stride1() + e % C * stride2());
    }

    void poison() { std::memset(static_cast<void*>(data), 0xff, bytes); } // NaN in every element
    T& at(std::int64_t k, int i, int j) { return data[k * stride0() + i * stride1() + j * stride2()]; }
    AView view() const { return {data, list.data(), count}; }
    Strided<T> strided() const { return {data, stride0(), stride1(), stride2(), R, C}; }

    // The operand's run of arguments in a call that begins at object k; alone: in a function on one object.
    template <bool alone> auto arguments(int k) const
    {
        if constexpr (Op::sizes == 1) return std::tuple_cat(located<alone>(k), std::tuple{C});
        else if constexpr (Op::sizes == 2) return std::tuple_cat(located<alone>(k), std::tuple{C, R});
        else return located<alone>(k);
    }
    template <bool alone> auto located(int k) const
    {
        const auto byte = [](std::int64_t elements) { return static_cast<int>(elements * std::int64_t{sizeof(T)}); };
        const int s0 = byte(stride0()), s1 = byte(stride1()), s2 = byte(stride2());
        T* const p = data + (Op::array && L != Layout::P ? k * stride0() : 0);
        if constexpr (Op::buffer) return std::tuple{data};
        else if constexpr (Op::dense) return std::tuple{p};
        else if constexpr (RowLayout == Layout::P && Op::array && !alone)
            return std::tuple{static_cast<T* const*>(list.data()), byte(k * stride0()), s0};
        else if constexpr (RowLayout == Layout::P)
            return std::tuple{static_cast<T* const*>(list.data()), byte(Op::array ? k * stride0() : 0)};
        else if constexpr (L == Layout::L && Op::vector) return std::tuple{list.data() + k, 0, s2};
        else if constexpr (L == Layout::L) return std::tuple{list.data() + k, 0, s1, s2};
        else if constexpr (Op::array && !alone && Op::vector) return std::tuple{p, s0, s2};
        else if constexpr (Op::array && !alone) return std::tuple{p, s0, s1, s2};
        else if constexpr (Op::vector) return std::tuple{p, s2};
        else return std::tuple{p, s1, s2};
    }
};

// ---- Random data: the same in every run

struct Random {
    std::uint64_t state;
    double operator()() // uniform in [-1, 1)
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(static_cast<std::int64_t>(state) >> 11) * 0x1p-52;
    }
};

// Well conditioned, but such that pivoting has something to do: a dominant diagonal, with its rows exchanged at random.
template <class T> void fillRegular(T* a, int n, Random& random)
{
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) a[i * n + j] = static_cast<T>(random() + (i == j ? n : 0));
    for (int i = n - 1; i > 0; --i) {
        const int q = static_cast<int>((random() + 1) / 2 * (i + 1));
        for (int j = 0; j < n && q < i; ++j) std::swap(a[i * n + j], a[q * n + j]);
    }
}

// ---- Rows

// An alternative: a name and a generic function (order, range of objects, a view of each operand).
// One that is aside is of less accuracy: its error is printed, and the ratio does without it.
enum class Where { everywhere, cacheOnly, aside };
template <class Body> struct Peer {
    const char* name;
    Body body;
    Where where = Where::everywhere;
};
template <class Body> Peer(const char*, Body) -> Peer<Body>;
template <class Body> Peer(const char*, Body, Where) -> Peer<Body>;

struct Contender {
    std::string name;
    std::function<void(int begin, int end)> run;
    bool aside = false;
    bool threadsItself = false; // the library: it is called once on all objects, with the number of threads of the row
};

// A row's data and contenders; the library is the first contender.
struct Prepared {
    int count;
    std::int64_t bytesRead, bytesWritten;
    std::vector<Contender> contenders;
    std::function<void()> poison;
    std::function<std::vector<double>(int k)> result; // everything written for object k
    double tolerance;                                 // of a result, relative to the largest element of its object
};

struct Row {
    std::string family, type;
    int order;
    Layout layout;
    Size size;
    int threads;
    std::int64_t objectBytes; // of one object in all arrays together
    std::function<Prepared(int count)> prepare;
    std::string name() const;
};
std::vector<Row>& allRows();

template <class T> constexpr const char* typeName = sizeof(T) == 4 ? "32f" : "64f";

// Called as any function of another file is: no inlining, no cloning for constant arguments.
template <class Body, class N, class... Views>
[[gnu::noinline]] void called(const Body& body, N n, int k, const Views&... views)
{
    asm volatile("");
    body(n, Range{k, k + 1}, views...);
}

// One family at one order, in one type and layout.
template <class Family, class T, int N, Layout L, class Ops = typename Family::template Operands<N>> struct Case;
template <class Family, class T, int N, Layout L, class... Op> struct Case<Family, T, N, L, std::tuple<Op...>> {
    static constexpr std::integral_constant<int, N> n{};
    static constexpr std::size_t which = (L == Layout::L ? 2 : L == Layout::P ? 4 : 0) + (sizeof(T) == 8);
    static constexpr bool exists = which < std::tuple_size_v<decltype(Family::functions)>;
    static constexpr int objectBytes =
        ((Op::array ? Op::rows * View<T, L, Op::rows, Op::cols>::pitch * int{sizeof(T)} : 0) + ...);
    using Data = std::tuple<Operand<T, Op, L>...>;

    static void fill(auto& operand, int index, Random& random)
    {
        if (operand.output || operand.buffer) return;
        const int rows = operand.R, cols = operand.C;
        T object[operand.R * operand.C];
        for (int k = 0; k < operand.count; ++k) {
            for (T& x : object) x = static_cast<T>(random() + (requires { Family::positive; } ? 2 : 0));
            if constexpr (requires { Family::fill(index, object, N, random); }) Family::fill(index, object, N, random);
            for (int i = 0; i < rows; ++i)
                for (int j = 0; j < cols; ++j) operand.at(k, i, j) = object[i * cols + j];
        }
    }

    static void call(const Data& data, int begin, int count) // of the library, on an array
    {
        const auto operands =
            std::apply([&](auto&... operand) { return std::tuple_cat(operand.template arguments<false>(begin)...); }, data);
        std::apply(std::get<which>(Family::functions),
                   std::tuple_cat(operands, Family::template sizes<N>, std::tuple{count}));
    }

    static void callAlone(const Data& data, int k) // on one object: by the function for that, if there is one
    {
        if constexpr (requires { Family::alone; }) {
            const auto operands =
                std::apply([&](auto&... operand) { return std::tuple_cat(operand.template arguments<true>(k)...); }, data);
            std::apply(std::get<sizeof(T) == 8>(Family::alone), std::tuple_cat(operands, Family::template sizes<N>));
        } else {
            call(data, k, 1);
        }
    }

    static void addArrayContenders(Prepared& row, Size size, std::shared_ptr<Data> data)
    {
        row.contenders.push_back({"library", [=](int begin, int end) { call(*data, begin, end - begin); }, false, true});
        const auto views = std::apply([](auto&... operand) { return std::tuple{operand.view()...}; }, *data);
        const auto add = [&](const auto& peer) {
            const auto body = peer.body;
            if constexpr (std::is_invocable_v<decltype(body), decltype(n), Range, typename Operand<T, Op, L>::AView...>)
                if (size == Size::cache || peer.where == Where::everywhere)
                    row.contenders.push_back(
                        {peer.name,
                         [=](int begin, int end) {
                             std::apply([&](auto... view) { body(n, Range{begin, end}, view...); }, views);
                         },
                         peer.where == Where::aside});
        };
        std::apply([&](const auto&... peer) { (add(peer), ...); }, Family::peers);
    }

    // Object by object, a barrier behind each: the library, and the plain loop inlined and as a function of its own.
    static void addCallContenders(Prepared& row, std::shared_ptr<Data> data)
    {
        const auto add = [&](const char* name, auto one) {
            row.contenders.push_back({name, [=](int begin, int end) {
                                          for (int k = begin; k < end; ++k) {
                                              one(k);
                                              asm volatile("" ::: "memory");
                                          }
                                      }});
        };
        const auto body = std::get<0>(Family::peers).body;
        const auto views = std::apply([](auto&... operand) { return std::tuple{operand.view()...}; }, *data);
        const auto strided = std::apply([](auto&... operand) { return std::tuple{operand.strided()...}; }, *data);
        add("library", [=](int k) { callAlone(*data, k); });
        add("inlined", [=](int k) { std::apply([&](auto... view) { body(n, Range{k, k + 1}, view...); }, views); });
        add("function", [=](int k) { std::apply([&](auto&... view) { called(body, n, k, view...); }, strided); });
    }

    static Prepared prepare(Size size, int count)
    {
        auto next = [i = 0]() mutable { return i++; };
        const auto data = std::shared_ptr<Data>(new Data{Operand<T, Op, L>(count, next())...});
        const auto each = [data](auto body) { std::apply([&](auto&... operand) { (body(operand), ...); }, *data); };

        Random random{88172645463325252u + N};
        int index = 0;
        each([&](auto& operand) { fill(operand, index++, random); });

        Prepared row{};
        row.count = count;
        row.tolerance = Family::tolerance * (sizeof(T) == 4 ? 0x1p-23 : 0x1p-52);
        each([&](auto& operand) {
            if (operand.array) (operand.output ? row.bytesWritten : row.bytesRead) += std::int64_t(operand.bytes);
        });
        row.poison = [each] {
            each([](auto& operand) {
                if (operand.output) operand.poison();
            });
        };
        row.result = [each](int k) {
            std::vector<double> result;
            each([&](auto& operand) {
                if (operand.output)
                    for (int i = 0; i < operand.R; ++i)
                        for (int j = 0; j < operand.C; ++j)
                            result.push_back(double(operand.at(operand.array ? k : 0, i, j)));
            });
            if constexpr (requires { Family::comparable(result, N); }) Family::comparable(result, N);
            return result;
        };
        if (size != Size::one) addArrayContenders(row, size, data);
        else if constexpr (L == Layout::packed) addCallContenders(row, data);
        return row;
    }
};

// Which rows a family gets: every layout and size, or only the packed ones, or only those in cache, these in every layout
// (for what computes long on each object, so that memory does not matter) or packed.
enum class Plan { full, packed, layouts, cache };

template <class Family, class T, int N, Layout L> void addRow(Size size, int threads)
{
    using C = Case<Family, T, N, L>;
    if constexpr (C::exists)
        allRows().push_back({Family::name, typeName<T>, N, L, size, threads, C::objectBytes,
                             [size](int count) { return C::prepare(size, count); }});
}

template <class Family, Plan plan, class T, int N, Layout L> void addRows()
{
    if constexpr (L == Layout::packed || plan == Plan::full || plan == Plan::layouts) {
        addRow<Family, T, N, L>(Size::cache, 1);
        if (plan == Plan::cache) return;
        if (plan != Plan::layouts) {
            addRow<Family, T, N, L>(Size::many, 2);
            addRow<Family, T, N, L>(Size::stream, 1);
            addRow<Family, T, N, L>(Size::stream, 2);
        }
        if (L == Layout::packed && N == 3) addRow<Family, T, N, L>(Size::one, 1);
    }
}

template <class Family, Plan plan, int... N> bool rows()
{
    const auto ofType = [&]<class T>(T) {
        const auto ofOrder = [&]<int M>(std::integral_constant<int, M>) {
            addRows<Family, plan, T, M, Layout::packed>();
            addRows<Family, plan, T, M, Layout::gapped>();
            addRows<Family, plan, T, M, Layout::soa>();
            addRows<Family, plan, T, M, Layout::L>();
            addRows<Family, plan, T, M, Layout::P>();
        };
        (ofOrder(std::integral_constant<int, N>{}), ...);
    };
    ofType(float{});
    ofType(double{});
    return true;
}

} // namespace bench

// The functions of a family: 32f, 64f, then the same in the L and P layouts. Only the names are minted here.
#define KESL_FUNCTIONS(name) std::make_tuple(name##_32f, name##_64f, name##_32f_L, name##_64f_L, name##_32f_P, name##_64f_P)
#define KESL_ALONE(name) std::make_tuple(name##_32f, name##_64f)
