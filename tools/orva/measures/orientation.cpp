#include "measures/orientation.hpp"

#include <array>
#include <cmath>
#include <cstddef>

namespace orva::program {

namespace {

using types::Vec3;

// ---- exact sums and products ----

// A value as the sum of doubles, the smallest first, none zero, no two with bits of the same weight: the last one has
// the sign of the sum. Each number below is what the operations named there can make at most.
template <std::size_t Most> struct Expansion {
    std::array<double, Most> terms{};
    std::size_t count = 0;

    void append(double term) {
        if (term != 0.0) terms[count++] = term;
    }
    int sign() const { return count == 0 ? 0 : terms[count - 1] > 0.0 ? 1 : -1; }
};

struct Pair {
    double high = 0.0; // the rounded result
    double low = 0.0;  // what rounding took
};

Pair twoSum(double a, double b) {
    const double sum = a + b;
    const double ofB = sum - a;
    const double ofA = sum - ofB;
    return {sum, (a - ofA) + (b - ofB)};
}

// Where a is no smaller than b.
Pair fastTwoSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

// Into two halves of 26 bits.
Pair split(double a) {
    constexpr double splitter = 134217729.0; // 2^27 + 1
    const double large = splitter * a;
    const double high = large - (large - a);
    return {high, a - high};
}

Pair twoProduct(double a, double b) {
    const double product = a * b;
    const Pair x = split(a);
    const Pair y = split(b);
    const double error = ((product - x.high * y.high) - x.low * y.high) - x.high * y.low;
    return {product, x.low * y.low - error};
}

Expansion<2> difference(double a, double b) {
    const Pair exact = twoSum(a, -b);
    Expansion<2> result;
    result.append(exact.low);
    result.append(exact.high);
    return result;
}

template <std::size_t M, std::size_t N> Expansion<M + N> sum(const Expansion<M>& a, const Expansion<N>& b) {
    Expansion<M + N> result;
    for (std::size_t i = 0; i < a.count; ++i) result.append(a.terms[i]);
    for (std::size_t j = 0; j < b.count; ++j) {
        Expansion<M + N> grown;
        double carried = b.terms[j];
        for (std::size_t i = 0; i < result.count; ++i) {
            const Pair exact = twoSum(carried, result.terms[i]);
            grown.append(exact.low);
            carried = exact.high;
        }
        grown.append(carried);
        result = grown;
    }
    return result;
}

template <std::size_t M> Expansion<2 * M> scaled(const Expansion<M>& a, double factor) {
    Expansion<2 * M> result;
    if (a.count == 0) return result;
    Pair carried = twoProduct(a.terms[0], factor);
    result.append(carried.low);
    for (std::size_t i = 1; i < a.count; ++i) {
        const Pair product = twoProduct(a.terms[i], factor);
        const Pair lower = twoSum(carried.high, product.low);
        result.append(lower.low);
        carried = fastTwoSum(product.high, lower.high);
        result.append(carried.low);
    }
    result.append(carried.high);
    return result;
}

// By an expansion of two terms at most, as all differences are.
template <std::size_t M> Expansion<4 * M> product(const Expansion<M>& a, const Expansion<2>& b) {
    Expansion<4 * M> result;
    if (b.count == 0) return result;
    const Expansion<4 * M> whole =
        sum(scaled(a, b.terms[0]), b.count == 2 ? scaled(a, b.terms[1]) : Expansion<2 * M>());
    return whole;
}

template <std::size_t M> Expansion<M> negated(Expansion<M> a) {
    for (std::size_t i = 0; i < a.count; ++i) a.terms[i] = -a.terms[i];
    return a;
}

// a * d - b * c
Expansion<16> determinant(const Expansion<2>& a, const Expansion<2>& b, const Expansion<2>& c, const Expansion<2>& d) {
    return sum(product(a, d), negated(product(b, c)));
}

int exactOrientation(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    const Expansion<2> ax = difference(a.x, d.x);
    const Expansion<2> ay = difference(a.y, d.y);
    const Expansion<2> az = difference(a.z, d.z);
    const Expansion<2> bx = difference(b.x, d.x);
    const Expansion<2> by = difference(b.y, d.y);
    const Expansion<2> bz = difference(b.z, d.z);
    const Expansion<2> cx = difference(c.x, d.x);
    const Expansion<2> cy = difference(c.y, d.y);
    const Expansion<2> cz = difference(c.z, d.z);
    const auto ofA = product(determinant(bx, by, cx, cy), az);
    const auto ofB = product(determinant(cx, cy, ax, ay), bz);
    const auto ofC = product(determinant(ax, ay, bx, by), cz);
    return -sum(sum(ofA, ofB), ofC).sign();
}

// ---- in doubles, where that is certain ----

constexpr double epsilon = 1.1102230246251565e-16; // 2^-53: the most that rounding takes of 1

// What rounding can make of a sum of products, relative to the sum of their absolute values (Shewchuk 1997, chapter 4).
constexpr double errorInSpace = (7.0 + 56.0 * epsilon) * epsilon;
constexpr double errorInPlane = (3.0 + 16.0 * epsilon) * epsilon;

// Below this a product may have lost more than rounding takes: it may have underflown.
constexpr double smallestCertain = 1e-250;

int signOf(double value) {
    return value > 0.0 ? 1 : value < 0.0 ? -1 : 0;
}

} // namespace

int orientation(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    // note: planes along the axes are the most usual ones, and in them nothing is certain but this.
    if ((a.x == d.x && b.x == d.x && c.x == d.x) || (a.y == d.y && b.y == d.y && c.y == d.y) ||
        (a.z == d.z && b.z == d.z && c.z == d.z)) {
        return 0;
    }
    const Vec3 u{a.x - d.x, a.y - d.y, a.z - d.z};
    const Vec3 v{b.x - d.x, b.y - d.y, b.z - d.z};
    const Vec3 w{c.x - d.x, c.y - d.y, c.z - d.z};
    const double vw = v.x * w.y;
    const double wv = v.y * w.x;
    const double wu = w.x * u.y;
    const double uw = w.y * u.x;
    const double uv = u.x * v.y;
    const double vu = u.y * v.x;
    const double determinant = u.z * (vw - wv) + v.z * (wu - uw) + w.z * (uv - vu);
    const double size = (std::abs(vw) + std::abs(wv)) * std::abs(u.z) + (std::abs(wu) + std::abs(uw)) * std::abs(v.z) +
                        (std::abs(uv) + std::abs(vu)) * std::abs(w.z);
    if (size > smallestCertain && std::abs(determinant) > errorInSpace * size) return -signOf(determinant);
    return exactOrientation(a, b, c, d);
}

int orientation(const Vec3& a, const Vec3& b, const Vec3& c, const Projection& projection) {
    const auto [x, y] = projection;
    const double bx = b.*x - a.*x;
    const double by = b.*y - a.*y;
    const double cx = c.*x - a.*x;
    const double cy = c.*y - a.*y;
    const double left = bx * cy;
    const double right = by * cx;
    const double size = std::abs(left) + std::abs(right);
    if (size > smallestCertain && std::abs(left - right) > errorInPlane * size) return signOf(left - right);
    if ((bx == 0.0 || cy == 0.0) && (by == 0.0 || cx == 0.0)) return 0; // two in one place, or all along an axis
    if (bx == cx && by == cy) return 0;
    return determinant(difference(b.*x, a.*x), difference(b.*y, a.*y), difference(c.*x, a.*x), difference(c.*y, a.*y))
        .sign();
}

} // namespace orva::program
