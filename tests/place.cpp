// Where the operands of a case lie: the ways in which a program could place them, and some that nobody would.
#include "case.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
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
bool isNear() { return std::getenv("KESLMX_TEST_NEAR") != nullptr; } // no such distances: not every tool has room for them

constexpr int margin = 1024; // bytes that are compared on both sides of an operand
} // namespace

void Case::placeAll(const Wish& wish)
{
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
    if ((o.destination && shape.trait == sliding) || ((wish.plain || isNear()) && shape.trait == huge)) shape.trait = none;
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
        static const int shifts[] = {0, 1, 3, 16, 1000, 123456, INT_MAX / 8};
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

Case::~Case()
{
    for (const Placed& p : placed) // what lies far apart takes a page for each piece
        if (p.arena && p.arena->end - p.arena->begin >= hugeSpan)
            for (auto [begin, size] : p.windows) {
                char* const page = reinterpret_cast<char*>(size_t(begin) & ~size_t(pageSize - 1));
                for (char* at : {page, page + p.arena->toShadow}) madvise(at, size_t(begin + size - page), MADV_DONTNEED);
            }
}
