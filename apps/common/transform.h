// SPDX-License-Identifier: MIT
// Places of nodes: a matrix of four rows, for column vectors.
#pragma once

#include <array>
#include <cstddef>

namespace kor_apps {

using Matrix = std::array<double, 16>;
using Point3 = std::array<double, 3>;

inline constexpr Matrix identity_matrix { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1 };

// First `b`, then `a`.
inline Matrix multiply(Matrix const &a, Matrix const &b)
{
    Matrix product {};
    for (std::size_t row = 0; row < 16; row += 4) {
        for (std::size_t column = 0; column < 4; ++column) {
            for (std::size_t i = 0; i < 4; ++i)
                product[row + column] += a[row + i] * b[4 * i + column];
        }
    }
    return product;
}

inline Point3 transform(Matrix const &matrix, Point3 const &point)
{
    Point3 result {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double const *const row = matrix.data() + 4 * axis;
        result[axis] = row[0] * point[0] + row[1] * point[1] + row[2] * point[2] + row[3];
    }
    return result;
}

} // namespace kor_apps
