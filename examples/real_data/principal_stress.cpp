// Principal stresses by kesl: all tensors of a finite element result, of all its steps, diagonalised in one call.
#include "kesl.hpp"
#include "picture.h"
#include "program.h"
#include <Eigen/Eigenvalues>
#include <Eigen/LU>
#include <fstream>
#include <map>

namespace {

constexpr const char* usage = R"(usage: principal_stress [-o PICTURE] [--size PIXELS] [RESULT]

Reads a mesh of hexahedra of 20 nodes and the stresses at its nodes, and finds the principal
stresses and their directions: of all nodes and all fields in one call. Checks them by the
invariants of the tensors and by what is left of A v = w v, tells the speed beside Eigen's,
and draws two fields on the surface: tension is red, compression blue.

  RESULT         FRD file of ASCII format; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default principal_stress.png
  --size PIXELS  width and height of each view, 16 to 4096; default 480
  --help         this text
)";

using Tensor = Eigen::Matrix3d;
using Element = std::array<unsigned, 20>;

struct Field {
    std::string name;
    size_t begin; // of its tensors, one for each node
};

struct Result {
    Mesh mesh; // all nodes, and the surface
    std::vector<Element> elements;
    std::vector<Field> fields;
    std::vector<Tensor> stresses; // field after field; only the lower triangles, which is what kesl reads
};

// Lines of fixed columns: a key of three characters, then a number of ten, then values of twelve.
class FrdReader {
public:
    explicit FrdReader(const std::string& name) : path(name), file(name)
    {
        if (!file) throw std::runtime_error(path + ": " + std::strerror(errno));
    }

    Result read()
    {
        std::string eigenvalue;
        while (next()) {
            if (line.starts_with("    2C")) readNodes();
            if (line.starts_with("    3C")) readElements();
            if (line.starts_with("  100C") && line.size() >= 24) eigenvalue = line.substr(12, 12);
            if (line.starts_with(" -4  STRESS ") || line.starts_with(" -4  STRESSI ")) readStresses(eigenvalue);
        }
        if (result.elements.empty() || result.fields.empty())
            throw std::runtime_error(path + ": no elements or no stresses");
        return std::move(result);
    }

private:
    bool next()
    {
        ++number;
        return bool(std::getline(file, line));
    }
    [[noreturn]] void fail(const char* why) const
    {
        throw std::runtime_error(path + ", line " + std::to_string(number) + ": " + why);
    }
    template <class T> T field(size_t at, size_t width) const
    {
        T value{};
        const std::string text = at + width <= line.size() ? line.substr(at, width) : "";
        const size_t from = std::min(text.find_first_not_of(' '), text.size());
        const auto [stop, error] = std::from_chars(text.data() + from, text.data() + text.size(), value);
        if (error != std::errc() || stop != text.data() + text.size() || !std::isfinite(double(value)))
            fail("not the number that should stand here");
        return value;
    }
    double value(int i) const { return field<double>(13 + 12 * size_t(i), 12); }
    unsigned node(size_t at) const
    {
        const unsigned found = field<unsigned>(at, 10) - 1;
        if (found >= result.mesh.vertices.size()) fail("no such node");
        return found;
    }

    void readNodes()
    {
        while (next() && line.starts_with(" -1")) {
            if (field<unsigned>(3, 10) != result.mesh.vertices.size() + 1) fail("nodes are not numbered 1, 2, 3");
            result.mesh.vertices.push_back({float(value(0)), float(value(1)), float(value(2))});
        }
    }
    void readElements()
    {
        while (next() && line.starts_with(" -1")) {
            if (field<int>(13, 5) != 4) fail("not an element of 20 nodes");
            Element& element = result.elements.emplace_back();
            for (size_t i = 0; i < 20; ++i) {
                if (i % 10 == 0 && !next()) fail("ends within an element");
                element[i] = node(3 + i % 10 * 10);
            }
        }
    }
    void readStresses(const std::string& eigenvalue)
    {
        const size_t count = result.mesh.vertices.size(), begin = result.stresses.size();
        const bool imaginary = line.starts_with(" -4  STRESSI");
        result.fields.push_back({"eigenvalue" + eigenvalue + (imaginary ? ", imaginary part" : ", real part"), begin});
        result.stresses.resize(begin + count, Tensor::Zero());
        while (next() && line.starts_with(" -5")) {}
        for (size_t n = 0; n < count; ++n, next()) {
            if (!line.starts_with(" -1") || node(3) != n) fail("not the stress of the next node");
            Tensor& s = result.stresses[begin + n];
            s(0, 0) = value(0), s(1, 1) = value(1), s(2, 2) = value(2);
            s(1, 0) = value(3), s(2, 1) = value(4), s(2, 0) = value(5);
        }
    }

