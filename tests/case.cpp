#include "case.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <set>
#include <sys/mman.h>

namespace {
// How an operand lies in memory: the order of its dimensions (k objects, r rows, c columns; the last one is nested
// innermost), the distance of the innermost elements, gaps between runs, how many inner dimensions share a page of
// their own between inaccessible ones (0: all is flat), and what else there is to it.
enum Trait { none, sliding, huge }; // sources whose objects overlap; the outermost distance nearly 2 GB
struct Form {
    const char* order;
    int unit;
    bool gaps;
    int paged;
    Trait trait;
};
const Form forms[] = {
    {"krc", 1, false, 0, none}, // packed
    {"krc", 1, true, 0, none},  // gaps behind rows and objects
    {"krc", 1, true, 1, none},  // each row against an inaccessible page
    {"krc", 1, false, 2, none}, // each object
    {"rkc", 1, true, 0, none},  // equal rows of all objects together
    {"krc", 1, false, 0, sliding}, {"krc", 1, true, 0, huge},  {"rkc", 1, true, 0, huge},
    {"krc", 2, false, 0, none},                                                            // element, gap, element
    {"krc", 3, true, 0, none},     {"krc", 2, true, 2, none},  {"kcr", 1, false, 0, none}, // columns
    {"kcr", 1, true, 0, none},     {"rck", 1, false, 0, none}, // equal elements of all objects together
    {"rck", 1, true, 0, none},     {"rck", 1, false, 1, none}, {"crk", 2, true, 0, none},
    {"ckr", 1, true, 0, none},     {"crk", 1, true, 0, huge},
};
constexpr int contiguousForms = 8, allForms = int(std::size(forms));
constexpr int64_t hugeSpan = int64_t(38) << 30;

constexpr int margin = 1024; // bytes that are compared on both sides of an operand

template <class T> T ordinary(Random& r)
{
    return T((r.unit() + 0.0625) * (r.chance(50) ? 1 : -1) * std::exp2(r.between(-2, 2)));
}

template <class T> T anyBits(Random& r)
{
    if constexpr (sizeof(T) == 4) return std::bit_cast<float>(uint32_t(r.next()));
    else return std::bit_cast<double>(r.next());
}

template <class T> T special(Random& r)
{
    using Limits = std::numeric_limits<T>;
    const T list[] = {0,
                      T(-0.0),
                      1,
                      -1,
                      Limits::infinity(),
                      -Limits::infinity(),
                      Limits::quiet_NaN(),
                      Limits::min(),
                      -Limits::min(),
                      Limits::denorm_min(),
                      Limits::min() / 2,
                      Limits::max(),
                      -Limits::max(),
                      Limits::epsilon(),
                      Limits::signaling_NaN()};
    return r.pick(list);
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

template <class T> bool sameBits(T a, T b) { return std::memcmp(&a, &b, sizeof(T)) == 0; }

template <class... Args> std::string format(const char* text, Args... args)
{
    char buffer[1000];
    snprintf(buffer, sizeof buffer, text, args...);
    return buffer;
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
    sizes(wish);
    // Mostly all operands lie alike, as in programs; else each as it likes.
    const int first = wish.elements == Elements::general ? contiguousForms : 0;
    const int number_ = wish.elements == Elements::contiguous ? contiguousForms : allForms - first;
    const int common = first + inTurn(f.name + "form", number_, number);
    const bool alike = random.chance(60);
    for (size_t i = 0; i < placed.size(); ++i) place(int(i), wish, alike ? common : first + random.below(number_));

    // The destination on a source.
    for (size_t i = 0; i < placed.size() && reference.inPlace && random.chance(12); ++i) {
        const Operand& o = f.operands[i];
        if (o.destination || o.byValue() || placed[i].overlaps || !reference.inPlace(f, dims, int(i))) continue;
        for (size_t d = 0; d < placed.size(); ++d) {
            const Operand& dst = f.operands[d];
            if (!dst.destination || dst.dense != o.dense || dst.array != o.array || dst.layout != o.layout) continue;
            if (placed[d].rows != placed[i].rows || placed[d].columns != placed[i].columns) continue;
            placed[d] = placed[i], inPlace = true;
        }
    }
    arguments();
    fill(wish);
}

Case::~Case()
{
    for (const Placed& p : placed) // what lies far apart takes a page for each piece
        if (p.arena && p.arena->end - p.arena->begin >= hugeSpan)
            for (auto [begin, size] : p.windows) {
                char* const page = reinterpret_cast<char*>(size_t(begin) & ~size_t(pageSize - 1));
                for (char* at : {page, page + p.arena->toShadow}) madvise(at, size_t(begin + size - page), MADV_DONTNEED);
            }
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
            const int n = inTurn(turn, 13, number / 2);
            dims[c] = n < 9 ? n + 1 : n - 6; // 3 to 6 twice
        }
        if (f.operation.substr(0, 2) == "QR" && dims['w'] > dims['h']) std::swap(dims['w'], dims['h']);
    }
    if (!f.array) return;
    static const int counts[] = {1, 2, 3, 4, 5, 7, 8, 9, 11, 15, 16, 17, 19, 31, 33, 35, 50, 67};
    count = wish.count ? wish.count : counts[inTurn(f.name + "count", int(std::size(counts)), number)];
    if (reference.cost && !wish.count) count = std::min(count, std::max(2, 100000 / reference.cost(dims)));
}

