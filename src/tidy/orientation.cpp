#include "tidy/orientation.hpp"

#include <array>
#include <cmath>
#include <cstddef>

namespace orva::tidy {

namespace {

struct Exact {
    double value; ///< rounded
    double error; ///< what rounding took
};

Exact sum(double a, double b) { // D. E. Knuth
    const double value = a + b;
    const double virtualB = value - a;
    const double virtualA = value - virtualB;
    return {value, (a - virtualA) + (b - virtualB)};
}

Exact halves(double a) {                   // T. J. Dekker: two of 26 bits
    const double scaled = 134217729.0 * a; // 2^27 + 1
    const double high = scaled - (scaled - a);
    return {high, a - high};
}

Exact product(double a, double b) {
    const double value = a * b;
    const Exact x = halves(a);
    const Exact y = halves(b);
    return {value, x.error * y.error - (((value - x.value * y.value) - x.error * y.value) - x.value * y.error)};
}

// A sum of doubles none of which overlaps another, smallest first: its sign is that of the last one that is not zero.
struct Expansion {
    std::array<double, 16> terms{};
    std::size_t size = 0;

    void add(double value) {
        for (std::size_t i = 0; i < size; ++i) {
            const Exact exact = sum(value, terms[i]);
            terms[i] = exact.error;
            value = exact.value;
        }
        terms[size++] = value;
    }
};

} // namespace

int orientation(const Vec2& a, const Vec2& b, const Vec2& c) {
    const double left = (a.x - c.x) * (b.y - c.y);
    const double right = (a.y - c.y) * (b.x - c.x);
    const double difference = left - right;
    // Shewchuk's bound on what rounding did to the difference: (3 + 16 u) u times the sum of the sizes, u = 2^-53.
    const double bound = 3.3306690738754716e-16 * (std::fabs(left) + std::fabs(right));
    if (difference > bound) return 1;
    if (-difference > bound) return -1;

    // The determinant, multiplied out: six products of two, twelve terms.
    Expansion exact;
    const auto addProduct = [&exact](double x, double y) {
        const Exact term = product(x, y);
        exact.add(term.error);
        exact.add(term.value);
    };
    addProduct(a.x, b.y);
    addProduct(-a.x, c.y);
    addProduct(-c.x, b.y);
    addProduct(-a.y, b.x);
    addProduct(a.y, c.x);
    addProduct(c.y, b.x);
    for (std::size_t i = exact.size; i-- > 0;) {
        if (exact.terms[i] > 0.0) return 1;
        if (exact.terms[i] < 0.0) return -1;
    }
    return 0;
}

} // namespace orva::tidy