    std::string path, line;
    std::ifstream file;
    long number = 0;
    Result result;
};

// The mesh is of equal sectors, and each has nodes of its own where it meets the next: for each node the first in its place.
std::vector<unsigned> joined(const std::vector<Vec3>& points, float tolerance)
{
    std::vector<unsigned> first(points.size());
    for (size_t i = 0; i < points.size(); ++i) {
        size_t j = 0;
        while (j < i && !(length(points[j] - points[i]) < tolerance)) ++j;
        first[i] = unsigned(j);
    }
    return first;
}

// The faces that only one element has, as six triangles between their eight nodes.
std::vector<std::array<unsigned, 3>> surface(const std::vector<Element>& elements, const std::vector<unsigned>& place)
{
    // Around each face: a corner, the node in the middle of the edge behind it, the next corner and so on.
    static constexpr unsigned char faces[6][8] = {{0, 11, 3, 10, 2, 9, 1, 8},   {4, 16, 5, 17, 6, 18, 7, 19},
                                                  {0, 8, 1, 13, 5, 16, 4, 12},  {1, 9, 2, 14, 6, 17, 5, 13},
                                                  {2, 10, 3, 15, 7, 18, 6, 14}, {3, 11, 0, 12, 4, 19, 7, 15}};
    std::map<std::array<unsigned, 4>, std::array<unsigned, 8>> alone; // by the corners in ascending order
    for (const Element& element : elements)
        for (const auto& face : faces) {
            std::array<unsigned, 8> nodes;
            for (size_t i = 0; i < 8; ++i) nodes[i] = place[element[face[i]]];
            std::array<unsigned, 4> corners = {nodes[0], nodes[2], nodes[4], nodes[6]};
            std::sort(corners.begin(), corners.end());
            if (const auto [other, first] = alone.insert({corners, nodes}); !first) alone.erase(other);
        }
    std::vector<std::array<unsigned, 3>> triangles;
    for (const auto& [corners, n] : alone) {
        for (size_t i = 0; i < 8; i += 2) triangles.push_back({n[(i + 7) % 8], n[i], n[i + 1]});
        triangles.insert(triangles.end(), {{n[1], n[3], n[5]}, {n[1], n[5], n[7]}});
    }
    return triangles;
}

// What the three invariants of the tensors and A v = w v leave, as shares of the largest principal stress.
void printErrors(const std::vector<Tensor>& stresses, const std::vector<Eigen::Vector3d>& values,
                 const std::vector<Tensor>& vectors)
{
    std::array<double, 5> worst{};
    for (size_t i = 0; i < stresses.size(); ++i) {
        const double scale = values[i].cwiseAbs().maxCoeff();
        if (scale == 0) continue;
        const Tensor a = Tensor(stresses[i].selfadjointView<Eigen::Lower>()) / scale, &v = vectors[i];
        const Eigen::Vector3d w = values[i] / scale;
        const double minors = 0.5 * (a.trace() * a.trace() - a.squaredNorm());
        const double errors[] = {a.trace() - w.sum(), minors - (w[0] * w[1] + w[1] * w[2] + w[2] * w[0]),
                                 a.determinant() - w.prod(), (a * v - v * w.asDiagonal()).cwiseAbs().maxCoeff(),
                                 (v.transpose() * v - Tensor::Identity()).cwiseAbs().maxCoeff()};
        for (size_t e = 0; e < worst.size(); ++e) {
            if (!(std::fabs(errors[e]) < 1e-14)) throw std::runtime_error("these are no principal stresses");
            worst[e] = std::max(worst[e], std::fabs(errors[e]));
        }
    }
    std::printf("worst errors: trace %.1e, minors %.1e, determinant %.1e, A v - w v %.1e, V'V - 1 %.1e\n", worst[0],
                worst[1], worst[2], worst[3], worst[4]);
}

