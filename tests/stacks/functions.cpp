#include "functions.h"

#include "../random.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace stacks {
namespace {

using enum Degree;
constexpr Failures never{}, nonFinite{true}, singular{true, true}, indefinite{true, false, true};

// "(n,n),i(n)": operands by their extents, i in front of those that hold integers.
std::vector<Operand> operandsOf(const std::string& text)
{
    std::vector<Operand> result;
    for (size_t i = 0; i < text.size(); i = text.find(')', i) + 2) {
        Operand operand;
        operand.integers = text[i] == 'i';
        const size_t begin = text.find('(', i) + 1;
        std::istringstream inside(text.substr(begin, text.find(')', i) - begin));
        for (std::string name; std::getline(inside, name, ',');) operand.extents.push_back(name);
        result.push_back(operand);
    }
    return result;
}

// Sizes as "m! >= n! k": ! marks those that have a limit.
Function row(const char* name, const char* sizes, const std::string& signature, Data data, std::vector<Degree> degrees,
             Failures failures)
{
    const size_t arrow = signature.find("->");
    Function f{name,
               {},
               operandsOf(signature.substr(0, arrow)),
               operandsOf(signature.substr(arrow + 2)),
               data,
               std::move(degrees),
               failures};
    std::istringstream words(sizes);
    for (std::string word; words >> word;) {
        if (word == ">=") {
            f.tall = true;
            continue;
        }
        f.sizes.push_back(word.substr(0, 1));
        f.small.push_back(word.ends_with('!'));
    }
    f.optional = f.name == "eig";
    return f;
}

} // namespace

// clang-format off
const std::vector<Function>& functions()
{
    static const std::vector<Function> all = {
        row("matmul",         "m k n",       "(m,k),(k,n)->(m,n)",            Data::any,       {one},             never),
        row("vecdot",         "n",           "(n),(n)->()",                   Data::any,       {one},             never),
        row("norm",           "n",           "(n)->()",                       Data::any,       {one},             never),
        row("cross",          "",            "(3),(3)->(3)",                  Data::any,       {one},             never),
        row("trace",          "n",           "(n,n)->()",                     Data::any,       {one},             never),
        row("det",            "n!",          "(n,n)->()",                     Data::any,       {order},           nonFinite),
        row("inv",            "n!",          "(n,n)->(n,n)",                  Data::regular,   {inverse},         singular),
        row("solve",          "n! k",        "(n,n),(n,k)->(n,k)",            Data::regular,   {inverse},         singular),
        row("lu",             "n!",          "(n,n)->(n,n),i(n)",             Data::any,       {upper, zero},     nonFinite),
        row("lu_solve",       "n! k",        "(n,n),i(n),(n,k)->(n,k)",       Data::factors,   {inverse},         singular),
        row("cholesky",       "n!",          "(n,n)->(n,n)",                  Data::definite,  {root},            indefinite),
        row("cholesky_solve", "n! k",        "(n,n),(n,k)->(n,k)",            Data::lower,     {inverseSquare},   singular),
        row("qr",             "m! >= n!",    "(m,n)->(m,n),(n,n)",            Data::any,       {zero, one},       nonFinite),
        row("lstsq",          "m! >= n! k",  "(m,n),(m,k)->(n,k)",            Data::regular,   {inverse},         singular),
        row("eigvalsh",       "n!",          "(n,n)->(n)",                    Data::symmetric, {one},             nonFinite),
        row("eigh",           "n!",          "(n,n)->(n),(n,n)",              Data::symmetric, {one, zero},       nonFinite),
        row("eigvals",        "n!",          "(n,n)->(n),(n)",                Data::any,       {one, one},        nonFinite),
        row("eig",            "n!",          "(n,n)->(n),(n),(n,n),(n,n)",    Data::any,       {one, one, zero, zero}, nonFinite),
        row("svdvals",        "m! n!",       "(m,n)->(min)",                  Data::any,       {one},             nonFinite),
        row("svd",            "m! n!",       "(m,n)->(m,min),(min),(min,n)",  Data::any,       {zero, one, zero}, nonFinite),
    };
    return all;
}
// clang-format on

const Function& function(const std::string& name)
{
    for (const Function& f : functions())
        if (f.name == name) return f;
    throw std::runtime_error("no function " + name);
}

int extent(const Function& f, const Sizes& sizes, const std::string& name)
{
    if (name == "min") return int(*std::min_element(sizes.begin(), sizes.end()));
    for (size_t i = 0; i < f.sizes.size(); ++i)
        if (f.sizes[i] == name) return int(sizes[i]);
    return std::stoi(name);
}

int rows(const Function& f, const Sizes& sizes, const Operand& o)
{
    return o.extents.empty() ? 1 : extent(f, sizes, o.extents[0]);
}
int cols(const Function& f, const Sizes& sizes, const Operand& o)
{
    return o.extents.size() < 2 ? 1 : extent(f, sizes, o.extents[1]);
}

std::vector<Sizes> shapes(const Function& f)
{
    if (f.sizes.empty()) return {{}};
    std::vector<Sizes> result;
    Random random(f.name, 1);
    for (int order : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 16, 17, 24, 32}) {
        Sizes sizes(f.sizes.size(), order);
        for (size_t i = 1; i < sizes.size(); ++i) sizes[i] = random.between(1, std::min(order + 3, 32));
        if (f.tall) sizes[0] = std::min<std::ptrdiff_t>(order + random.below(4), 32), sizes[1] = order;
        else if (f.name.starts_with("svd") && random.chance(50)) sizes[1] = order; // square ones too
        result.push_back(sizes);
    }
    if (f.sizes.size() == 3) result.push_back({1, 1, 5}); // one row, which is a column as well, beside a wide one
    return result;
}

std::vector<Argument> arguments(const Function& f)
{
    std::vector<Argument> result;
    for (size_t i = 0; i < f.sizes.size(); ++i) result.push_back({Argument::size, int(i)});
    result.push_back({Argument::count, 0});
    int index = 0;
    for (const auto* list : {&f.sources, &f.destinations})
        for (const Operand& operand : *list) {
            result.push_back({Argument::pointer, index});
            for (int axis = 0; axis <= int(operand.extents.size()); ++axis)
                result.push_back({Argument::stride, index, axis});
            ++index;
        }
    result.push_back({Argument::info, 0});
    return result;
}

} // namespace stacks
