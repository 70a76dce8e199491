// What a family's file needs: the operands of operands.h, and rows<>(), which turns a family into rows of the benchmark.
// A family is described in README.md and, by example, in example.cpp.
#pragma once
#include "operands.h"

#include <keslmx.h>

namespace bench {

// ---- Rows

// The comparison of two builds of the library does without alternatives, which take minutes to compile.
inline constexpr bool hasAlternatives = BENCH_HAS_ALTERNATIVES;

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
        if constexpr (hasAlternatives) addPeers(row, size, data);
    }

    static void addPeers(Prepared& row, Size size, std::shared_ptr<Data> data)
    {
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
        add("library", [=](int k) { callAlone(*data, k); });
        if constexpr (hasAlternatives) {
            const auto body = std::get<0>(Family::peers).body;
            const auto views = std::apply([](auto&... operand) { return std::tuple{operand.view()...}; }, *data);
            const auto strided = std::apply([](auto&... operand) { return std::tuple{operand.strided()...}; }, *data);
            add("inlined", [=](int k) { std::apply([&](auto... view) { body(n, Range{k, k + 1}, view...); }, views); });
            add("function", [=](int k) { std::apply([&](auto&... view) { called(body, n, k, view...); }, strided); });
        }
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
    constexpr bool planned = L == Layout::packed || plan == Plan::full || plan == Plan::layouts;
    if constexpr (planned) {
        addRow<Family, T, N, L>(Size::cache, 1);
        if (plan == Plan::cache) return;
        if (plan != Plan::layouts) {
            addRow<Family, T, N, L>(Size::many, 2);
            addRow<Family, T, N, L>(Size::stream, 1);
            addRow<Family, T, N, L>(Size::stream, 2);
        }
        if (L == Layout::packed && N == 3) addRow<Family, T, N, L>(Size::one, 1);
    } else if constexpr (!hasAlternatives) {
        addRow<Family, T, N, L>(Size::cache, 1);
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
