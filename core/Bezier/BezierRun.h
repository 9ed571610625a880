// Consecutive curves as one line.
#pragma once

#include "core/Bezier/Bezier.h"

/// Parameters are 16.16: the curve's index and the fraction in it. A run without curves is a single place, 0.
class CBezierRun {
public:
    explicit CBezierRun(std::vector<CBezier> vCurves);

    /// The parameter of the end.
    uint32_t GetLast() const { return static_cast<uint32_t>(m_vCurves.size()) * BEZIER_T_RESOLUTION; }
    /// The arc length from the start to `t`: the sum of the truncated lengths of the curves before and of
    /// the part of the last one.
    uint64_t LengthTo(uint32_t t) const;
    /// The first parameter to which the length is `uLength` at least, by bisection; the end if there is none.
    uint32_t ParameterAt(uint64_t uLength) const;
    /// The curves between two parameters; empty unless `tFirst` is before `tLast`.
    TPolyBezier Part(uint32_t tFirst, uint32_t tLast) const;

private:
    std::vector<CBezier> m_vCurves;
    std::vector<uint64_t> m_vStarts; ///< the lengths before each curve, and of all
};