void Case::place(int operand, const Wish& wish, int form)
{
    const Operand& o = f.operands[size_t(operand)];
    Placed& p = placed[size_t(operand)];
    if (o.byValue()) return;
    p.elemSize = o.integer ? 4 : f.elemSize;
    p.objects = o.array ? count : 1;
    p.rows = o.scratch ? 1 : o.storedRows(dims);
    p.columns = o.scratch ? product(o.extents, dims) : o.storedColumns(dims);

    Form shape = forms[form];
    if (o.dense || o.letter == 'c') shape = o.dense || random.chance(60) ? forms[0] : forms[8 + random.below(2)];
    if ((o.destination && shape.trait == sliding) || (wish.plain && shape.trait == huge)) shape.trait = none;
    if (wish.plain) shape.paged = 0;

    // Distances, from the innermost dimension outwards.
    const auto extent = [&](char c) { return c == 'k' ? p.objects : c == 'r' ? p.rows : p.columns; };
    const auto stride = [&](char c) -> int& { return c == 'k' ? p.stride0 : c == 'r' ? p.stride1 : p.stride2; };
    int64_t distance = int64_t(shape.unit) * p.elemSize, blocks = 1;
    int64_t block = 0;
    for (int level = 0; level < 3; ++level) {
        const char c = shape.order[2 - level];
        if (shape.paged && level >= shape.paged) {
            if (level == shape.paged) block = distance - (shape.unit - 1) * p.elemSize, distance = 2 * pageSize;
            blocks *= extent(c);
        }
        if (shape.trait == huge && level == 2) {
            distance = std::max(distance, (int64_t(1) << 31) - 8 * random.between(1, 1000));
            blocks = extent(c);
        }
        stride(c) = int(distance);
        distance *= extent(c);
        if (shape.gaps && !(shape.paged && level >= shape.paged)) distance += random.between(0, 3) * p.elemSize;
    }
    if (shape.paged && (block > pageSize || blocks > 512)) return place(operand, wish, shape.order[2] == 'c' ? 1 : 14);
    if (shape.trait == huge && distance > hugeSpan) return place(operand, wish, shape.order[2] == 'c' ? 1 : 14);
    if (shape.trait == sliding) p.stride0 = p.elemSize, p.overlaps = true;
    if (shape.paged) { // gaps behind the last run do not belong to the block
        block = p.elemSize;
        for (int level = 0; level < shape.paged; ++level)
            block += int64_t(extent(shape.order[2 - level]) - 1) * stride(shape.order[2 - level]);
    }
    const int64_t span = int64_t(p.objects - 1) * p.stride0 + int64_t(p.rows - 1) * p.stride1 +
                         int64_t(p.columns - 1) * p.stride2 + p.elemSize;

    // Against the inaccessible memory behind or before, or at any multiple of the element size.
    p.arena = shape.paged ? &pagedArena(operand) : shape.trait == huge ? &hugeArena(operand) : &flatArena(operand);
    const int where = inTurn(f.name + o.name + "where", 6, number);
    const int64_t room = shape.paged ? pageSize - block : p.arena->end - p.arena->begin - span;
    const int64_t middle = std::min<int64_t>(room, (shape.paged ? 0 : pageSize) + random.below(16) * p.elemSize);
    p.begin = p.arena->begin + (shape.trait == huge || where > 3 ? middle : where < 3 ? room : 0);
    p.end = p.begin + span;
    if (shape.trait == huge) {
        const int64_t outer = stride(shape.order[0]), inner = span - (blocks - 1) * outer;
        for (int64_t i = 0; i < blocks; ++i)
            p.windows.push_back({p.begin + i * outer - margin / 4, size_t(inner + margin / 2)});
    } else if (shape.paged)
        for (int64_t i = 0; i < blocks; ++i) p.windows.push_back({p.arena->begin + i * 2 * pageSize, size_t(pageSize)});
    else {
        char* const low = std::max(p.arena->begin, p.begin - margin);
        p.windows.push_back({low, size_t(std::min(p.arena->end, p.end + margin) - low)});
    }

    // A list may hold its objects, or its elements, in any order.
    p.pointer = p.begin;
    if (o.list()) {
        static const int shifts[] = {0, 1, 3, 16, 1000, 123456, INT_MAX / 8}; // in a team the sum of shift and slice wraps
        p.shift = shifts[random.below(wish.plain ? 6 : 7)] * p.elemSize;
        const int entries = o.layout == 'L' ? p.objects : p.rows * p.columns;
        std::vector<int> slots = random.permutation(entries);
        if (random.chance(30)) std::iota(slots.begin(), slots.end(), 0);
        for (int i = 0; i < entries; ++i) {
            const int s = slots[size_t(i)];
            const ptrdiff_t offset = o.layout == 'L'
                                         ? ptrdiff_t(s) * p.stride0
                                         : ptrdiff_t(s / p.columns) * p.stride1 + ptrdiff_t(s % p.columns) * p.stride2;
            p.list.push_back(p.begin + offset);
        }
        if (!o.destination && entries > 1 && random.chance(5)) p.list[1] = p.list[0], p.overlaps = true;
    }

    // Distances that play no part may be anything that passes the checks.
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& a = f.arguments[i];
        if (a.operand != operand || wish.plain) continue;
        const bool deferred = f.sequence.find('b') != std::string::npos;
        const bool unchecked = a.role == Role::stride0 ? deferred || !f.tested(a) : !f.tested(a);
        static const int odd[] = {0, -1, 3, -4, -8, INT_MIN, INT_MAX, 6};
        const int odder = random.pick(odd), even = (1 + random.below(1 << 20)) * p.elemSize;
        if (a.role == Role::stride0 && count == 1 && random.chance(50)) p.stride0 = unchecked ? odder : even;
        if (a.role == Role::stride0 && count > 1 && !f.tested(a) && random.chance(50)) { // backwards, or all the same
            if (random.chance(50))
                for (char*& entry : p.list) entry += ptrdiff_t(count - 1) * p.stride0;
            else p.stride0 = 0, p.overlaps = true;
            p.stride0 = -p.stride0;
        }
        if (a.role == Role::stride1 && p.rows == 1 && random.chance(20)) p.stride1 = even;
        if (a.role == Role::shift && unchecked && random.chance(50)) p.shift = odder;
    }
    for (char*& entry : p.list) entry -= p.shift;

    if (!p.list.empty()) {
        Arena& arena = flatArena(lists + operand);
        char* const at = random.chance(70) ? arena.end - p.list.size() * sizeof(char*) : arena.begin;
        std::memcpy(at, p.list.data(), p.list.size() * sizeof(char*));
        p.listAt = reinterpret_cast<char**>(at);
    }
}