double largest(const Eigen::Vector3d& w) { return -w[0] > w[2] ? w[0] : w[2]; } // in magnitude; values ascend

// A colour for each node: pale without stress, red at the largest tension of the field, blue at the largest compression.
std::vector<Vec3> coloured(const Eigen::Vector3d* values, size_t count)
{
    double scale = 0;
    for (size_t i = 0; i < count; ++i) scale = std::max(scale, std::fabs(largest(values[i])));
    std::vector<Vec3> colours;
    for (size_t i = 0; i < count; ++i) {
        const double share = scale > 0 ? largest(values[i]) / scale : 0;
        const Vec3 end = share > 0 ? Vec3{0.80f, 0.06f, 0.03f} : Vec3{0.03f, 0.12f, 0.75f}, pale{0.86f, 0.84f, 0.78f};
        colours.push_back(pale + float(std::sqrt(std::fabs(share))) * (end - pale));
    }
    return colours;
}

void run(const Options& options)
{
    checkPngPath(options.picture);
    Result result = FrdReader(options.mesh).read();
    const size_t nodes = result.mesh.vertices.size(), count = result.stresses.size();
    std::printf("%zu nodes, %zu elements, %zu fields: %zu tensors\n", nodes, result.elements.size(), result.fields.size(),
                count);

    std::vector<Eigen::Vector3d> values(count);
    std::vector<Tensor> vectors(count);
    const auto diagonalise = [&] { return kesl::eigh(result.stresses, values, vectors); };
    std::printf("%td of %zu failed\n", diagonalise(), count);
    printErrors(result.stresses, values, vectors);

    std::printf("\n%-42s  tension   compression\n", "largest principal stresses");
    for (const Field& field : result.fields) {
        const auto begin = values.begin() + std::ptrdiff_t(field.begin), end = begin + std::ptrdiff_t(nodes);
        double tension = 0, compression = 0;
        for (auto w = begin; w != end; ++w)
            tension = std::max(tension, (*w)[2]), compression = std::min(compression, (*w)[0]);
        std::printf("%-42s %10.4g %10.4g\n", field.name.c_str(), tension, compression);
    }

    Progress progress("measuring", 2);
    const double ours = secondsOfBest(progress, diagonalise);
    std::vector<Eigen::Vector3d> eigenValues(count);
    std::vector<Tensor> eigenVectors(count);
    const double eigen = secondsOfBest(progress, [&] {
        Eigen::SelfAdjointEigenSolver<Tensor> solver;
        for (size_t i = 0; i < count; ++i) {
            solver.compute(result.stresses[i]);
            eigenValues[i] = solver.eigenvalues();
            eigenVectors[i] = solver.eigenvectors();
        }
    });
    std::printf("\nmilliseconds: kesl %.3g, a loop of Eigen's %.3g\n", 1e3 * ours, 1e3 * eigen);

    Mesh& mesh = result.mesh;
    subtract(std::vector(mesh.vertices), middle(mesh.vertices), mesh.vertices);
    const Studio studio(mesh.vertices);
    mesh.triangles = surface(result.elements, joined(mesh.vertices, 1e-5f * studio.radius));
    std::vector<Panel> panels;
    for (size_t drawn : {(result.fields.size() - 1) / 2, result.fields.size() - 1}) {
        panels.push_back({1, coloured(&values[result.fields[drawn].begin], nodes)});
        std::printf("drawn: %s\n", result.fields[drawn].name.c_str());
    }
    const Picture picture = draw(mesh, studio, panels, 2, options.size);
    writePng(picture, options.picture);
    std::printf("picture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("principal_stress", usage, run, argc, argv); }
