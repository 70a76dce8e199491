#include "picture.h"
#include "progress.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <png.h>
#include <unistd.h>

namespace {

constexpr int fineness = 3;   // samples of a pixel in each direction
constexpr int lampSize = 384; // pixels of a lamp's depth map in each direction
constexpr float farAway = 2;  // a depth behind all that a camera sees

Vec3 operator*(Vec3 a, Vec3 b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
Vec3 mix(Vec3 a, Vec3 b, float t) { return a + t * (b - a); }
float smoothstep(float from, float to, float x)
{
    const float t = std::clamp((x - from) / (to - from), 0.f, 1.f);
    return t * t * (3 - 2 * t);
}

// ---- Surfaces

// From -1 .. 1 to pixels, y downwards.
float column(float x, int size) { return (x + 1) * 0.5f * float(size); }
float row(float y, int size) { return (1 - y) * 0.5f * float(size); }

// Calls paint(pixel, depth, weights of the corners) for each pixel whose centre the triangle covers.
template <class Paint> void rasterise(Vec3 a, Vec3 b, Vec3 c, int size, Paint paint)
{
    for (Vec3* p : {&a, &b, &c}) *p = {column(p->x, size), row(p->y, size), p->z};
    const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x), scale = 1 / area;
    if (area == 0) return;
    const auto first = [size](float x) { return int(std::clamp(std::ceil(x - 0.5f), 0.f, float(size))); };
    const int left = first(std::min({a.x, b.x, c.x})), right = first(std::max({a.x, b.x, c.x}));
    const int top = first(std::min({a.y, b.y, c.y})), bottom = first(std::max({a.y, b.y, c.y}));
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) {
            const float px = float(x) + 0.5f, py = float(y) + 0.5f;
            const float wa = ((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) * scale;
            const float wb = ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) * scale;
            const float wc = 1 - wa - wb;
            if (wa >= 0 && wb >= 0 && wc >= 0)
                paint(size_t(y) * size_t(size) + size_t(x), wa * a.z + wb * b.z + wc * c.z, wa, wb, wc);
        }
}

Vec3 faceNormal(const Mesh& mesh, const std::array<unsigned, 3>& t, float radius) // as long as the triangle is large
{
    const Vec3 &a = mesh.vertices[t[0]], &b = mesh.vertices[t[1]], &c = mesh.vertices[t[2]];
    return cross(1 / radius * (b - a), 1 / radius * (c - a));
}

using DepthMap = std::vector<float>; // how far a lamp sees at each of its pixels

std::vector<DepthMap> depthMaps(const Mesh& mesh, const Studio& studio)
{
    std::vector<DepthMap> maps(Studio::cameras);
    Progress progress("placing the lamps", Studio::lamps);
    inParallel(Studio::lamps, progress, [&](int lamp) {
        const size_t camera = size_t(Studio::views + lamp);
        std::vector<Vec3> seen(mesh.vertices.size());
        transform(studio.toScreen[camera], mesh.vertices, seen);
        DepthMap map(size_t(lampSize) * lampSize, farAway);
        for (const auto& [a, b, c] : mesh.triangles)
            rasterise(seen[a], seen[b], seen[c], lampSize,
                      [&](size_t pixel, float z, float, float, float) { map[pixel] = std::min(map[pixel], z); });
        maps[camera] = std::move(map);
    });
    return maps;
}

constexpr Vec3 clay{0.9f, 0.78f, 0.66f};

enum class Kind { backdrop, ground, mesh };

struct Sample {
    float depth = farAway;
    Vec3 normal{};
    Kind kind = Kind::backdrop;
    Vec3 colour{};
};

