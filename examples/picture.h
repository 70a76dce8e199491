// The picture: shaded views of a mesh, beside and below one another.
#pragma once
#include "camera.h"
#include <string>
#include <vector>

// All cameras of a picture: one for each view, then the lamps. A lamp is a camera as well, for what it sees is lit.
struct Studio {
    static constexpr int views = 6;
    static constexpr int keyLamps = 32, skyLamps = 58; // each view has key lamps of its own, the sky is common
    static constexpr int lamps = views * keyLamps + skyLamps, cameras = views + lamps;
    static constexpr int keyLamp(int view, int i) { return views + view * keyLamps + i; }
    static constexpr int skyLamp(int i) { return views + views * keyLamps + i; }

    explicit Studio(const std::vector<Vec3>& vertices); // around the origin

    float radius, ground;                // of the sphere around the mesh; its lowest point
    std::vector<Vec3> direction;         // of each camera, from the origin that it looks at
    std::vector<Mat4> toScreen, toWorld; // its matrix and the inverse

    Vec3 eye(int view) const { return viewDistance * radius * direction[size_t(view)]; }

private:
    static constexpr float viewDistance = 6; // in radii
    void add(Vec3 from, float distance, float halfWidth);
};

struct Picture {
    int width, height;
    std::vector<unsigned char> rgb;
};

struct Panel {
    int view;
    std::vector<Vec3> colours; // of the vertices, linear; none: clay
};

Picture draw(const Mesh& mesh, const Studio& studio, const std::vector<Panel>& panels, int columns, int viewSize);

// Of length 1; each is the mean of its triangles' normals, weighted by area. `radius` is that of the mesh.
std::vector<Vec3> vertexNormals(const Mesh& mesh, float radius);

// Says before the work what would fail after it.
void checkPngPath(const std::string& path);

// Writes under a temporary name beside `path` and renames when the file is whole.
void writePng(const Picture& picture, const std::string& path);
