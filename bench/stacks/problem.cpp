#include "problem.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <new>

namespace bench::stacks {
namespace {

using ::stacks::Data;

// Square matrices, right-hand sides of one column, and twice as many equations as unknowns.
Sizes sizesOf(const Function& f, int order)
{
    Sizes sizes;
    for (const std::string& name : f.sizes) {
        if (name == "k" && f.name != "matmul") sizes.push_back(1);
        else if (name == "m" && f.name == "lstsq") sizes.push_back(std::min(2 * order, ::stacks::limit));
        else sizes.push_back(order);
    }
    return sizes;
}

Array shapeOf(const Function& f, const Sizes& sizes, const ::stacks::Operand& operand, int bytes)
{
    Array a;
    a.rows = rows(f, sizes, operand), a.cols = cols(f, sizes, operand);
    a.isInteger = operand.integers;
    a.bytes = operand.integers ? int(sizeof(int)) : bytes;
    return a;
}

void lay(Array& a, Layout layout, int count, int index)
{
    const std::int64_t element = a.bytes * (layout == Layout::strided ? 2 : 1);
    if (layout == Layout::soa) a.stride0 = element, a.stride2 = count * element, a.stride1 = a.cols * a.stride2;
    else if (layout == Layout::columns) a.stride1 = element, a.stride2 = a.rows * element, a.stride0 = a.cols * a.stride2;
    else a.stride2 = element, a.stride1 = a.cols * element, a.stride0 = a.rows * a.stride1;
    a.size = a.rows * a.cols * count * element;
    // The bases are staggered, so that source and destination do not fall on the same addresses modulo 4 KiB.
    const std::int64_t stagger = 1088 * (index + 1);
    a.memory.reset(static_cast<char*>(std::aligned_alloc(4096, std::size_t((a.size + stagger + 4095) / 4096 * 4096))));
    if (!a.memory) throw std::bad_alloc();
    a.data = a.memory.get() + stagger;
    std::memset(a.data, 0xff, std::size_t(a.size));
}

// The first source of an object, row by row.
template <class T> void fillFirst(std::vector<T>& a, int n, int m, Data data, Random& random)
{
    for (T& x : a) x = T(random());
    const auto at = [&](int i, int j) -> T& { return a[std::size_t(i * m + j)]; };
    const auto mirror = [&] {
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < i; ++j) at(j, i) = at(i, j);
    };
    switch (data) {
    case Data::regular: // a determinant near 1
        if (n == m) fillRegular(a.data(), n, random);
        for (T& x : a) x /= T(n);
        break;
    case Data::symmetric: mirror(); break;
    case Data::definite:
        for (int i = 0; i < n; ++i) at(i, i) += T(n + 1);
        mirror();
        break;
    case Data::factors: // solutions stay of the magnitude of the right-hand sides
    case Data::lower:
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < m; ++j)
                if (i == j) at(i, i) = T(1.5 + random() / 2);
                else if (data == Data::lower && j > i) at(i, j) = 0;
                else at(i, j) /= T(n);
        break;
    case Data::any: break;
    }
}

template <class T> void fill(Problem& p, Random& random)
{
    const std::string& name = p.function->name; // contenders differ where a sum cancels
    const bool isDet = name == "det", isSum = name == "vecdot" || name == "trace";
    for (int k = 0; k < p.count; ++k)
        for (std::size_t s = 0; s < p.function->sources.size(); ++s) {
            const Array& a = p.arrays[s];
            std::vector<T> object(std::size_t(a.rows * a.cols));
            fillFirst(object, a.rows, a.cols, s > 0 ? Data::any : isDet ? Data::regular : p.function->data, random);
            for (T& x : object) x = isSum ? std::abs(x) : x;
            for (int i = 0; i < a.rows; ++i)
                for (int j = 0; j < a.cols; ++j) {
                    if (a.isInteger) a.at<int>(k, i, j) = i + 1 + int((random() + 1) / 2 * (a.rows - i)); // pivots
                    else a.at<T>(k, i, j) = object[std::size_t(i * a.cols + j)];
                }
        }
}

