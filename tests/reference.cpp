#include "reference.h"

namespace {
struct Entry {
    std::string operation, shapes;
    Reference reference;
};
std::vector<Entry>& entries() // filled while the references register themselves
{
    static std::vector<Entry> list;
    return list;
}
} // namespace

void Register::add(const char* operation, const char* shapes, const Reference& r)
{
    entries().push_back({operation, shapes, r});
}

const Reference* findReference(const Function& f)
{
    for (const Entry& e : entries())
        if (e.operation == f.operation &&
            (e.shapes.empty() || (' ' + e.shapes + ' ').find(' ' + f.shape + ' ') != std::string::npos))
            return &e.reference;
    return nullptr;
}