// What a view shows at each of its samples: the mesh, and the ground as a square of four more points.
std::vector<Sample> surfaces(const Mesh& mesh, const std::vector<Vec3>& normals, const Studio& studio, const Panel& panel,
                             int size)
{
    const int view = panel.view;
    const float far = 2.5f * studio.radius, y = studio.ground;
    std::vector<Vec3> points = mesh.vertices;
    points.insert(points.end(), {{-far, y, -far}, {far, y, -far}, {far, y, far}, {-far, y, far}});
    std::vector<Vec3> seen(points.size());
    transform(studio.toScreen[size_t(view)], points, seen);

    std::vector<Sample> samples(size_t(size) * size_t(size));
    const auto cover = [&](size_t at, const Sample& sample) {
        if (sample.depth < samples[at].depth) samples[at] = sample;
    };
    const Vec3* const square = &seen[mesh.vertices.size()];
    for (int i : {1, 2})
        rasterise(square[0], square[i], square[i + 1], size, [&](size_t at, float z, float, float, float) {
            cover(at, {z, {0, 1, 0}, Kind::ground, {}});
        });
    const Vec3 eye = studio.eye(view);
    for (const auto& [a, b, c] : mesh.triangles) {
        const Vec3 face = faceNormal(mesh, {a, b, c}, studio.radius);
        if (!(length(face) > 0)) continue;
        const float side = dot(face, eye - points[a]) < 0 ? -1.f : 1.f; // seen from behind, it is lit from behind
        const auto corner = [&, flat = unit(face)](unsigned v) {        // sharp edges stay sharp
            return side * (dot(normals[v], flat) > 0.7f ? normals[v] : flat);
        };
        const Vec3 na = corner(a), nb = corner(b), nc = corner(c);
        rasterise(seen[a], seen[b], seen[c], size, [&](size_t at, float z, float wa, float wb, float wc) {
            const Vec3 colour =
                panel.colours.empty() ? clay : wa * panel.colours[a] + wb * panel.colours[b] + wc * panel.colours[c];
            cover(at, {z, wa * na + wb * nb + wc * nc, Kind::mesh, colour});
        });
    }
    return samples;
}

// ---- Light; colours are linear until a sample is displayed

constexpr Vec3 keyColour{2.6f, 2.35f, 2.05f}, skyColour{1.24f, 1.44f, 1.8f}, white{1, 1, 1};
constexpr Vec3 backdrops[Studio::views] = {{0.80f, 0.27f, 0.17f}, {0.85f, 0.50f, 0.12f}, {0.24f, 0.50f, 0.36f},
                                           {0.10f, 0.38f, 0.50f}, {0.22f, 0.24f, 0.52f}, {0.62f, 0.26f, 0.40f}};

Vec3 backdropAt(int view, float x, float y)
{
    const float distance = std::hypot(x, y - 0.16f);
    return mix(1.15f * backdrops[view], 0.55f * backdrops[view], smoothstep(0.1f, 1.7f, distance));
}

Vec3 displayed(Vec3 light) // a filmic shoulder, then the sRGB curve
{
    const auto curve = [](float x) {
        const float y = x * (2.51f * x + 0.03f) / (x * (2.43f * x + 0.59f) + 0.14f);
        return y <= 0.0031308f ? 12.92f * y : 1.055f * std::pow(y, 1 / 2.4f) - 0.055f;
    };
    return {curve(light.x), curve(light.y), curve(light.z)};
}

// The lamps of one kind.
struct Lamps {
    int first, count;
    Vec3 colour; // of all together
};

// Adds to `lit` what the lamps send to points on a surface: those that a lamp sees no farther than its depth map tells.
void shine(const Lamps& lamps, const Studio& studio, const std::vector<DepthMap>& maps, const std::vector<Vec3>& points,
           const std::vector<Vec3>& normals, std::vector<Vec3>& lit)
{
    std::vector<Vec3> seen(points.size());
    for (size_t lamp = size_t(lamps.first); lamp < size_t(lamps.first + lamps.count); ++lamp) {
        transform(studio.toScreen[lamp], points, seen);
        for (size_t i = 0; i < points.size(); ++i) {
            const float facing = dot(normals[i], studio.direction[lamp]);
            const float x = column(seen[i].x, lampSize), y = row(seen[i].y, lampSize);
            const bool inside = x >= 0 && x < lampSize && y >= 0 && y < lampSize;
            const bool shaded = inside && seen[i].z > maps[lamp][size_t(y) * lampSize + size_t(x)];
            if (facing > 0 && !shaded) lit[i] = lit[i] + facing / float(lamps.count) * lamps.colour;
        }
    }
}