// Eigenvalues with their vectors, in an order that no rounding changes: columns of values, real and imaginary, and of the
// magnitudes of the vectors' elements.
void sortPairs(std::vector<double>& values, std::size_t n)
{
    std::vector<std::vector<double>> pairs(n);
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t i = j; i < values.size(); i += n) pairs[j].push_back(values[i]);
    const auto key = [](const std::vector<double>& pair) { return pair[0] + 0.37 * pair[1]; };
    std::sort(pairs.begin(), pairs.end(), [&](const auto& x, const auto& y) { return key(x) < key(y); });
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t i = 0; i < pairs[j].size(); ++i) values[i * n + j] = pairs[j][i];
}

// The columns of vectors to length 1; a pair of complex ones has real and imaginary parts side by side.
void takeMagnitudes(double* vectors, const double* imaginary, std::size_t n)
{
    for (std::size_t j = 0; j < n; ++j) {
        const std::size_t width = imaginary[j] == 0 ? 1 : 2;
        double sum = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const double length =
                width == 1 ? std::abs(vectors[i * n + j]) : std::hypot(vectors[i * n + j], vectors[i * n + j + 1]);
            vectors[i * n + j] = length, sum += length * length;
        }
        for (std::size_t i = 0; i < n; ++i) {
            vectors[i * n + j] /= std::sqrt(sum);
            if (width == 2) vectors[i * n + j + 1] = vectors[i * n + j];
        }
        j += width - 1;
    }
}

} // namespace

Problem problemOf(const Function& f, int order, int bytes, Layout layout, int count)
{
    Problem p{&f, order, bytes, layout, count, sizesOf(f, order), {}};
    for (const auto* list : {&f.sources, &f.destinations})
        for (const auto& operand : *list) {
            Array a = shapeOf(f, p.sizes, operand, bytes);
            a.isOutput = list == &f.destinations;
            const bool isLeft = f.name == "eig" && p.arrays.size() == 4; // left vectors, which few want
            if (!isLeft) lay(a, layout, count, int(p.arrays.size()));
            p.arrays.push_back(std::move(a));
        }
    Random random{88172645463325252u + unsigned(order)};
    if (bytes == 4) fill<float>(p, random);
    else fill<double>(p, random);
    return p;
}

std::int64_t bytesOf(const Function& f, int order, int bytes, Layout layout)
{
    const Sizes sizes = sizesOf(f, order);
    std::int64_t sum = 0;
    for (const auto* list : {&f.sources, &f.destinations})
        for (const auto& operand : *list) {
            const Array a = shapeOf(f, sizes, operand, bytes);
            sum += a.rows * a.cols * a.bytes * (layout == Layout::strided ? 2 : 1);
        }
    return sum;
}

std::vector<double> comparable(const Problem& p, int k)
{
    std::vector<double> values;
    const std::string& name = p.function->name;
    for (const Array& a : p.arrays)
        if (a.isOutput && a.data && !a.isInteger)
            for (int i = 0; i < a.rows; ++i)
                for (int j = 0; j < a.cols; ++j) {
                    const double x = a.bytes == 4 ? double(a.at<float>(k, i, j)) : a.at<double>(k, i, j);
                    values.push_back(name == "cholesky" && j > i ? 0 : x);
                }
    const std::size_t n = std::size_t(p.order);
    if (name == "qr" || name == "svd")
        for (double& x : values) x = std::abs(x);
    if (name.starts_with("eigh") || name == "eigvalsh")
        values.insert(values.begin() + std::ptrdiff_t(n), n, 0); // imaginary parts
    if (name == "eigh" || name == "eig") takeMagnitudes(&values[2 * n], &values[n], n);
    if (name.starts_with("eig")) sortPairs(values, n);
    return values;
}

double toleranceOf(const Function& f)
{
    static const std::map<std::string, double> ofVectors = {{"eigh", 1e6}, {"eig", 1e6}, {"svd", 1e6}, {"qr", 1e5}}; // gaps
    const auto found = ofVectors.find(f.name);
    return found == ofVectors.end() ? 2000 : found->second;
}

} // namespace bench::stacks