void Case::arguments()
{
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        const Placed* p = a.operand < 0 ? nullptr : &placed[size_t(a.operand)];
        values[i].p = nullptr;
        switch (a.role) {
        case Role::pointer: values[i].p = p->listAt ? static_cast<void*>(p->listAt) : p->pointer; break;
        case Role::stride0: values[i].i = p->stride0; break;
        case Role::stride1: values[i].i = p->stride1; break;
        case Role::stride2: values[i].i = p->stride2; break;
        case Role::shift: values[i].i = p->shift; break;
        case Role::size: values[i].i = f.size(a.name, dims); break;
        case Role::count: values[i].i = count; break;
        case Role::constant: break; // data
        }
    }
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
    Object<T> o{f, dims, k, f.contiguous(values), {}, {}, {}, {}, &bufferUsed};
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& operand = f.operands[i];
        if (operand.scratch) continue;
        if (operand.integer) o.tables.push_back(view<int>(int(i), k, shadow));
        else (operand.destination ? o.destinations : o.sources).push_back(view<T>(int(i), k, shadow));
    }
    if (!tolerance.empty())
        for (const Operand& operand : f.operands)
            if (operand.destination && !operand.integer) {
                const int rows = operand.rows(dims), columns = operand.columns(dims);
                o.tolerance.base = reinterpret_cast<char*>(&tolerance[size_t(k * rows * columns)]);
                o.tolerance.row = columns * ptrdiff_t(sizeof(double)), o.tolerance.column = sizeof(double);
                break;
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
    if (reference.tolerant)
        for (size_t i = 0; i < f.operands.size() && tolerance.empty(); ++i)
            if (f.operands[i].destination && !f.operands[i].integer)
                tolerance.assign(size_t(count * placed[i].rows * placed[i].columns), 0);
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

std::string Case::compare(bool bufferIsFree)
{
    return f.elemSize == 4 ? compareAs<float>(bufferIsFree) : compareAs<double>(bufferIsFree);
}

template <class T> std::string Case::compareAs(bool bufferIsFree)
{
    const auto equal = [&] {
        for (const Placed& p : placed)
            for (auto [begin, size] : p.windows)
                if (std::memcmp(begin, begin + p.arena->toShadow, size) != 0) return false;
        return true;
    };
    for (size_t i = 0; i < placed.size(); ++i)
        if (!placed[i].list.empty() && std::memcmp(placed[i].listAt, placed[i].list.data(), placed[i].list.size() * 8) != 0)
            return "the list of " + f.operands[i].name + " changed";
    if (equal()) return "";

    // What is not fixed to the bit: which NaN, results within a tolerance, perhaps the sign of a zero, scratch.
    const bool zerosAlike = reference.zerosAlike && reference.zerosAlike(dims);
    int destination = 0;
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        const Placed& p = placed[i];
        if (o.scratch && bufferUsed && bufferIsFree)
            std::memcpy(p.begin + p.arena->toShadow, p.begin, size_t(p.end - p.begin));
        if (!o.destination || o.integer) continue;
        for (int k = 0; k < p.objects; ++k) {
            const View<T> got = view<T>(int(i), k, false), want = view<T>(int(i), k, true);
            for (int r = 0; r < o.rows(dims); ++r)
                for (int c = 0; c < o.columns(dims); ++c) {
                    T& a = got(r, c);
                    T& b = want(r, c);
                    if (sameBits(a, b)) continue;
                    if (zerosAlike && a == 0 && b == 0) {
                        b = a;
                        continue;
                    }
                    const double slack = destination == 0 && !tolerance.empty()
                                             ? tolerance[size_t((k * o.rows(dims) + r) * o.columns(dims) + c)]
                                             : 0;
                    const bool good = f.movesData() ? false
                                      : std::isnan(a) || std::isnan(b)
                                          ? (std::isnan(a) && std::isnan(b)) || slack == INFINITY
                                          : std::fabs(double(a) - double(b)) <= slack && slack > 0;
                    if (!good)
                        return format("%s(k=%d, i=%d, j=%d) is %.17g = %a, expected %.17g = %a%s", o.name.c_str(), k, r, c,
                                      double(a), double(a), double(b), double(b),
                                      slack > 0 ? format(" within %g", slack).c_str() : "");
                    b = a;
                }
        }
        ++destination;
    }
    for (size_t i = 0; i < placed.size(); ++i)
        for (auto [begin, size] : placed[i].windows)
            for (size_t b = 0; b < size; ++b)
                if (begin[b] != begin[ptrdiff_t(b) + placed[i].arena->toShadow])
                    return format("byte %td of %s changed (0 is its first, %td behind its last), though it is not a result",
                                  begin + b - placed[i].begin, f.operands[i].name.c_str(), placed[i].end - placed[i].begin);
    return "";
}

