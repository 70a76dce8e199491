// Normals and curvature of a mesh: the covariances of the points around its vertices, diagonalised in one call, with the
// matrices as they are and scaled by powers of two.
#include "keslcorex.h"
#include "picture.h"
#include "program.h"
#include <Eigen/Eigenvalues>

namespace {

constexpr const char* usage = R"(usage: mesh_curvature [-o PICTURE] [--size PIXELS] [MESH]

Finds the normal and the surface variation of a mesh at each vertex, by the eigenvalues
and eigenvectors of the covariance of the points up to two edges away: all of them in one
call, first as they are, then scaled by powers of two. Compares the normals with those of
the triangles and the speed with Eigen, and draws the mesh coloured by both results.

  MESH           Wavefront OBJ file; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default mesh_curvature.png
  --size PIXELS  width and height of each view, 16 to 4096; default 480
  --help         this text
)";

// A symmetric matrix by six numbers.
struct Sym {
    float xx, xy, xz, yy, yz, zz;
    float trace() const { return xx + yy + zz; }
};

Sym times2To(int exponent, const Sym& a)
{
    const auto scaled = [exponent](float x) { return std::ldexp(x, exponent); };
    return {scaled(a.xx), scaled(a.xy), scaled(a.xz), scaled(a.yy), scaled(a.yz), scaled(a.zz)};
}

Sym plus(float shift, const Sym& a) { return {a.xx + shift, a.xy, a.xz, a.yy + shift, a.yz, a.zz + shift}; }

using Values = std::array<float, 3>;  // descending
using Vectors = std::array<float, 9>; // column c belongs to value c

// All matrices in one call: the pointers name the nine elements of the first, three of them twice.
KeslStatus diagonalise(const Sym* a, Values* values, Vectors* vectors, int count)
{
    const float* const elements[] = {&a->xx, &a->xy, &a->xz, &a->xy, &a->yy, &a->yz, &a->xz, &a->yz, &a->zz};
    float *columns[9], buffer[9];
    for (size_t i = 0; i < 9; ++i) columns[i] = &(*vectors)[i];
    return keslEigenValuesVectorsSym_ma_32f_P(elements, 0, sizeof(Sym), buffer, columns, 0, sizeof(Vectors), values->data(),
                                              3, count);
}

// Goes on where that call ends, at the first matrix that fails: halves the array until such matrices are alone. Then another
// power of two helps what did not converge; a multiple of the identity, which keeps the vectors, moves the values away from
// zero, and helps what is singular. Returns how many needed it.
int diagonaliseAll(const Sym* a, Values* values, Vectors* vectors, int count)
{
    if (diagonalise(a, values, vectors, count) == keslStatusOk) return 0;
    if (const int half = count / 2)
        return diagonaliseAll(a, values, vectors, half) +
               diagonaliseAll(a + half, values + half, vectors + half, count - half);
    for (const int exponent : {1, 2, 3, 4, 5}) {
        constexpr float shift = 0x1p28f;
        const Sym shifted = plus(shift, times2To(exponent, *a));
        if (diagonalise(&shifted, values, vectors, 1) != keslStatusOk) continue;
        for (float& value : *values) value = std::ldexp(value - shift, -exponent);
        return 1;
    }
    throw std::runtime_error("the eigenvalues of a matrix cannot be found");
}

// Of the points up to two edges away from each vertex.
std::vector<Sym> covariances(const Mesh& mesh)
{
    const size_t n = mesh.vertices.size();
    std::vector<std::vector<unsigned>> near(n); // itself and its neighbours, some of them twice
    for (unsigned v = 0; v < n; ++v) near[v] = {v};
    for (const auto& [a, b, c] : mesh.triangles)
        for (auto [v, w] : {std::pair(a, b), {b, c}, {c, a}}) near[v].push_back(w), near[w].push_back(v);

    std::vector<Sym> result(n);
    Progress progress("gathering neighbourhoods", double(n));
    inParallel(int(n), progress, [&](int vertex) {
        std::vector<unsigned> around;
        for (unsigned v : near[size_t(vertex)]) around.insert(around.end(), near[v].begin(), near[v].end());
        std::sort(around.begin(), around.end());
        around.erase(std::unique(around.begin(), around.end()), around.end());
        const auto point = [&](unsigned v) { return Eigen::Vector3f::Map(&mesh.vertices[v].x).cast<double>(); };
        Eigen::Vector3d mean = Eigen::Vector3d::Zero();
        for (unsigned v : around) mean += point(v) / double(around.size());
        Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
        for (unsigned v : around) sum += (point(v) - mean) * (point(v) - mean).transpose();
        const Eigen::Matrix3f c = (sum / double(around.size())).cast<float>();
        result[size_t(vertex)] = {c(0, 0), c(0, 1), c(0, 2), c(1, 1), c(1, 2), c(2, 2)};
    });
    return result;
}

