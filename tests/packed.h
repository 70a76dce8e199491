#pragma once
// A call by name on packed data.
#include "library.h"

#include <stdexcept>

template <class T> struct Packed {
    int status;
    std::vector<std::vector<T>> results; // of each destination: its objects, each by rows
    std::vector<T> scratch;
};

constexpr int mark = 77; // what results and scratch hold before the call

// Sources hold their objects, each by rows. gap: the distance of the elements of a row, in elements.
template <class T> Packed<T> callPacked(const Level& level, const std::string& name, const Dims& dims,
                                        const std::vector<std::vector<T>>& sources, int count = 1, int gap = 1)
{
    const Function& f = functions().at(name);
    const int size = sizeof(T);
    std::vector<std::vector<T>> storage;
    std::vector<std::vector<T*>> lists(f.operands.size());
    std::vector<Value> values(f.arguments.size());
    const auto step = [&](const Operand& o) { return o.dense ? 1 : gap; };
    const auto elements = [&](const Operand& o) {
        return o.scratch ? product(o.extents, dims) : o.storedRows(dims) * o.storedColumns(dims);
    };
    size_t next = 0;
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        const int objects = o.array ? count : 1, each = elements(o), distance = step(o);
        std::vector<T>& s = storage.emplace_back(size_t(objects * each * distance), T(mark));
        if (!o.destination && !o.scratch) {
            const std::vector<T>& source = sources.at(next++);
            for (size_t k = 0; k < source.size(); ++k) s.at(k * size_t(distance)) = source[k];
        }
        for (int k = 0; k < (o.layout == 'L' ? objects : each); ++k)
            lists[i].push_back(&s[size_t(k * distance * (o.layout == 'L' ? each : 1))]);
    }
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        values[i].p = nullptr;
        if (a.role == Role::size) values[i].i = f.size(a.name, dims);
        if (a.role == Role::count) values[i].i = count;
        if (a.operand < 0) continue;
        const Operand& o = f.operands[size_t(a.operand)];
        const int distance = step(o) * size;
        if (a.role == Role::stride0) values[i].i = elements(o) * distance;
        if (a.role == Role::stride1) values[i].i = o.storedColumns(dims) * distance;
        if (a.role == Role::stride2) values[i].i = distance;
        if (a.role == Role::pointer)
            values[i].p = o.list() ? static_cast<void*>(lists[size_t(a.operand)].data()) : storage[size_t(a.operand)].data();
    }
    void* address = find(level, name);
    if (!address) throw std::runtime_error(name + " is not exported");
    setThreads({1});
    Packed<T> result;
    result.status = call(f, address, values);
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        if (o.scratch) result.scratch = storage[i];
        if (!o.destination) continue;
        std::vector<T>& r = result.results.emplace_back();
        for (size_t k = 0; k < storage[i].size(); k += size_t(step(o))) r.push_back(storage[i][k]);
    }
    return result;
}

// The members of a family: the layout, and a 2 for rows with gaps.
struct Form {
    std::string shape, layout;
    int gap() const { return layout.find('2') == std::string::npos ? 1 : 2; }
    template <class T> std::string name(const std::string& operation) const
    {
        const std::string suffix = layout.substr(0, layout.find('2'));
        return "kesl" + operation + "_" + shape + (sizeof(T) == 4 ? "_32f" : "_64f") + (suffix.empty() ? "" : "_") + suffix;
    }
    bool array() const { return shape.find('a') != std::string::npos; }
};
inline const Form squareForms[] = {{"m", ""},   {"m", "2"},  {"m", "P"},   {"ma", ""},
                                   {"ma", "2"}, {"ma", "L"}, {"ma", "L2"}, {"ma", "P"}};
