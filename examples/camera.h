// Vectors and cameras, and the library's calls on them with their statuses checked.
#pragma once
#include "keslmx.h"
#include "mesh.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

inline Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(float s, Vec3 a) { return {s * a.x, s * a.y, s * a.z}; }
inline float dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(Vec3 a, Vec3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
inline float length(Vec3 a) { return std::sqrt(dot(a, a)); }
inline Vec3 unit(Vec3 a) { return 1 / length(a) * a; }

// The unit vector at an azimuth around the y axis and an elevation over the ground, both in degrees.
inline Vec3 direction(float azimuth, float elevation)
{
    const float radian = 3.14159265f / 180, a = azimuth * radian, e = elevation * radian;
    return {std::sin(a) * std::cos(e), std::sin(e), std::cos(a) * std::cos(e)};
}

// The middle of the box around the points.
inline Vec3 middle(const std::vector<Vec3>& points)
{
    Vec3 low = points[0], high = low;
    for (Vec3 p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return 0.5f * low + 0.5f * high;
}

using Mat4 = std::array<float, 16>; // by rows

// Perspective times view: a camera at eye that looks at target, and sees as far as `halfWidth` to each side of it.
// What lies between the planes near and far maps to -1 .. 1 in all three coordinates.
inline Mat4 cameraMatrix(Vec3 eye, Vec3 target, float halfWidth, float near, float far)
{
    const Vec3 back = unit(eye - target);
    const Vec3 right = unit(cross(std::fabs(back.y) < 0.99f ? Vec3{0, 1, 0} : Vec3{0, 0, 1}, back));
    const Vec3 up = cross(back, right);
    const float zoom = length(eye - target) / halfWidth;
    const float a = (far + near) / (near - far), b = 2 * far * near / (near - far);
    const float r = dot(right, eye), u = dot(up, eye), d = dot(back, eye);
    return {zoom * right.x, zoom * right.y, zoom * right.z, -zoom * r, //
            zoom * up.x,    zoom * up.y,    zoom * up.z,    -zoom * u, //
            a * back.x,     a * back.y,     a * back.z,     b - a * d, //
            -back.x,        -back.y,        -back.z,        d};
}

inline void check(KeslStatus status, const char* call)
{
    if (status != keslStatusOk) throw std::runtime_error(std::string(call) + " gave status " + std::to_string(status));
}

// All points through one matrix.
inline void transform(const Mat4& matrix, const std::vector<Vec3>& points, std::vector<Vec3>& result)
{
    check(keslAffineTransform3DH_mva_32f(matrix.data(), 16, 4, &points[0].x, sizeof(Vec3), 4, &result[0].x, sizeof(Vec3), 4,
                                         int(points.size())),
          "keslAffineTransform3DH_mva_32f");
}

// All matrices in one call.
inline void invert(const std::vector<Mat4>& matrices, std::vector<Mat4>& inverses)
{
    float buffer[4 * 4 + 4];
    check(keslInvert_ma_32f(matrices[0].data(), sizeof(Mat4), 16, 4, buffer, inverses[0].data(), sizeof(Mat4), 16, 4, 4,
                            int(matrices.size())),
          "keslInvert_ma_32f");
}

// All points moved by one vector, which the library takes as 1 by 3 matrices.
inline void subtract(const std::vector<Vec3>& points, Vec3 origin, std::vector<Vec3>& result)
{
    check(keslSub_mam_32f(&points[0].x, sizeof(Vec3), sizeof(Vec3), 4, &origin.x, sizeof(Vec3), 4, &result[0].x,
                          sizeof(Vec3), sizeof(Vec3), 4, 3, 1, int(points.size())),
          "keslSub_mam_32f");
}
