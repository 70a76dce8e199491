// What a case is made of but for its places: sizes, data, the call, what the reference makes of it.
#include "case.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <set>

namespace {
template <class T> T ordinary(Random& r)
{
    return T((r.unit() + 0.0625) * (r.chance(50) ? 1 : -1) * std::exp2(r.between(-2, 2)));
}

template <class T> T anyBits(Random& r)
{
    if constexpr (sizeof(T) == 4) return std::bit_cast<float>(uint32_t(r.next()));
    else return std::bit_cast<double>(r.next());
}

enum class Data { ordinary, integers, mixed, bits, specials };

template <class T> T datum(Data kind, Random& r)
{
    switch (kind) {
    case Data::integers: return T(r.between(-4, 4));
    case Data::mixed: return r.chance(8) ? special<T>(r) : ordinary<T>(r);
    case Data::bits: return anyBits<T>(r);
    case Data::specials: return special<T>(r);
    default: return ordinary<T>(r);
    }
}

} // namespace

std::vector<int> slicesOf(int count, int threads)
{
    std::vector<int> slices;
    for (int t = 0; t < threads; ++t) slices.push_back(count / threads + (t < count % threads));
    return slices;
}

Case::Case(const Function& function, const Reference& r, int caseNumber, const Wish& wish)
    : f(function), reference(r), number(caseNumber), values(f.arguments.size()), placed(f.operands.size()),
      random(f.name, caseNumber)
{
    random.bytes = wish.bytes, random.end = wish.end;
    sizes(wish);
    placeAll(wish);
    arguments();
    fill(wish);
}

std::string Case::name() const { return f.name + " case " + std::to_string(number); }

void Case::sizes(const Wish& wish)
{
    dims = wish.dims;
    const std::string letters = f.letters();
    if (std::all_of(letters.begin(), letters.end(), [&](char c) { return dims[c] == 0; })) {
        const bool square = number % 2 == 0; // the orders 3 to 6 matter most, where all sizes are equal
        for (char& c : std::string(letters)) {
            const std::string turn = f.name + (square ? '*' : c);
            static const int sizes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 3, 4, 5, 6, 12, 16, 17}; // 3 to 6 twice
            dims[c] = sizes[inTurn(turn, int(std::size(sizes)), number / 2)];
        }
        if (f.tallOnly() && dims['w'] > dims['h']) std::swap(dims['w'], dims['h']);
    }
    if (!f.array) return;
    static const int counts[] = {1, 2, 3, 4, 5, 7, 8, 9, 11, 15, 16, 17, 19, 31, 33, 35, 50, 67};
    count = wish.count ? wish.count : counts[inTurn(f.name + "count", int(std::size(counts)), number)];
    if (reference.cost && !wish.count) count = std::min(count, std::max(2, int(100000 / reference.cost(dims))));
}

template <class E> View<E> Case::view(int operand, int k, bool shadow) const
{
    const Operand& o = f.operands[size_t(operand)];
    const Placed& p = placed[size_t(operand)];
    View<E> v;
    if (o.byValue()) {
        for (size_t i = 0; i < values.size(); ++i)
            if (f.arguments[i].operand == operand) v.base = const_cast<char*>(reinterpret_cast<const char*>(&values[i]));
        return v;
    }
    const ptrdiff_t delta = shadow ? p.arena->toShadow : 0;
    const ptrdiff_t own = o.array ? ptrdiff_t(k) * p.stride0 : 0;
    const bool transposed = o.letter == 't';
    if (o.layout == 'P') {
        v.list = p.listAt;
        v.offset = p.shift + own + delta;
        v.listRow = transposed ? 1 : p.columns, v.listColumn = transposed ? p.columns : 1;
    } else {
        v.base = (o.layout == 'L' ? p.list[size_t(k)] + p.shift : p.pointer + own) + delta;
        v.row = transposed ? p.stride2 : p.stride1, v.column = transposed ? p.stride1 : p.stride2;
        if (o.letter == 'c') v.row = v.column = 0;
    }
    return v;
}

template <class T> Object<T> Case::object(int k, bool shadow)
{
    Object<T> o{f, dims, k, f.contiguous(values), {}, {}, {}, &bufferUsed};
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& operand = f.operands[i];
        if (operand.scratch) continue;
        if (operand.integer) o.tables.push_back(view<int>(int(i), k, shadow));
        else (operand.destination ? o.destinations : o.sources).push_back(view<T>(int(i), k, shadow));
    }
    return o;
}

