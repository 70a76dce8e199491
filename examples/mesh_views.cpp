// Reads a mesh, looks at it through some hundred cameras and back, compares the speed with Eigen, and draws a picture.
#include "keslcorex.h"
#include "picture.h"
#include "program.h"
#include <algorithm>
#include <cstring>
#include <Eigen/Dense>
#include <limits>

namespace {

constexpr const char* usage = R"(usage: mesh_views [-o PICTURE] [--size PIXELS] [MESH]

Centres a mesh, projects its vertices through some hundred cameras and back through
the inverse cameras, prints the largest error of the round trip and the throughput
beside the same work by fixed-size Eigen loops, and draws shaded views of the mesh.

  MESH           Wavefront OBJ file; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default mesh_views.png
  --size PIXELS  width and height of each view, 16 to 4096; default 480
  --help         this text
)";

// ---- The same work by Eigen, which gets the same memory

using Row4 = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;
Eigen::Map<const Row4> eigen(const Mat4& m) { return Eigen::Map<const Row4>(m.data()); }
Eigen::Map<const Eigen::Vector3f> eigen(const Vec3& v) { return Eigen::Map<const Eigen::Vector3f>(&v.x); }
Eigen::Map<Eigen::Vector3f> eigen(Vec3& v) { return Eigen::Map<Eigen::Vector3f>(&v.x); }

struct Library {
    static constexpr auto subtract = ::subtract;
    static constexpr auto invert = ::invert;
    static constexpr auto transform = ::transform;
};

struct EigenLoops {
    static void subtract(const std::vector<Vec3>& points, Vec3 origin, std::vector<Vec3>& result)
    {
        for (size_t i = 0; i < points.size(); ++i) eigen(result[i]) = eigen(points[i]) - eigen(origin);
    }
    static void invert(const std::vector<Mat4>& matrices, std::vector<Mat4>& inverses)
    {
        for (size_t i = 0; i < matrices.size(); ++i) Eigen::Map<Row4>(inverses[i].data()) = eigen(matrices[i]).inverse();
    }
    static void transform(const Mat4& matrix, const std::vector<Vec3>& points, std::vector<Vec3>& result)
    {
        const Eigen::Matrix4f m = eigen(matrix);
        for (size_t i = 0; i < points.size(); ++i) { // measured faster than m * p.homogeneous() and hnormalized()
            const Vec3& p = points[i];
            const Eigen::Vector4f q = m.col(0) * p.x + m.col(1) * p.y + m.col(2) * p.z + m.col(3);
            eigen(result[i]) = (q * (1 / q[3])).head<3>();
        }
    }
};

// ---- Do they agree?

constexpr double eps = std::numeric_limits<float>::epsilon();

// The largest difference of two transforms of the same points, as a share of what rounding allows: in each of them four
// roundings of every term of a sum, and two of the quotient.
double share(const Mat4& matrix, const std::vector<Vec3>& points, const std::vector<Vec3>& a, const std::vector<Vec3>& b)
{
    const Eigen::Matrix4d m = eigen(matrix).cast<double>();
    double largest = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        const Eigen::Vector4d p = eigen(points[i]).cast<double>().homogeneous();
        const Eigen::Array4d terms = m.cwiseAbs() * p.cwiseAbs();
        const Eigen::Array3d q = eigen(a[i]).cast<double>(), difference = q - eigen(b[i]).cast<double>().array();
        const Eigen::Array3d allowed = 6 * eps * (terms.head<3>() + q.abs() * terms[3]) / std::abs(m.row(3).dot(p));
        largest = std::max(largest, (difference.abs() / allowed).maxCoeff<Eigen::PropagateNaN>());
    }
    return largest;
}

// The same of two inverses, to which rounding does as much as the condition of the matrix allows.
double share(const Mat4& matrix, const Mat4& a, const Mat4& b)
{
    return (eigen(a) - eigen(b)).norm() / (32 * eps * eigen(a).norm() * eigen(a).norm() * eigen(matrix).norm());
}

struct Agreement {
    double withEigen = 0; // the largest share
    float roundTrip = 0;  // the largest error of a coordinate
};

