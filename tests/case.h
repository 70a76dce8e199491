#pragma once
// One call: sizes, where each operand lies and what it holds, the call itself, its expected results, the comparison.
#include "library.h"
#include "memory.h"
#include "reference.h"

#include <cstdio>

enum class Elements { any, contiguous, general }; // every stride2 the element size, or not

struct Wish {
    Dims dims;
    int count = 0; // 0: as the number of the case has it
    Elements elements = Elements::any;
    bool plain = false;                             // ordinary data and no tricks, as in large calls
    int failing = 25;                               // chance of objects that fail, per cent
    const uint8_t *bytes = nullptr, *end = nullptr; // what decides before chance does: a fuzzer's
};

struct Placed {
    Arena* arena = nullptr;
    char* pointer = nullptr; // of element 0 of object 0, where there is no list
    std::vector<char*> list;
    char** listAt = nullptr;
    int stride0 = 0, stride1 = 0, stride2 = 0, shift = 0;
    int objects = 1, rows = 1, columns = 1, elemSize = 4; // as stored
    bool overlaps = false;                                // objects, or elements, share storage
    char *begin = nullptr, *end = nullptr;                // from the first byte to the last
    std::vector<std::pair<char*, size_t>> windows;        // what is compared, around and between the elements
};

class Case {
public:
    Case(const Function&, const Reference&, int number, const Wish& = {});
    ~Case();
    Case(const Case&) = delete;

    const Function& f;
    const Reference& reference;
    const int number;
    Dims dims;
    int count = 1;
    std::vector<Value> values;
    std::vector<Placed> placed;
    bool inPlace = false;

    int run(const Level&);                                   // the call, from the same start every time
    std::string fault;                                       // what happened instead of an end of the call
    bool expect(int status, const std::vector<int>& slices); // runs the reference; whether this status is allowed
    bool usesBuffer() const { return bufferUsed; }           // as the reference has it
    std::string compare(bool bufferIsFree);                  // empty if memory is as expected
    std::vector<char> results() const;                       // all bytes that count, every NaN alike
    std::string source(const std::string& problem) const;    // as C, of a case that has not run yet
    std::string name() const;

private:
    void sizes(const Wish&);
    void placeAll(const Wish&);
    void place(int operand, const Wish&, int form);
    void arguments();
    void fill(const Wish&);
    template <class T> void fillElements(const Wish&);
    template <class T> Object<T> object(int k, bool shadow);
    template <class E> View<E> view(int operand, int k, bool shadow) const;
    template <class T> bool expectAs(int status, const std::vector<int>& slices);
    template <class T> std::string compareAs(bool bufferIsFree);

    Random random;
    bool bufferUsed = false, copied = false;
};

// The sizes of the slices that a team works on.
std::vector<int> slicesOf(int count, int threads);

// As printf.
template <class... Args> std::string format(const char* text, Args... args)
{
    char buffer[1000];
    snprintf(buffer, sizeof buffer, text, args...);
    return buffer;
}