// The colours of samples that lie on the mesh or on the ground, at their places on the screen.
std::vector<Vec3> shade(const std::vector<Sample>& samples, const std::vector<Vec3>& screen, int view, const Studio& studio,
                        const std::vector<DepthMap>& maps)
{
    const size_t n = samples.size();
    const Vec3 eye = studio.eye(view), keyDirection = studio.direction[size_t(Studio::keyLamp(view, 0))];
    std::vector<Vec3> world(n), lifted(n), normals(n), key(n), sky(n), colours(n);
    transform(studio.toWorld[size_t(view)], screen, world);
    for (size_t i = 0; i < n; ++i) {
        normals[i] = unit(samples[i].normal);
        lifted[i] = world[i] + 0.012f * studio.radius * normals[i]; // off the surface, which would shade itself
    }
    shine({Studio::keyLamp(view, 0), Studio::keyLamps, keyColour}, studio, maps, lifted, normals, key);
    shine({Studio::skyLamp(0), Studio::skyLamps, skyColour}, studio, maps, lifted, normals, sky);

    for (size_t i = 0; i < n; ++i) {
        if (samples[i].kind == Kind::ground) { // is the backdrop itself, but for the shadows
            const float open = 0.62f * key[i].y / (keyDirection.y * keyColour.y) + 0.38f * sky[i].y / (0.5f * skyColour.y);
            const Vec3 backdrop = backdropAt(view, screen[i].x, screen[i].y);
            const float near = smoothstep(2.4f, 1.4f, length(world[i]) / studio.radius);
            colours[i] = mix(backdrop, (0.18f + 0.82f * open) * backdrop, near);
        } else {
            const Vec3 toEye = unit(eye - world[i]);
            const float rim = std::pow(1 - std::max(0.f, dot(normals[i], toEye)), 4.f);
            const float gloss = std::pow(std::max(0.f, dot(normals[i], unit(toEye + keyDirection))), 40.f);
            const Vec3 bounced = (0.18f - 0.12f * normals[i].y) * backdrops[view]; // by the ground
            colours[i] = samples[i].colour * (0.27f * (key[i] + sky[i]) + bounced) +
                         (0.1f * gloss * key[i].y + 0.25f * rim * sky[i].y) * white;
        }
    }
    return colours;
}

// One row of pixels from its `fineness` rows of samples.
void drawRow(const Sample* samples, int y, int view, const Studio& studio, const std::vector<DepthMap>& maps, int size,
             unsigned char* rgb)
{
    std::vector<Vec3> sum(size_t(size), Vec3{}), screen;
    std::vector<Sample> covered;
    std::vector<size_t> pixel;
    for (int fy = 0; fy < fineness; ++fy)
        for (int fx = 0; fx < size * fineness; ++fx, ++samples) {
            const float scale = 2 / float(size * fineness);
            const Vec3 at = {(float(fx) + 0.5f) * scale - 1, 1 - (float(y * fineness + fy) + 0.5f) * scale, samples->depth};
            const size_t x = size_t(fx / fineness);
            if (samples->kind == Kind::backdrop) {
                sum[x] = sum[x] + displayed(backdropAt(view, at.x, at.y));
            } else {
                covered.push_back(*samples);
                screen.push_back(at);
                pixel.push_back(x);
            }
        }
    if (!covered.empty()) {
        const auto colours = shade(covered, screen, view, studio, maps);
        for (size_t i = 0; i < colours.size(); ++i) sum[pixel[i]] = sum[pixel[i]] + displayed(colours[i]);
    }
    for (Vec3 c : sum)
        for (float channel : {c.x, c.y, c.z})
            *rgb++ = static_cast<unsigned char>(std::clamp(channel / (fineness * fineness), 0.f, 1.f) * 255 + 0.5f);
}

} // namespace

