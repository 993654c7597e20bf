#pragma once

#include <algorithm>
#include <vector>

// The middle of a set of measured times.
inline double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}
