// A triangle mesh and its reading from a Wavefront OBJ file.
#pragma once
#include <array>
#include <string>
#include <vector>

struct Vec3 {
    float x, y, z;
};
static_assert(sizeof(Vec3) == 3 * sizeof(float)); // an array of them is an array of 1 by 3 matrices for the library

struct Mesh {
    std::vector<Vec3> vertices;
    std::vector<std::array<unsigned, 3>> triangles; // numbers of vertices
};

// Polygons become fans of triangles; texture coordinates, normals and materials are checked but not kept.
// A file that cannot be read as a mesh ends in std::runtime_error with one line that says where and why.
Mesh readObj(const std::string& path);
