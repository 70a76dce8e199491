// Normals of a point cloud by kesl: the covariances of the nearest points around each point, diagonalised in one call.
#include "curvature.h"
#include "kesl.hpp"
#include <Eigen/Geometry>
#include <Eigen/SVD>
#include <fstream>
#include <nanoflann.hpp>
#include <numeric>
#include <sstream>

namespace {

constexpr const char* usage = R"(usage: point_normals [-o PICTURE] [--size PIXELS] [POINTS]

Finds the normal at each point of a cloud: the eigenvector of the smallest eigenvalue of
the covariance of the 16 points nearest to it, all of them in one call. Compares them with
the normals in the file, and with those by Eigen, which takes the points themselves to
pieces by singular values. Draws the cloud lit by its normals, and where they differ from
those of the file. Leaves points, covariances and normals in PICTURE.records.

  POINTS         PLY file with normals, of ASCII format; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default point_normals.png
  --size PIXELS  width of each view, 16 to 4096; default 480
  --help         this text
)";

constexpr size_t around = 16;
using Vector = Eigen::Vector3f;
using Neighbours = std::vector<std::array<unsigned, around>>;

struct Cloud {
    std::vector<Vector> points, normals;

    // What nanoflann asks of points.
    size_t kdtree_get_point_count() const { return points.size(); }
    float kdtree_get_pt(size_t i, size_t axis) const { return points[i][Eigen::Index(axis)]; }
    template <class Box> bool kdtree_get_bbox(Box&) const { return false; }
};

// The properties x y z nx ny nz of the vertices, wherever they stand in a line.
Cloud readPly(const std::string& path)
{
    std::ifstream file(path);
    if (!file) throw std::runtime_error(path + ": " + std::strerror(errno));
    const auto fail = [&](const std::string& why) { throw std::runtime_error(path + ": " + why); };
    const std::vector<std::string> wanted = {"x", "y", "z", "nx", "ny", "nz"};
    std::vector<size_t> columns; // of each property: its place among the wanted ones
    std::string line, word;
    size_t count = 0, found = 0;
    bool ascii = false;
    if (!std::getline(file, line) || line.substr(0, 3) != "ply") fail("this is no PLY file");
    while (word != "end_header") {
        if (!std::getline(file, line)) fail("the header has no end");
        std::istringstream words(line);
        std::string kind;
        words >> word >> kind;
        if (word == "format") ascii = kind == "ascii";
        if (word == "element" && !(kind == "vertex" && columns.empty() && words >> count)) fail("not only vertices");
        if (word == "property") {
            words >> kind;
            columns.push_back(size_t(std::find(wanted.begin(), wanted.end(), kind) - wanted.begin()));
            found += columns.back() < wanted.size();
        }
    }
    if (!ascii || found != wanted.size()) fail("not in ASCII format, or no normals");

    Cloud cloud;
    while (cloud.points.size() < count && std::getline(file, line)) {
        std::istringstream numbers(line);
        std::array<double, 7> row{}; // the last one takes what is not wanted
        for (size_t column : columns)
            if (!(numbers >> row[column])) fail("vertex " + std::to_string(cloud.points.size()) + " is not all numbers");
        cloud.points.push_back(Eigen::Vector3d(row[0], row[1], row[2]).cast<float>());
        cloud.normals.push_back(Eigen::Vector3d(row[3], row[4], row[5]).cast<float>());
    }
    if (cloud.points.size() < count) fail("ends before its last vertex");
    if (count < around) fail("less than " + std::to_string(around) + " points");
    return cloud;
}

// Runs work(i) for all points, on all threads.
template <class Work> void forAll(const char* what, size_t count, Work work)
{
    constexpr size_t block = 1000;
    const int blocks = int((count + block - 1) / block);
    Progress progress(what, blocks);
    inParallel(blocks, progress, [&](int b) {
        for (size_t i = size_t(b) * block; i < std::min(count, size_t(b + 1) * block); ++i) work(i);
    });
}

Neighbours neighbours(const Cloud& cloud)
{
    using Metric = nanoflann::L2_Simple_Adaptor<float, Cloud>;
    const nanoflann::KDTreeSingleIndexAdaptor<Metric, Cloud, 3, unsigned> tree(3, cloud);
    Neighbours result(cloud.points.size());
    forAll("finding neighbours", result.size(), [&](size_t i) {
        std::array<float, around> distances;
        tree.knnSearch(cloud.points[i].data(), around, result[i].data(), distances.data());
    });
    return result;
}

// The points around one, from their mean, in columns.
Eigen::Matrix<double, 3, around> centred(const Cloud& cloud, const std::array<unsigned, around>& near)
{
    Eigen::Matrix<double, 3, around> result;
    for (size_t j = 0; j < around; ++j) result.col(Eigen::Index(j)) = cloud.points[near[j]].cast<double>();
    return result.colwise() - result.rowwise().mean().eval();
}

std::vector<Vector> normalsByEigen(const Cloud& cloud, const Neighbours& near)
{
    std::vector<Vector> result(near.size());
    forAll("singular values by Eigen", near.size(), [&](size_t i) {
        const auto points = centred(cloud, near[i]);
        const Eigen::JacobiSVD<Eigen::Matrix<double, 3, around>> svd(points, Eigen::ComputeFullU);
        result[i] = svd.matrixU().col(2).cast<float>(); // singular values descend
    });
    return result;
}

