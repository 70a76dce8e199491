#pragma once
// What a family has to give for its tests: a plain reference that treats one object, and what is special about its
// data.
//
//     struct Sum {
//         template <class T> Outcome operator()(const Object<T>& o) const { ... }   // fills o.destination()
//         // all that follows is optional
//         static bool inPlace(const Function&, const Dims&, int source)         dst may be the storage of that source
//         template <class T> void inputs(const Object<T>&, Random&) const       sources as this family needs them
//         template <class T> void edges(const Object<T>&, Random&) const        sources where something turns
//         template <class T> void fail(const Object<T>&, Random&) const         sources that make the object fail
//         static double cost(const Dims&)                                       of an object, where it is dear
//         static bool zerosAlike(const Dims&)                                   a zero may have either sign
//         static bool scratchAtWill(const Dims&)                                bodies without scratch are allowed
//     };
//     const Register sum("Add", "mm mama", Sum());
//
// Any file of reference/ that registers one is compiled in; the kit finds it by operation and shape.
#include "random.h"
#include "table.h"

#include <cstddef>
#include <functional>

// How a reference leaves an object. After a status other than Ok the following objects are not treated; a family may
// say otherwise.
struct Outcome {
    int status;
    bool stops;
    Outcome(int s) : status(s), stops(s != Ok) {}
    Outcome(int s, bool stop) : status(s), stops(stop) {}
};

// One operand of one object, logically: a t operand is transposed already, a constant has the same value everywhere.
template <class T> struct View {
    char* base = nullptr;
    char* const* list = nullptr; // of elements, in the P layout
    ptrdiff_t row = 0, column = 0;
    int listRow = 0, listColumn = 0;
    ptrdiff_t offset = 0;

    T& operator()(int i, int j) const
    {
        char* p = list ? list[i * listRow + j * listColumn] + offset : base + i * row + j * column;
        return *reinterpret_cast<T*>(p);
    }
    T& operator()(int j) const { return (*this)(0, j); }
};

template <class T> struct Object {
    const Function& f;
    const Dims& dims;
    int k;                                      // its number in the call
    bool contiguous;                            // every stride2 is the element size
    std::vector<View<T>> sources, destinations; // constants are sources; both in the order of Function::operands
    std::vector<View<int>> tables;
    bool* buffer = nullptr; // to be set where the family uses the scratch of the caller, or may do so

    const View<T>& source(int i) const { return sources[size_t(i)]; }
    const View<T>& destination(int i = 0) const { return destinations[size_t(i)]; }
};

// The same for one element type.
template <class T> struct Hooks {
    std::function<Outcome(const Object<T>&)> treat;
    std::function<void(const Object<T>&, Random&)> inputs, edges, fail;
};

struct Reference {
    Hooks<float> single;
    Hooks<double> twofold;
    std::function<bool(const Function&, const Dims&, int)> inPlace;
    double (*cost)(const Dims&) = nullptr; // of one object, in element operations, where that is far from its size
    bool (*zerosAlike)(const Dims&) = nullptr;
    bool (*scratchAtWill)(const Dims&) = nullptr;

    template <class T> const Hooks<T>& of() const
    {
        if constexpr (sizeof(T) == 4) return single;
        else return twofold;
    }
};
const Reference* findReference(const Function&); // null if there is none

struct Register {
    template <class Family> Register(const char* operation, const char* shapes, Family family)
    {
        Reference r;
        hooks(r.single, family), hooks(r.twofold, family);
        if constexpr (requires { Family::inPlace; }) r.inPlace = Family::inPlace;
        if constexpr (requires { Family::cost; }) r.cost = Family::cost;
        if constexpr (requires { Family::zerosAlike; }) r.zerosAlike = Family::zerosAlike;
        if constexpr (requires { Family::scratchAtWill; }) r.scratchAtWill = Family::scratchAtWill;
        add(operation, shapes, r);
    }

private:
    template <class T, class Family> static void hooks(Hooks<T>& h, Family family)
    {
        h.treat = family;
        Random* random = nullptr;
        const Object<T>* o = nullptr;
        if constexpr (requires { family.inputs(*o, *random); })
            h.inputs = [family](const Object<T>& object, Random& r) { family.inputs(object, r); };
        if constexpr (requires { family.edges(*o, *random); })
            h.edges = [family](const Object<T>& object, Random& r) { family.edges(object, r); };
        if constexpr (requires { family.fail(*o, *random); })
            h.fail = [family](const Object<T>& object, Random& r) { family.fail(object, r); };
    }
    static void add(const char* operation, const char* shapes, const Reference&);
};