void Case::fill(const Wish& wish)
{
    static const int patterns[] = {0xCB, 0xFF, 0x7F, 0x00};
    for (const Placed& p : placed) {
        const int pattern = random.pick(patterns);
        for (auto [begin, size] : p.windows) std::memset(begin, pattern, size);
    }
    f.elemSize == 4 ? fillElements<float>(wish) : fillElements<double>(wish);
    for (const Placed& p : placed)
        for (auto [begin, size] : p.windows) std::memcpy(begin + p.arena->toShadow, begin, size);
}

template <class T> void Case::fillElements(const Wish& wish)
{
    static const Data kinds[] = {Data::ordinary, Data::ordinary, Data::ordinary, Data::integers,
                                 Data::mixed,    Data::mixed,    Data::bits,     Data::specials};
    const Data kind = wish.plain ? Data::ordinary : kinds[inTurn(f.name + "data", int(std::size(kinds)), number)];
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        if (o.destination || o.scratch) continue;
        for (int k = 0; k < placed[i].objects; ++k) {
            const std::vector<int> order = random.permutation(o.integer ? o.columns(dims) : 0);
            for (int r = 0; r < o.rows(dims); ++r)
                for (int c = 0; c < o.columns(dims); ++c)
                    if (o.integer) view<int>(int(i), k, false)(r, c) = order[size_t(c)];
                    else view<T>(int(i), k, false)(r, c) = datum<T>(kind, random);
        }
    }
    const Hooks<T>& hooks = reference.of<T>();
    static const int shares[] = {5, 30, 100}; // of the objects at the edge; those that fail hide what follows them
    const int share = !wish.plain && random.chance(40) ? random.pick(shares) : 0;
    for (int k = 0; k < count; ++k) {
        if (hooks.inputs) hooks.inputs(object<T>(k, false), random);
        if (hooks.edges && random.chance(share)) hooks.edges(object<T>(k, false), random);
    }
    if (hooks.fail && random.chance(wish.failing)) {
        const int places[] = {0, count / 2, count - 1, random.below(count)};
        for (int times = random.between(1, 2); times > 0; --times) hooks.fail(object<T>(random.pick(places), false), random);
    }
}

int Case::run(const Level& level)
{
    void* address = find(level, f.name);
    if (copied)
        for (const Placed& p : placed)
            for (auto [begin, size] : p.windows) std::memcpy(begin, begin + p.arena->toShadow, size);
    copied = true;
    setRunning(name().c_str());
    int status = -1;
    fault.clear();
    if (!survives([&] { status = call(f, address, values); })) {
        fault = format("touched inaccessible memory at %p", faultAddress);
        for (size_t i = 0; i < placed.size(); ++i)
            if (placed[i].arena && faultAddress >= placed[i].arena->begin - pageSize &&
                faultAddress < placed[i].arena->end + pageSize)
                fault += format(", %td bytes from the begin of %s", static_cast<char*>(faultAddress) - placed[i].begin,
                                f.operands[i].name.c_str());
    } else if (watch.control) fault = "leaves another floating-point control word, or flags in it";
    return status;
}

bool Case::expect(int status, const std::vector<int>& slices)
{
    return f.elemSize == 4 ? expectAs<float>(status, slices) : expectAs<double>(status, slices);
}

template <class T> bool Case::expectAs(int status, const std::vector<int>& slices)
{
    std::set<int> statuses; // one of the failures of the slices
    int k = 0;
    for (int n : slices) {
        int own = Ok;
        bool stopped = false;
        for (int end = k + n; k < end; ++k) {
            if (stopped) continue;
            const Outcome outcome = reference.of<T>().treat(object<T>(k, true));
            if (outcome.status != Ok) own = outcome.status;
            stopped = outcome.stops;
        }
        if (own != Ok) statuses.insert(own);
    }
    if (statuses.empty()) statuses.insert(Ok);
    return statuses.count(status) > 0;
}

// For those who look at operands elsewhere.
template View<char> Case::view(int, int, bool) const;
template View<int> Case::view(int, int, bool) const;
template View<float> Case::view(int, int, bool) const;
template View<double> Case::view(int, int, bool) const;