Agreement compare(const std::vector<Vec3>& vertices, Vec3 centre, const std::vector<Vec3>& centred, const Studio& studio)
{
    const size_t n = vertices.size();
    std::vector<Vec3> centredByEigen(n);
    std::vector<Mat4> inverses(Studio::cameras);
    EigenLoops::subtract(vertices, centre, centredByEigen);
    EigenLoops::invert(studio.toScreen, inverses);

    std::vector<Agreement> each(Studio::cameras);
    Progress progress("comparing", Studio::cameras);
    inParallel(Studio::cameras, progress, [&](int camera) {
        const size_t k = size_t(camera);
        const Mat4 &there = studio.toScreen[k], &home = studio.toWorld[k];
        std::vector<Vec3> seen(n), back(n), byEigen(n);
        Library::transform(there, centred, seen);
        EigenLoops::transform(there, centred, byEigen);
        const double seenShare = share(there, centred, seen, byEigen);
        Library::transform(home, seen, back);
        EigenLoops::transform(home, seen, byEigen);
        each[k] = {std::max({share(there, home, inverses[k]), seenShare, share(home, seen, back, byEigen)}), 0};
        for (size_t i = 0; i < n; ++i)
            each[k].roundTrip = std::max(each[k].roundTrip, (eigen(back[i]) - eigen(centred[i])).cwiseAbs().maxCoeff());
    });

    // A single subtraction rounds in one way only.
    bool agree = std::memcmp(centred.data(), centredByEigen.data(), n * sizeof(Vec3)) == 0;
    Agreement worst;
    for (const Agreement& one : each) {
        agree = agree && one.withEigen <= 1;
        worst = {std::max(worst.withEigen, one.withEigen), std::max(worst.roundTrip, one.roundTrip)};
    }
    if (!agree) throw std::runtime_error("the results differ from those of Eigen by more than rounding");
    return worst;
}

// ---- Which is faster?

// Millions of vertices centred, of matrices inverted and of points projected there or back, in a second.
using Speeds = std::array<double, 3>;

template <class Engine> Speeds measure(const std::vector<Vec3>& vertices, Vec3 centre, const std::vector<Vec3>& centred,
                                       const Studio& studio, Progress& progress)
{
    std::vector<Vec3> seen(centred.size()), back(centred.size());
    std::vector<Mat4> inverses(Studio::cameras);
    const double points = double(vertices.size()) * 1e-6, matrices = Studio::cameras * 1e-6;
    return {points / secondsOfBest(progress, [&] { Engine::subtract(vertices, centre, seen); }),
            matrices / secondsOfBest(progress, [&] { Engine::invert(studio.toScreen, inverses); }),
            2 * points * Studio::cameras / secondsOfBest(progress, [&] {
                for (size_t k = 0; k < Studio::cameras; ++k) {
                    Engine::transform(studio.toScreen[k], centred, seen);
                    Engine::transform(studio.toWorld[k], seen, back);
                }
            })};
}

void printSpeeds(const std::vector<Vec3>& vertices, Vec3 centre, const std::vector<Vec3>& centred, const Studio& studio)
{
    const int threads = keslCoreGetNumThreads();
    Progress progress("measuring", 9);
    check(keslCoreSetNumThreads(1), "keslCoreSetNumThreads");
    const Speeds library = measure<Library>(vertices, centre, centred, studio, progress);
    const Speeds loops = measure<EigenLoops>(vertices, centre, centred, studio, progress);
    check(keslCoreSetNumThreads(0), "keslCoreSetNumThreads"); // as many as it finds good
    const Speeds threaded = measure<Library>(vertices, centre, centred, studio, progress);

    std::printf("\nmillions a second           Eigen   keslmx    ratio   keslmx on %d thread%s\n", threads,
                threads > 1 ? "s" : "");
    const char* const rows[] = {"vertices centred", "cameras inverted", "points projected, back"};
    for (size_t i = 0; i < 3; ++i)
        std::printf("%-24s %8.0f %8.0f %8.2f %8.0f\n", rows[i], loops[i], library[i], library[i] / loops[i], threaded[i]);
}

void run(const Options& options)
{
    checkPngPath(options.picture);
    Mesh mesh = readObj(options.mesh);
    const std::vector<Vec3> vertices = mesh.vertices;
    const Vec3 centre = middle(vertices);
    subtract(vertices, centre, mesh.vertices);
    const Studio studio(mesh.vertices);
    std::printf("%s: %zu vertices, %zu triangles, %d cameras\n", options.mesh.c_str(), vertices.size(),
                mesh.triangles.size(), Studio::cameras);

    const Agreement agreement = compare(vertices, centre, mesh.vertices, studio);
    std::printf("largest round-trip error: %.2g, %.2g of the mesh's radius\n", double(agreement.roundTrip),
                double(agreement.roundTrip / studio.radius));
    std::printf("largest difference from Eigen: %.2f of what rounding allows\n", agreement.withEigen);
    printSpeeds(vertices, centre, mesh.vertices, studio);

    std::vector<Panel> panels;
    for (int view = 0; view < Studio::views; ++view) panels.push_back({view, {}});
    const Picture picture = draw(mesh, studio, panels, 3, options.size);
    writePng(picture, options.picture);
    std::printf("\npicture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("mesh_views", usage, run, argc, argv); }
