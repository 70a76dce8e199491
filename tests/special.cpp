#include "special.h"

#include <algorithm>

namespace {
std::vector<Special*>& list()
{
    static std::vector<Special*> all;
    return all;
}
} // namespace

const std::vector<Special*>& specials() { return list(); }

Special::Special(const char* family, const char* what, std::function<void(const Level&)> body)
    : name(std::string(family) + "_" + what), run(std::move(body))
{
    std::replace(name.begin(), name.end(), ' ', '_');
    list().push_back(this);
}

int statusOf(const Level& level, const char* function, std::initializer_list<std::pair<const char*, int>> others)
{
    const Function& f = functions().at(function);
    std::vector<Value> values = goodArguments(f);
    for (auto [name, value] : others) {
        Value& v = values.at(size_t(f.at(name)));
        v.p = nullptr, v.i = value;
    }
    int status = PassesChecks;
    void* address = find(level, function);
    if (!survives([&] { status = call(f, address, values); })) return PassesChecks;
    return status;
}