Studio::Studio(const std::vector<Vec3>& vertices) : radius(0), ground(0), toWorld(cameras)
{
    for (Vec3 v : vertices) {
        radius = std::max(radius, length(v));
        ground = std::min(ground, v.y);
    }
    if (radius == 0) throw std::runtime_error("all vertices of the mesh lie in one point");
    if (!(radius > 1e-15f && radius < 1e15f)) throw std::runtime_error("the mesh is too small or too large for its cameras");

    const auto azimuth = [](int view) { return 20 + 360 * float(view) / views; };
    for (int view = 0; view < views; ++view) add(::direction(azimuth(view), 14), viewDistance, 1.05f);
    for (int view = 0; view < views; ++view)
        for (int i = 0; i < keyLamps; ++i) { // a round lamp, high on the left of the camera
            const float r = 9 * std::sqrt((float(i) + 0.5f) / keyLamps), turn = 2.39996f * float(i);
            add(::direction(azimuth(view) - 48 + r * std::cos(turn), 46 + r * std::sin(turn)), 5, 1.03f);
        }
    for (int i = 0; i < skyLamps; ++i) // evenly all over the sky, by the golden angle
        add(::direction(137.508f * float(i), 57.29578f * std::asin((float(i) + 0.5f) / skyLamps)), 5, 1.03f);
    invert(toScreen, toWorld);
}

void Studio::add(Vec3 from, float distance, float halfWidth)
{
    direction.push_back(from);
    toScreen.push_back(cameraMatrix(distance * radius * from, {0, 0, 0}, halfWidth * radius, (distance - 3) * radius,
                                    (distance + 3) * radius));
}

std::vector<Vec3> vertexNormals(const Mesh& mesh, float radius)
{
    std::vector<Vec3> normals(mesh.vertices.size());
    for (const auto& [a, b, c] : mesh.triangles) {
        const Vec3 n = faceNormal(mesh, {a, b, c}, radius);
        for (auto corner : {a, b, c}) normals[corner] = normals[corner] + n;
    }
    for (Vec3& n : normals) n = length(n) > 0 ? unit(n) : Vec3{0, 1, 0};
    return normals;
}

Picture draw(const Mesh& mesh, const Studio& studio, const std::vector<Panel>& panels, int columns, int viewSize)
{
    const auto maps = depthMaps(mesh, studio);
    const auto normals = vertexNormals(mesh, studio.radius);
    const int count = int(panels.size());
    Picture picture{columns * viewSize, (count + columns - 1) / columns * viewSize, {}};
    picture.rgb.resize(3 * size_t(picture.width) * size_t(picture.height));
    Progress progress("drawing", count * viewSize);
    for (int i = 0; i < count; ++i) {
        const Panel& panel = panels[size_t(i)];
        const auto samples = surfaces(mesh, normals, studio, panel, viewSize * fineness);
        const int left = i % columns * viewSize, top = i / columns * viewSize;
        inParallel(viewSize, progress, [&](int y) {
            drawRow(&samples[size_t(y) * fineness * fineness * size_t(viewSize)], y, panel.view, studio, maps, viewSize,
                    &picture.rgb[3 * (size_t(top + y) * size_t(picture.width) + size_t(left))]);
        });
    }
    return picture;
}

namespace fs = std::filesystem;

static fs::path target(const std::string& path) { return fs::weakly_canonical(fs::absolute(path)); } // links stay links

void checkPngPath(const std::string& path)
{
    const bool plain = !path.empty() && (!fs::exists(target(path)) || fs::is_regular_file(target(path)));
    if (!plain) throw std::runtime_error("'" + path + "' is no name for a plain file");
    if (access(target(path).parent_path().c_str(), W_OK)) throw std::runtime_error(path + ": " + std::strerror(errno));
}

void writePng(const Picture& picture, const std::string& path)
{
    const std::string part = target(path).string() + "." + std::to_string(getpid()) + ".part";
    errno = 0;
    FILE* const file = std::fopen(part.c_str(), "wbx");
    bool good = file;
    if (file) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = png_uint_32(picture.width);
        image.height = png_uint_32(picture.height);
        image.format = PNG_FORMAT_RGB;
        good = png_image_write_to_stdio(&image, file, 0, picture.rgb.data(), 0, nullptr);
        good = std::fclose(file) == 0 && good; // closed in any case
        good = good && std::rename(part.c_str(), target(path).c_str()) == 0;
    }
    if (good) return;
    const std::string why = errno ? std::strerror(errno) : "cannot be written";
    if (file) std::remove(part.c_str());
    throw std::runtime_error(path + ": " + why);
}
