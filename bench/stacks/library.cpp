// The library's functions, called with arguments that are made at run time.
#include "problem.h"

#include <kesl.h>
#include <map>

namespace bench::stacks {
namespace {

// Sizes, strides and addresses alike are passed as integers of their width.
using Call = std::ptrdiff_t (*)(const std::ptrdiff_t* arguments);
template <auto function, class... A> std::ptrdiff_t callWith(const std::ptrdiff_t* arguments)
{
    const auto call = [&]<std::size_t... i>(std::index_sequence<i...>) { return function((A)(arguments[i])...); };
    return call(std::index_sequence_for<A...>{});
}
template <auto function, class... A> constexpr Call callOf(std::ptrdiff_t (*)(A...)) { return callWith<function, A...>; }

#define KESL_CALLS(name)                                                                                                    \
    {                                                                                                                       \
        #name, { callOf<kesl_##name##_32f>(kesl_##name##_32f), callOf<kesl_##name##_64f>(kesl_##name##_64f) }               \
    }
const std::map<std::string, std::pair<Call, Call>> calls = {
    KESL_CALLS(matmul),  KESL_CALLS(vecdot),   KESL_CALLS(norm),     KESL_CALLS(cross),
    KESL_CALLS(trace),   KESL_CALLS(det),      KESL_CALLS(inv),      KESL_CALLS(solve),
    KESL_CALLS(lu),      KESL_CALLS(lu_solve), KESL_CALLS(cholesky), KESL_CALLS(cholesky_solve),
    KESL_CALLS(qr),      KESL_CALLS(lstsq),    KESL_CALLS(eigvalsh), KESL_CALLS(eigh),
    KESL_CALLS(eigvals), KESL_CALLS(eig),      KESL_CALLS(svdvals),  KESL_CALLS(svd)};

} // namespace

std::function<void(Range)> libraryOn(const Problem& p)
{
    const Function& f = *p.function;
    std::vector<std::ptrdiff_t> arguments(p.sizes);
    const std::size_t countAt = arguments.size();
    arguments.push_back(0);
    struct Pointer { // where it stands among the arguments, for object 0, and how far the objects are apart
        std::size_t at;
        std::ptrdiff_t address, stride;
    };
    std::vector<Pointer> pointers;
    const auto pass = [&](const char* address, std::ptrdiff_t stride) {
        pointers.push_back({arguments.size(), reinterpret_cast<std::ptrdiff_t>(address), address ? stride : 0});
        arguments.push_back(0);
    };
    for (std::size_t i = 0; i < p.arrays.size(); ++i) {
        const Array& a = p.arrays[i];
        const auto& operand = i < f.sources.size() ? f.sources[i] : f.destinations[i - f.sources.size()];
        pass(a.data, a.stride0);
        const std::ptrdiff_t strides[] = {a.stride0, a.stride1, a.stride2};
        arguments.insert(arguments.end(), strides, strides + operand.extents.size() + 1);
    }
    const auto info = std::make_shared<std::vector<int>>(std::size_t(p.count));
    pass(reinterpret_cast<const char*>(info->data()), sizeof(int));

    const auto& both = calls.at(f.name);
    const Call call = p.bytes == 4 ? both.first : both.second;
    return [=](Range range) mutable {
        arguments[countAt] = range.end - range.begin;
        for (const Pointer& pointer : pointers) arguments[pointer.at] = pointer.address + range.begin * pointer.stride;
        call(arguments.data());
        (void)info;
    };
}

} // namespace bench::stacks
