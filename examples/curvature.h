// What the programs on the curvature of a mesh share: the matrices, and what their eigenvalues and eigenvectors tell.
#pragma once
#include "picture.h"
#include "program.h"
#include <Eigen/Core>
#include <functional>

using Values = Eigen::Vector3f; // of one matrix, in any order

// The covariance of the points up to two edges away from each vertex.
std::vector<Eigen::Matrix3f> covariances(const Mesh& mesh);

// Compares the values with those of double precision, and the vectors of the smallest values with the normals of the mesh.
// Returns the variation that only the sharpest vertices exceed.
float printResults(const std::vector<Eigen::Matrix3f>& matrices, const std::vector<Values>& values,
                   const std::vector<Vec3>& smallest, const std::vector<Vec3>& normals);

// A colour for each vertex: what is smooth is pale, what is `sharp` dark red; what has no result is grey.
std::vector<Vec3> coloured(const std::vector<Values>& values, float sharp);

// `diagonalise` finds values and vectors of all matrices on one thread, in the library of that name.
void printSpeeds(const char* library, const std::function<void()>& diagonalise,
                 const std::vector<Eigen::Matrix3f>& matrices);

// 0 for a plane, 1/3 where the points scatter evenly in all directions; nan if any of the values is.
inline float variation(const Values& v)
{
    const float sum = v.sum();
    return sum > 0 ? std::max(0.f, v.minCoeff()) / sum : sum == 0 ? 0 : NAN;
}