// The exponent that brings the trace to 2^27 .. 2^28: by such numbers the library's tests are no larger than rounding.
int exponentFor(const Sym& a)
{
    int exponent = 28;
    std::frexp(a.trace(), &exponent);
    return 28 - exponent;
}

// 0 for a plane, 1/3 where the points scatter evenly in all directions; nan if any of the values is.
float variation(const Values& v)
{
    const float sum = v[0] + v[1] + v[2];
    return sum > 0 ? std::max(0.f, std::min({v[0], v[1], v[2]})) / sum : sum == 0 ? 0 : NAN;
}

// What is smooth is pale, what is sharp dark red; what has no result is grey.
std::vector<Vec3> coloured(const std::vector<Values>& values, float sharp)
{
    constexpr Vec3 ramp[] = {{0.82f, 0.86f, 0.80f}, {0.93f, 0.72f, 0.28f}, {0.90f, 0.25f, 0.06f}, {0.32f, 0.01f, 0.06f}};
    std::vector<Vec3> colours;
    for (const Values& v : values) {
        const float t = std::isnan(variation(v)) ? NAN : 3 * std::min(0.999f, std::sqrt(variation(v) / sharp));
        const size_t i = std::isnan(t) ? 0 : size_t(t);
        colours.push_back(std::isnan(t) ? Vec3{0.3f, 0.3f, 0.3f} : ramp[i] + (t - float(i)) * (ramp[i + 1] - ramp[i]));
    }
    return colours;
}

Eigen::Matrix3f dense(const Sym& a) { return Eigen::Matrix3f{{a.xx, a.xy, a.xz}, {a.xy, a.yy, a.yz}, {a.xz, a.yz, a.zz}}; }

// The largest error of a value, as a share of the largest value of its matrix.
double largestError(const std::vector<Sym>& matrices, const std::vector<Values>& values)
{
    double largest = 0;
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> exact;
    for (size_t i = 0; i < matrices.size(); ++i) {
        exact.compute(dense(matrices[i]).cast<double>(), Eigen::EigenvaluesOnly); // ascending
        const Eigen::Vector3d found = Eigen::Vector3f::Map(values[i].data()).cast<double>().reverse();
        const double norm = exact.eigenvalues()[2];
        if (norm > 0) largest = std::max(largest, (found - exact.eigenvalues()).cwiseAbs().maxCoeff() / norm);
    }
    return largest;
}

// Degrees between the vectors of the smallest values, turned outward, and the normals of the mesh; sorted.
std::vector<double> angles(const std::vector<Vectors>& vectors, const std::vector<Vec3>& normals)
{
    std::vector<double> result;
    for (size_t i = 0; i < vectors.size(); ++i) {
        const Vec3 column{vectors[i][2], vectors[i][5], vectors[i][8]};
        const Vec3 normal = dot(column, normals[i]) < 0 ? -1 * column : column;
        const float sine = length(cross(normal, normals[i]));
        result.push_back(std::atan2(sine, dot(normal, normals[i])) * 180 / 3.14159265);
    }
    std::sort(result.begin(), result.end());
    return result;
}

