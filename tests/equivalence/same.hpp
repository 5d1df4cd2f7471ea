// Polygons, lists and trees of the reference compared bit for bit; any NaN equals any NaN.
#pragma once

#include "bits.hpp"
#include "reference.hpp"

namespace orva::equivalence {

/// Says which polygon differs first.
testing::AssertionResult same(const reference::PolygonList& a, const reference::PolygonList& b);

/// Says on which way down from the root the first difference lies.
testing::AssertionResult same(const reference::Node& a, const reference::Node& b);

} // namespace orva::equivalence