std::vector<char> Case::results() const
{
    std::vector<char> all;
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        if (!o.destination) continue;
        for (int k = 0; k < placed[i].objects; ++k)
            for (int r = 0; r < o.rows(dims); ++r)
                for (int c = 0; c < o.columns(dims); ++c) {
                    const auto append = [&](auto value) {
                        if (value != value && !f.movesData()) value = decltype(value)(NAN);
                        const char* bytes = reinterpret_cast<const char*>(&value);
                        all.insert(all.end(), bytes, bytes + sizeof value);
                    };
                    if (o.integer) append(view<int>(int(i), k, false)(r, c));
                    else if (f.elemSize == 4) append(view<float>(int(i), k, false)(r, c));
                    else append(view<double>(int(i), k, false)(r, c));
                }
    }
    return all;
}

std::string Case::compareWithSingle(const Level& level)
{
    return f.elemSize == 4 ? compareWithSingleAs<float>(level) : compareWithSingleAs<double>(level);
}

// Where the reference is not the last word, results must at least be the same in all forms: those of the function for
// one object, on packed copies.
template <class T> std::string Case::compareWithSingleAs(const Level& level)
{
    std::string shape = f.shape;
    shape.erase(std::remove(shape.begin(), shape.end(), 'a'), shape.end());
    const Function& single = functions().at("kesl" + f.operation + "_" + shape + (f.elemSize == 4 ? "_32f" : "_64f"));
    if (inPlace) return ""; // the sources are gone
    for (int k = 0; k < count; ++k) {
        std::vector<std::vector<T>> packed(f.operands.size());
        std::vector<Value> args(single.arguments.size());
        for (size_t i = 0; i < f.operands.size(); ++i) {
            const Operand& o = f.operands[i];
            packed[i].resize(size_t(o.scratch ? product(o.extents, dims) : o.rows(dims) * o.columns(dims)));
            for (int r = 0; r < o.rows(dims) && !o.scratch; ++r)
                for (int c = 0; c < o.columns(dims); ++c)
                    packed[i][size_t(o.letter == 't' ? c * o.rows(dims) + r : r * o.columns(dims) + c)] =
                        view<T>(int(i), k, o.destination)(r, c);
        }
        for (size_t i = 0; i < args.size(); ++i) {
            const Argument& a = single.arguments[i];
            const int columns = a.operand < 0 ? 0 : f.operands[size_t(a.operand)].storedColumns(dims);
            if (a.role == Role::pointer) args[i].p = packed[size_t(a.operand)].data();
            if (a.role == Role::stride1) args[i].i = columns * f.elemSize;
            if (a.role == Role::stride2) args[i].i = f.elemSize;
            if (a.role == Role::size) args[i].i = f.size(a.name, dims);
            if (a.role == Role::constant) args[i] = values[size_t(f.at(a.name))];
        }
        if (call(single, find(level, single.name), args) != Ok) return ""; // and the array call ended here, too
        for (size_t i = 0; i < f.operands.size(); ++i) {
            const Operand& o = f.operands[i];
            for (int r = 0; r < o.rows(dims) && o.destination; ++r)
                for (int c = 0; c < o.columns(dims); ++c) {
                    const T a = view<T>(int(i), k, false)(r, c), b = packed[i][size_t(r * o.columns(dims) + c)];
                    if (!sameBits(a, b) && !(std::isnan(a) && std::isnan(b)))
                        return format("%s(k=%d, i=%d, j=%d) is %a, but %a by %s", o.name.c_str(), k, r, c, double(a),
                                      double(b), single.name.c_str());
                }
        }
    }
    return "";
}

