// Normals and curvature of a mesh by keslmx: the covariances of the points around its vertices, diagonalised in one call, with
// the matrices as they are and scaled by powers of two.
#include "curvature.h"

namespace {

constexpr const char* usage = R"(usage: scaled_curvature [-o PICTURE] [--size PIXELS] [MESH]

Finds the normal and the surface variation of a mesh at each vertex, by the eigenvalues
and eigenvectors of the covariance of the points up to two edges away: all of them in one
call, first as they are, then scaled by powers of two. Compares the normals with those of
the triangles and the speed with Eigen, and draws the mesh coloured by both results.

  MESH           Wavefront OBJ file; default )" DEFAULT_MESH R"(
  -o PICTURE     PNG file to write; default scaled_curvature.png
  --size PIXELS  width and height of each view, 16 to 4096; default 480
  --help         this text
)";

// A symmetric matrix by six numbers.
struct Sym {
    float xx, xy, xz, yy, yz, zz;
    static Sym of(const Eigen::Matrix3f& a) { return {a(0, 0), a(0, 1), a(0, 2), a(1, 1), a(1, 2), a(2, 2)}; }
    float trace() const { return xx + yy + zz; }
};

Sym times2To(int exponent, const Sym& a)
{
    const auto scaled = [exponent](float x) { return std::ldexp(x, exponent); };
    return {scaled(a.xx), scaled(a.xy), scaled(a.xz), scaled(a.yy), scaled(a.yz), scaled(a.zz)};
}

Sym plus(float shift, const Sym& a) { return {a.xx + shift, a.xy, a.xz, a.yy + shift, a.yz, a.zz + shift}; }

using Vectors = std::array<float, 9>; // column c belongs to value c

// All matrices in one call: the pointers name the nine elements of the first, three of them twice. Values descend.
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

// The exponent that brings the trace to 2^27 .. 2^28: by such numbers the library's tests are no larger than rounding.
int exponentFor(const Sym& a)
{
    int exponent = 28;
    std::frexp(a.trace(), &exponent);
    return 28 - exponent;
}

void run(const Options& options)
{
    checkPngPath(options.picture);
    Mesh mesh = readObj(options.mesh);
    const size_t n = mesh.vertices.size();
    subtract(std::vector(mesh.vertices), middle(mesh.vertices), mesh.vertices);
    const Studio studio(mesh.vertices);
    std::printf("%s: %zu vertices, %zu triangles\n", options.mesh.c_str(), n, mesh.triangles.size());
    const std::vector<Eigen::Matrix3f> full = covariances(mesh);
    std::vector<Sym> matrices(n);
    std::transform(full.begin(), full.end(), matrices.begin(), Sym::of);

    // As they are. What the call does not reach keeps its nan.
    std::vector<Values> plainValues(n, Values::Constant(NAN)), values(n);
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

    std::vector<Vec3> smallest;
    for (const Vectors& v : vectors) smallest.push_back({v[2], v[5], v[8]});
    const float sharp = printResults(full, values, smallest, vertexNormals(mesh, studio.radius));

    std::vector<Values> timedValues(n);
    for (Sym& a : scaled) // a call that ends early would be fast
        if (diagonalise(&a, timedValues.data(), vectors.data(), 1) != keslStatusOk) a = {3, 0, 0, 2, 0, 1};
    printSpeeds(
        "keslmx", [&] { diagonalise(scaled.data(), timedValues.data(), vectors.data(), int(n)); }, full);

    const Picture picture =
        draw(mesh, studio, {{3, coloured(plainValues, sharp)}, {3, coloured(values, sharp)}}, 2, options.size);
    writePng(picture, options.picture);
    std::printf("\npicture: %s, %d by %d pixels\n", options.picture.c_str(), picture.width, picture.height);
}

} // namespace

int main(int argc, char** argv) { return program("scaled_curvature", usage, run, argc, argv); }
