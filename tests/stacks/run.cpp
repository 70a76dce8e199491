#include "run.h"

#include "../memory.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <ffi.h>
#include <map>
#include <sstream>
#include <stdexcept>
#include <xmmintrin.h>

namespace {
std::atomic<int> threads = 1;
}
// Found before the companion's function, because the executable comes first.
extern "C" [[gnu::visibility("default")]] int ownGetNumThreads() { return threads; }

namespace stacks {
namespace {

constexpr char untouched = char(0xA5);
constexpr size_t slack = 512; // bytes around an operand that are watched

struct Place {
    char* data = nullptr; // of element (0, 0) of object 0
    std::ptrdiff_t strides[3] = {};
    char *begin = nullptr, *end = nullptr; // of what is watched
};

// Strides of a layout, and how far the elements reach below and above the first one.
struct Span {
    std::ptrdiff_t below = 0, above = 0;
};
Span lay(Place& place, const Layout& layout, const Values& v, std::ptrdiff_t count)
{
    const std::ptrdiff_t extents[3] = {count, v.rows, v.cols};
    std::ptrdiff_t step = v.bytes;
    Span span;
    for (int inner = 0; inner < 3; ++inner) {
        const int axis = layout.axes[inner];
        step += layout.gaps[inner] * v.bytes; // a gap behind what lies inside
        const std::ptrdiff_t stride = layout.backwards[axis] ? -step : step, last = stride * (extents[axis] - 1);
        place.strides[axis] = stride;
        span.below += std::min<std::ptrdiff_t>(last, 0), span.above += std::max<std::ptrdiff_t>(last, 0);
        step *= std::max<std::ptrdiff_t>(extents[axis], 1);
    }
    span.above += v.bytes;
    return span;
}

template <class F> void eachElement(const Place& place, const Values& v, std::ptrdiff_t count, F&& f)
{
    for (std::ptrdiff_t k = 0; k < count; ++k)
        for (int i = 0; i < v.rows; ++i)
            for (int j = 0; j < v.cols; ++j)
                f(place.data + k * place.strides[0] + i * place.strides[1] + j * place.strides[2],
                  ((k * v.rows + i) * v.cols + j) * v.bytes);
}

Place put(int arena, const Values& v, std::ptrdiff_t count, const Layout& layout, const Placement& placement)
{
    Place place;
    const Span span = lay(place, layout, v, count);
    const Arena& memory = flatArena(arena);
    if (span.above - span.below + std::ptrdiff_t(2 * slack) > memory.end - memory.begin)
        throw std::runtime_error("an operand larger than its arena");
    const std::ptrdiff_t shift = placement.shift * v.bytes;
    place.data = placement.atEnd ? memory.end - shift - span.above : memory.begin + shift - span.below;
    place.begin = std::max(memory.begin, place.data + span.below - slack);
    place.end = std::min(memory.end, place.data + span.above + slack);
    std::fill(place.begin, place.end, untouched);
    return place;
}

ffi_cif& interfaceOf(size_t arguments)
{
    struct Interface {
        ffi_cif cif;
        std::vector<ffi_type*> types;
    };
    static std::map<size_t, Interface> known; // pointers and sizes are passed alike
    Interface& interface = known[arguments];
    if (interface.types.empty()) {
        interface.types.assign(arguments, &ffi_type_sint64);
        ffi_prep_cif(&interface.cif, FFI_DEFAULT_ABI, unsigned(arguments), &ffi_type_sint64, interface.types.data());
    }
    return interface.cif;
}

void* addressOf(const Level& level, const Function& f, char type)
{
    static std::map<std::string, void*> known;
    const std::string name = "kesl_" + f.name + (type == 'f' ? "_32f" : "_64f");
    void*& address = known[level.name + name];
    if (!address) address = find(level, name);
    if (!address) throw std::runtime_error(name + " is not in " + level.path);
    return address;
}

std::ptrdiff_t invoke(void* address, const std::vector<std::ptrdiff_t>& arguments)
{
    void* pointers[64];
    for (size_t i = 0; i < arguments.size(); ++i) pointers[i] = const_cast<std::ptrdiff_t*>(&arguments[i]);
    ffi_arg status = 0;
    ffi_call(&interfaceOf(arguments.size()), FFI_FN(address), &status, pointers);
    return std::ptrdiff_t(status);
}

template <class T> bool sameElement(T x, T y) { return std::memcmp(&x, &y, sizeof(T)) == 0 || (x != x && y != y); }

} // namespace

const Layout packed{"packed", {2, 1, 0}}, columns{"columns", {1, 2, 0}}, planes{"planes", {0, 2, 1}};
const std::vector<Layout> layouts = {
    packed,
    columns,
    planes,
    {"planes, column-major", {0, 1, 2}},
    {"objects between rows and elements", {2, 0, 1}},
    {"objects between columns and elements", {1, 0, 2}},
    {"gaps behind rows", {2, 1, 0}, {0, 1, 0}},
    {"gaps behind objects", {2, 1, 0}, {0, 0, 1}},
    {"gaps behind columns", {1, 2, 0}, {0, 2, 3}},
    {"every second element", {2, 1, 0}, {1, 0, 0}},
    {"planes with gaps", {0, 2, 1}, {2, 1, 1}},
    {"objects backwards", {2, 1, 0}, {0, 0, 0}, {true, false, false}},
    {"rows backwards", {2, 1, 0}, {0, 0, 0}, {false, true, false}},
    {"columns backwards", {1, 2, 0}, {0, 0, 0}, {false, false, true}},
    {"planes backwards", {0, 2, 1}, {0, 0, 0}, {true, true, true}},
};

const std::vector<Level>& levels()
{
    const char* others = std::getenv("KESL_LIBRARIES");
    static const std::vector<Level> all = levelsOf(others ? others : KESL_LIBRARIES);
    return all;
}

void setThreads(int n) { threads = n; }

Values Problem::blank(const Operand& o, std::ptrdiff_t objects) const
{
    const int element = o.integers ? int(sizeof(int)) : bytes();
    return {objects, rows(*function, sizes, o), cols(*function, sizes, o), element, o.integers};
}

Problem Problem::object(std::ptrdiff_t k, std::ptrdiff_t objects) const
{
    Problem part{function, type, sizes, objects, {}};
    for (const Values& all : sources) {
        Values one(objects, all.rows, all.cols, all.bytes, all.integers);
        std::memcpy(one.data.data(), all.data.data() + size_t(k * all.elements() * all.bytes), one.data.size());
        part.sources.push_back(one);
    }
    return part;
}

std::string describe(const Problem& p)
{
    std::ostringstream text;
    text << "kesl_" << p.function->name << (p.type == 'f' ? "_32f" : "_64f");
    for (size_t i = 0; i < p.sizes.size(); ++i) text << ' ' << p.function->sizes[i] << '=' << p.sizes[i];
    text << " count=" << p.count;
    return text.str();
}

std::ptrdiff_t callWith(const Level& level, const Function& f, char type, const std::vector<std::ptrdiff_t>& arguments)
{
    return invoke(addressOf(level, f, type), arguments);
}

Outcome run(const Level& level, const Problem& p, const Placement& placement)
{
    const Function& f = *p.function;
    const auto layoutOf = [&](size_t i) { return i < placement.layouts.size() ? placement.layouts[i] : packed; };
    const auto isShared = [&](size_t i, int axis) {
        return i < placement.shared.size() && (placement.shared[i] >> axis & 1) != 0;
    };
    const auto replaces = [&](size_t i) { return placement.inPlace >= 0 && i == size_t(placement.replacing); };
    std::vector<Place> places;
    for (size_t i = 0; i < f.sources.size(); ++i) {
        Place place = put(int(i), p.sources[i], isShared(i, 0) ? 1 : p.count, layoutOf(i), placement);
        for (int axis = 0; axis < 3; ++axis)
            if (isShared(i, axis)) place.strides[axis] = 0;
        eachElement(place, p.sources[i], p.count, [&](char* to, std::ptrdiff_t at) {
            std::memcpy(to, &p.sources[i].data[size_t(at)], size_t(p.sources[i].bytes));
        });
        places.push_back(place);
    }
    Outcome outcome;
    for (size_t i = 0; i < f.destinations.size(); ++i) {
        outcome.results.push_back(p.blank(f.destinations[i], p.count));
        const size_t index = f.sources.size() + i;
        places.push_back(replaces(i) ? places[size_t(placement.inPlace)]
                                     : put(int(index), outcome.results[i], p.count, layoutOf(index), placement));
    }
    Values info(placement.info ? p.count : 0, 1, 1, sizeof(int));
    const Place infoPlace = put(int(places.size()), info, info.count, packed, placement);

    // In the order of the prototype.
    std::vector<std::ptrdiff_t> arguments(p.sizes);
    arguments.push_back(p.count);
    const auto pass = [&](const Place& place, const Operand& o) {
        arguments.push_back(reinterpret_cast<std::ptrdiff_t>(place.data));
        for (size_t axis = 0; axis <= o.extents.size(); ++axis) arguments.push_back(place.strides[axis]);
    };
    for (size_t i = 0; i < places.size(); ++i)
        pass(places[i], i < f.sources.size() ? f.sources[i] : f.destinations[i - f.sources.size()]);
    arguments.push_back(placement.info ? reinterpret_cast<std::ptrdiff_t>(infoPlace.data) : 0);

    void* const address = addressOf(level, f, p.type);
    std::vector<Place> watched = places;
    watched.push_back(infoPlace);
    std::vector<std::vector<char>> before;
    for (const Place& place : watched) before.emplace_back(place.begin, place.end);
    const unsigned control = _mm_getcsr();
    const bool survived = survives([&] {
        _mm_setcsr(placement.control);
        outcome.status = invoke(address, arguments);
        outcome.control = _mm_getcsr();
        _mm_setcsr(control);
    });
    _mm_setcsr(control);
    if (!survived) {
        outcome.fault = "touches inaccessible memory";
        return outcome;
    }
    for (size_t i = 0; i < f.destinations.size(); ++i) {
        const size_t index = f.sources.size() + i;
        const size_t expected = replaces(i) ? size_t(placement.inPlace) : index;
        Values& v = outcome.results[i];
        eachElement(places[index], v, p.count, [&](char* from, std::ptrdiff_t at) {
            std::memcpy(&v.data[size_t(at)], from, size_t(v.bytes));
            std::memcpy(&before[expected][size_t(from - places[index].begin)], from, size_t(v.bytes));
        });
    }
    eachElement(infoPlace, info, info.count, [&](char* from, std::ptrdiff_t at) {
        outcome.info.push_back(*reinterpret_cast<int*>(from));
        std::memcpy(&info.data[size_t(at)], from, sizeof(int));
        std::memcpy(&before.back()[size_t(from - infoPlace.begin)], from, sizeof(int));
    });
    for (size_t i = 0; i < watched.size(); ++i) {
        const bool replaced = i >= f.sources.size() && replaces(i - f.sources.size()); // seen already
        if (!replaced && !std::equal(before[i].begin(), before[i].end(), watched[i].begin))
            outcome.fault = i + 1 == watched.size() ? "touches bytes around info"
                            : i < f.sources.size()  ? "changes a source or bytes around it"
                                                    : "touches bytes between or around the elements of a destination";
    }
    return outcome;
}

Outcome oneByOne(const Level& level, const Problem& p)
{
    Outcome all;
    for (const Operand& o : p.function->destinations) all.results.push_back(p.blank(o, p.count));
    for (std::ptrdiff_t k = 0; k < p.count; ++k) {
        const Outcome one = run(level, p.object(k));
        if (!one.fault.empty()) all.fault = one.fault;
        if (one.status < 0) all.fault = "status " + std::to_string(one.status);
        all.status += one.status;
        all.info.insert(all.info.end(), one.info.begin(), one.info.end());
        for (size_t i = 0; i < all.results.size(); ++i)
            std::copy(one.results[i].data.begin(), one.results[i].data.end(),
                      all.results[i].data.begin() + std::ptrdiff_t(one.results[i].data.size()) * k);
    }
    return all;
}

Outcome objectByObject(const Problem& p, const std::function<int(Problem&, Outcome&)>& solve)
{
    Outcome all;
    for (const Operand& o : p.function->destinations) all.results.push_back(p.blank(o, p.count));
    for (std::ptrdiff_t k = 0; k < p.count; ++k) {
        Problem one = p.object(k);
        Outcome o;
        for (const Operand& d : p.function->destinations) o.results.push_back(p.blank(d, 1));
        all.info.push_back(solve(one, o));
        all.status += all.info.back() != 0;
        if (o.results.empty()) all.results.clear();
        for (size_t i = 0; i < o.results.size(); ++i)
            std::copy(o.results[i].data.begin(), o.results[i].data.end(),
                      all.results[i].data.begin() + std::ptrdiff_t(o.results[i].data.size()) * k);
    }
    return all;
}

std::string difference(const Outcome& expected, const Outcome& actual)
{
    std::ostringstream text;
    if (!actual.fault.empty()) return actual.fault;
    if (actual.status != expected.status) text << "status " << actual.status << " instead of " << expected.status << "; ";
    if (!actual.info.empty() && actual.info != expected.info) text << "other infos; ";
    for (size_t d = 0; d < expected.results.size(); ++d) {
        const Values &e = expected.results[d], &a = actual.results[d];
        const auto compare = [&]<class T>(T) {
            for (std::ptrdiff_t k = 0; k < e.count; ++k)
                for (int i = 0; i < e.rows; ++i)
                    for (int j = 0; j < e.cols; ++j) {
                        const T x = e.at<T>(k, i, j), y = a.at<T>(k, i, j);
                        if (sameElement(x, y)) continue;
                        text.precision(17);
                        text << "destination " << d << ", object " << k << ", element " << i << ' ' << j << ": " << y
                             << " instead of " << x;
                        return;
                    }
        };
        if (e.integers) compare(int{});
        else if (e.bytes == 8) compare(double{});
        else compare(float{});
        if (text.tellp() > 0) break;
    }
    return text.str();
}

long cases(long usual)
{
    const char* effort = std::getenv("KESL_TEST_EFFORT");
    return std::max(1l, long(double(usual) * (effort ? std::atof(effort) : 100) / 100));
}

} // namespace stacks