std::string Case::source(const std::string& problem) const
{
    std::string text = "\n/* " + name() + ": " + problem + " */\n";
    std::vector<std::string> data; // names of the storage
    for (size_t i = 0; i < placed.size(); ++i) {
        const Placed& p = placed[i];
        const Operand& o = f.operands[i];
        data.push_back(o.list() ? o.name + "Data" : o.name);
        if (o.byValue()) continue;
        const std::string type = o.integer ? "int" : f.type();
        const ptrdiff_t elements = (p.end - p.begin) / p.elemSize;
        const bool input = !o.destination && !o.scratch;
        for (size_t other = 0; other < i; ++other)
            if (placed[other].begin == p.begin) data[i] = data[other]; // in place
        if (data[i] == (o.list() ? o.name + "Data" : o.name)) {
            text += "static " + type + " " + data[i] + format("[%td]", elements) + (input ? " = {" : "");
            std::set<ptrdiff_t> offsets;
            for (int k = 0; k < p.objects && input; ++k)
                for (int r = 0; r < p.rows; ++r)
                    for (int column = 0; column < p.columns; ++column) {
                        const bool t = o.letter == 't';
                        const char* at =
                            reinterpret_cast<char*>(&view<char>(int(i), k, false)(t ? column : r, t ? r : column));
                        offsets.insert((at - p.begin) / p.elemSize);
                    }
            ptrdiff_t next = 0;
            for (ptrdiff_t e : offsets) {
                const char* at = p.begin + e * p.elemSize;
                const double value = o.integer         ? *reinterpret_cast<const int*>(at)
                                     : f.elemSize == 4 ? double(*reinterpret_cast<const float*>(at))
                                                       : *reinterpret_cast<const double*>(at);
                if (offsets.size() > 20000) {
                    text += "0 /* too many to print */";
                    break;
                }
                if (e != next) text += format("[%td] = ", e);
                text += std::isnan(value)   ? "NAN, "
                        : std::isinf(value) ? (value > 0 ? "INFINITY, " : "-INFINITY, ")
                        : o.integer         ? format("%d, ", int(value))
                                            : format("%a, ", value);
                next = e + 1;
            }
            text += input ? "};\n" : ";\n";
        }
        if (!o.list()) continue;
        text += "static " + type + " *" + o.name + "[] = {";
        for (char* entry : p.list) text += "(void *)((char *)" + data[i] + format(" + %td), ", entry - p.begin);
        text += "};\n";
    }
    text += "int status = " + f.name + "(";
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        if (i) text += ", ";
        if (a.role == Role::pointer) {
            const Operand& o = f.operands[size_t(a.operand)];
            text += (o.list() ? (o.destination ? "" : format("(const %s *const *)", f.type())) + o.name
                              : data[size_t(a.operand)]);
        } else if (a.role == Role::constant) text += format("%a", f.elemSize == 4 ? double(values[i].f) : values[i].d);
        else text += std::to_string(values[i].i);
    }
    return text + ");\n";
}
