// Normals and curvature of a mesh by kesl: the covariances of the points around its vertices, diagonalised in one call.
#include "curvature.h"
#include "kesl.hpp"

namespace {

constexpr const char* usage = R"(usage: mesh_curvature [-o PICTURE] [--size PIXELS] [MESH]

Finds the normal and the surface variation of a mesh at each vertex, by the eigenvalues
and eigenvectors of the covariance of the points up to two edges away: all of them in one
call, whatever the units of the mesh. Compares the normals with those of the triangles and
the speed with Eigen, and draws the mesh from two sides, coloured by the result.

  MESH           Wavefront OBJ file; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default mesh_curvature.png
  --size PIXELS  width and height of each view, 16 to 4096; default 480
  --help         this text
)";

void run(const Options& options)
{
    checkPngPath(options.picture);
    Mesh mesh = readObj(options.mesh);
    const size_t n = mesh.vertices.size();
    subtract(std::vector(mesh.vertices), middle(mesh.vertices), mesh.vertices);
    const Studio studio(mesh.vertices);
    std::printf("%s: %zu vertices, %zu triangles\n", options.mesh.c_str(), n, mesh.triangles.size());
    const std::vector<Eigen::Matrix3f> matrices = covariances(mesh);

    std::vector<Values> values(n);
    std::vector<Eigen::Matrix3f> vectors(n);
    const auto diagonalise = [&] { return kesl::eigh(matrices, values, vectors); };
    std::printf("%zd of %zu matrices failed\n", diagonalise(), n);

    std::vector<Vec3> smallest; // values ascend
    for (const Eigen::Matrix3f& v : vectors) smallest.push_back({v(0, 0), v(1, 0), v(2, 0)});
    const float sharp = printResults(matrices, values, smallest, vertexNormals(mesh, studio.radius));
    printSpeeds("kesl", diagonalise, matrices);

    const std::vector<Vec3> colours = coloured(values, sharp);
    const Picture picture = draw(mesh, studio, {{3, colours}, {0, colours}}, 2, options.size);
    writePng(picture, options.picture);
    std::printf("\npicture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("mesh_curvature", usage, run, argc, argv); }
