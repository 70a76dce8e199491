#include "curvature.h"
#include "keslcorex.h"
#include <Eigen/Eigenvalues>

std::vector<Eigen::Matrix3f> covariances(const Mesh& mesh)
{
    const size_t n = mesh.vertices.size();
    std::vector<std::vector<unsigned>> near(n); // itself and its neighbours, some of them twice
    for (unsigned v = 0; v < n; ++v) near[v] = {v};
    for (const auto& [a, b, c] : mesh.triangles)
        for (auto [v, w] : {std::pair(a, b), {b, c}, {c, a}}) near[v].push_back(w), near[w].push_back(v);

    std::vector<Eigen::Matrix3f> result(n);
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
        result[size_t(vertex)] = (sum / double(around.size())).cast<float>();
    });
    return result;
}

namespace {

// The largest error of a value, as a share of the largest value of its matrix.
double largestError(const std::vector<Eigen::Matrix3f>& matrices, std::vector<Values> values)
{
    double largest = 0;
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> exact;
    for (size_t i = 0; i < matrices.size(); ++i) {
        if (values[i].hasNaN()) return NAN;
        exact.compute(matrices[i].cast<double>(), Eigen::EigenvaluesOnly); // ascending
        std::sort(values[i].begin(), values[i].end());
        const double error = (values[i].cast<double>() - exact.eigenvalues()).cwiseAbs().maxCoeff();
        if (error > 0) largest = std::max(largest, error / exact.eigenvalues()[2]);
    }
    return largest;
}

// Degrees between directions, turned outward, and the normals of the mesh; sorted.
std::vector<double> angles(const std::vector<Vec3>& directions, const std::vector<Vec3>& normals)
{
    std::vector<double> result;
    for (size_t i = 0; i < directions.size(); ++i) {
        const Vec3 normal = dot(directions[i], normals[i]) < 0 ? -1 * directions[i] : directions[i];
        const float sine = length(cross(normal, normals[i]));
        result.push_back(std::atan2(sine, dot(normal, normals[i])) * 180 / 3.14159265);
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace

float printResults(const std::vector<Eigen::Matrix3f>& matrices, const std::vector<Values>& values,
                   const std::vector<Vec3>& smallest, const std::vector<Vec3>& normals)
{
    const size_t n = matrices.size();
    std::printf("largest error of a value: %.2g of the largest of its matrix\n", largestError(matrices, values));
    const std::vector<double> degrees = angles(smallest, normals);
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
    return sharp;
}

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

void printSpeeds(const char* library, const std::function<void()>& diagonalise, const std::vector<Eigen::Matrix3f>& matrices)
{
    const size_t n = matrices.size();
    std::vector<Eigen::Vector3f> values(n);
    std::vector<Eigen::Matrix3f> vectors(n);
    const auto loop = [&](auto method) {
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3f> solver;
        for (size_t i = 0; i < n; ++i) {
            method(solver, matrices[i]);
            values[i] = solver.eigenvalues();
            vectors[i] = solver.eigenvectors();
        }
    };
    Progress progress("measuring", 3);
    const double scale = double(n) * 1e-6; // millions a second
    check(keslCoreSetNumThreads(1), "keslCoreSetNumThreads");
    const double ours = scale / secondsOfBest(progress, diagonalise);
    check(keslCoreSetNumThreads(0), "keslCoreSetNumThreads"); // as many as it finds good
    const double sweeps = scale / secondsOfBest(progress, [&] { loop([](auto& s, auto& a) { s.compute(a); }); });
    const double closed = scale / secondsOfBest(progress, [&] { loop([](auto& s, auto& a) { s.computeDirect(a); }); });
    std::printf("\nmillions a second         %8s    Eigen   ratio   Eigen's closed form   ratio\n"
                "matrices diagonalised     %8.2f %8.2f %7.2f              %8.2f %7.2f\n",
                library, ours, sweeps, ours / sweeps, closed, ours / closed);
}