// Degrees between two directions, of which each may point to either side.
double degrees(const Vector& a, const Vector& b)
{
    const Eigen::Vector3d u = a.cast<double>(), v = b.cast<double>();
    return std::atan2(u.cross(v).norm(), std::fabs(u.dot(v))) * 180 / 3.14159265358979;
}

void printDegrees(const char* what, const std::vector<Vector>& normals, const std::vector<Vector>& reference)
{
    std::vector<double> sorted;
    for (size_t i = 0; i < normals.size(); ++i) sorted.push_back(degrees(normals[i], reference[i]));
    std::sort(sorted.begin(), sorted.end());
    const double mean = std::accumulate(sorted.begin(), sorted.end(), 0.) / double(sorted.size());
    std::printf("%-27s %9.3g %9.3g %9.3g %9.3g\n", what, mean, sorted[sorted.size() / 2], sorted[sorted.size() * 9 / 10],
                sorted.back());
}

// Two views side by side: lit by the normals, and coloured by how far they are from those of the file.
Picture drawn(const Cloud& cloud, const std::vector<Vector>& normals, int width)
{
    Eigen::Matrix3f camera; // in rows: to the right, up, and towards the eye; z is up in the cloud
    camera.row(2) = Vector(0.6f, -1, 0.7f).normalized();
    camera.row(0) = Vector::UnitZ().cross(camera.row(2).transpose()).normalized();
    camera.row(1) = camera.row(2).cross(camera.row(0));
    const Vector light = camera.transpose() * Vector(-0.5f, 0.6f, 0.62f);
    Eigen::AlignedBox3f box;
    for (const Vector& p : cloud.points) box.extend(camera * p);
    const int radius = width / 400, border = radius + width / 50; // of a point, in pixels
    const float scale = float(width - 2 * border) / std::max(box.sizes().head<2>().maxCoeff(), 1e-30f);
    const int height = int(scale * box.sizes().y()) + 2 * border;

    Picture picture{2 * width, height, std::vector<unsigned char>(6 * size_t(width) * size_t(height), 255)};
    std::vector<float> depth(size_t(width) * size_t(height), -INFINITY);
    const auto paint = [&](int x, int y, const Vector& colour) {
        for (int c = 0; c < 3; ++c)
            picture.rgb[3 * size_t(y * 2 * width + x) + size_t(c)] =
                static_cast<unsigned char>(255 * std::min(1.f, colour[c]));
    };
    for (size_t i = 0; i < normals.size(); ++i) {
        const Vector at = camera * cloud.points[i];
        const int left = border - radius + int(scale * (at.x() - box.min().x()));
        const int top = border - radius + int(scale * (box.max().y() - at.y()));
        const Vector lit = (0.25f + 0.75f * std::fabs(normals[i].dot(light))) * Vector(0.93f, 0.88f, 0.8f);
        const float off = std::min(1.f, float(degrees(normals[i], cloud.normals[i])) / 30);
        const Vector wrong = (1 - off) * Vector(0.85f, 0.87f, 0.85f) + off * Vector(0.75f, 0.05f, 0.05f);
        for (int y = top; y <= top + 2 * radius; ++y)
            for (int x = left; x <= left + 2 * radius; ++x) {
                float& nearest = depth[size_t(y * width + x)];
                if (nearest > at.z()) continue;
                nearest = at.z();
                paint(x, y, lit);
                paint(x + width, y, wrong);
            }
    }
    return picture;
}

// Of each point the normal of the file, the covariance and the normal found: what another program needs to find it again.
void writeRecords(const std::string& path, const Cloud& cloud, const std::vector<Eigen::Matrix3f>& matrices,
                  const std::vector<Vector>& normals)
{
    std::ofstream file(path, std::ios::binary);
    for (size_t i = 0; i < normals.size(); ++i) {
        Eigen::Matrix<float, 15, 1> record;
        record << cloud.normals[i], matrices[i].reshaped(), normals[i];
        file.write(reinterpret_cast<const char*>(record.data()), sizeof record);
    }
    if (!file.flush()) throw std::runtime_error(path + " cannot be written");
}

void run(const Options& options)
{
    checkPngPath(options.picture);
    const Cloud cloud = readPly(options.mesh);
    const size_t n = cloud.points.size();
    const Neighbours near = neighbours(cloud);
    std::vector<Eigen::Matrix3f> matrices(n);
    forAll("covariances", n, [&](size_t i) {
        const auto points = centred(cloud, near[i]);
        matrices[i] = (points.lazyProduct(points.transpose()) / double(around)).cast<float>();
    });

    std::vector<Values> values(n);
    std::vector<Eigen::Matrix3f> vectors(n);
    const auto diagonalise = [&] { return kesl::eigh(matrices, values, vectors); };
    std::printf("%zu points; %td of their matrices failed\n", n, diagonalise());

    std::vector<Vector> normals; // values ascend
    for (const Eigen::Matrix3f& v : vectors) normals.push_back(v.col(0));
    const std::vector<Vector> eigen = normalsByEigen(cloud, near);
    std::printf("\ndegrees                          mean    median      90 %%     worst\n");
    printDegrees("kesl to the file", normals, cloud.normals);
    printDegrees("Eigen to the file", eigen, cloud.normals);
    printDegrees("kesl to Eigen", normals, eigen);
    printSpeeds("kesl", diagonalise, matrices);

    const Picture picture = drawn(cloud, normals, options.size);
    writePng(picture, options.picture);
    writeRecords(options.picture + ".records", cloud, matrices, normals);
    std::printf("\npicture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("point_normals", usage, run, argc, argv); }