void printSpeeds(std::vector<Sym> matrices)
{
    const size_t n = matrices.size();
    std::vector<Values> values(n);
    std::vector<Vectors> vectors(n);
    for (Sym& a : matrices) // a call that ends early would be fast
        if (diagonalise(&a, values.data(), vectors.data(), 1) != keslStatusOk) a = {3, 0, 0, 2, 0, 1};
    const auto loop = [&](auto method) {
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3f> solver;
        for (size_t i = 0; i < n; ++i) {
            method(solver, dense(matrices[i]));
            Eigen::Vector3f::Map(values[i].data()) = solver.eigenvalues();
            Eigen::Matrix3f::Map(vectors[i].data()) = solver.eigenvectors();
        }
    };
    Progress progress("measuring", 3);
    check(keslCoreSetNumThreads(1), "keslCoreSetNumThreads");
    const double scale = double(n) * 1e-6; // millions a second
    const double library =
        scale / secondsOfBest(progress, [&] { diagonalise(matrices.data(), values.data(), vectors.data(), int(n)); });
    check(keslCoreSetNumThreads(0), "keslCoreSetNumThreads"); // as many as it finds good
    const double sweeps = scale / secondsOfBest(progress, [&] { loop([](auto& s, auto a) { s.compute(a); }); });
    const double closed = scale / secondsOfBest(progress, [&] { loop([](auto& s, auto a) { s.computeDirect(a); }); });
    std::printf("\nmillions a second           keslmx    Eigen   ratio   Eigen's closed form   ratio\n"
                "matrices diagonalised     %8.2f %8.2f %7.2f              %8.2f %7.2f\n",
                library, sweeps, library / sweeps, closed, library / closed);
}

void run(const Options& options)
{
    checkPngPath(options.picture);
    Mesh mesh = readObj(options.mesh);
    const size_t n = mesh.vertices.size();
    subtract(std::vector(mesh.vertices), middle(mesh.vertices), mesh.vertices);
    const Studio studio(mesh.vertices);
    std::printf("%s: %zu vertices, %zu triangles\n", options.mesh.c_str(), n, mesh.triangles.size());
    const std::vector<Sym> matrices = covariances(mesh);

    // As they are. What the call does not reach keeps its nan.
    std::vector<Values> plainValues(n, {NAN, NAN, NAN}), values(n);
    std::vector<Vectors> vectors(n);
    const KeslStatus plain = diagonalise(matrices.data(), plainValues.data(), vectors.data(), int(n));
    const auto reached =
        std::count_if(plainValues.begin(), plainValues.end(), [](const Values& v) { return !std::isnan(variation(v)); });
    std::printf("as they are: status %d, %zd of %zu matrices reached\n", plain, reached, n);

    // Scaled, each by a power of two of its own, and the values scaled back.
    std::vector<Sym> scaled(n);
    for (size_t i = 0; i < n; ++i) scaled[i] = times2To(exponentFor(matrices[i]), matrices[i]);
    const KeslStatus status = diagonalise(scaled.data(), values.data(), vectors.data(), int(n));
    const int again = status ? diagonaliseAll(scaled.data(), values.data(), vectors.data(), int(n)) : 0;
    std::printf("scaled: status %d, %d of %zu matrices wanted a second try\n", status, again, n);
    size_t inexact = 0;
    for (size_t i = 0; i < n; ++i) {
        const int back = -exponentFor(matrices[i]);
        const Sym same = times2To(back, scaled[i]);
        inexact += std::memcmp(&same, &matrices[i], sizeof same) != 0;
        for (float& value : values[i]) value = std::ldexp(value, back);
    }
    std::printf("scaled and back: %zu matrices differ\n", inexact);
    std::printf("largest error of a value: %.2g of the largest of its matrix\n", largestError(matrices, values));

    const std::vector<double> degrees = angles(vectors, vertexNormals(mesh, studio.radius));
    double sum = 0;
    for (double d : degrees) sum += d;
    std::printf("normals and those of the triangles, degrees: mean %.3g, median %.3g, worst %.3g\n", sum / double(n),
                degrees[n / 2], degrees.back());
    std::vector<float> variations;
    for (const Values& v : values) variations.push_back(variation(v));
    std::sort(variations.begin(), variations.end());
    const float sharp = std::max(variations[n * 98 / 100], 1e-6f);
    std::printf("surface variation: median %.3g, 98 %% up to %.3g, largest %.3g\n", double(variations[n / 2]), double(sharp),
                double(variations.back()));
    printSpeeds(scaled);

    const Picture picture =
        draw(mesh, studio, {{3, coloured(plainValues, sharp)}, {3, coloured(values, sharp)}}, 2, options.size);
    writePng(picture, options.picture);
    std::printf("\npicture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("mesh_curvature", usage, run, argc, argv); }
