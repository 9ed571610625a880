// Plain 32-bit signed integer geometry; the owner defines the unit.
#pragma once

#include <algorithm>
#include <cstdint>

/// A position; x grows to the right, y downwards.
struct CPoint {
    int32_t x = 0;
    int32_t y = 0;

    friend bool operator==(const CPoint&, const CPoint&) = default;
    friend CPoint operator+(CPoint a, CPoint b) { return {a.x + b.x, a.y + b.y}; }
    friend CPoint operator-(CPoint a, CPoint b) { return {a.x - b.x, a.y - b.y}; }
};

/// A width and a height.
struct CSize {
    int32_t cx = 0;
    int32_t cy = 0;

    friend bool operator==(const CSize&, const CSize&) = default;
};

/// A half-open rectangle: left and top belong to it, right and bottom do not.
struct CRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    CRect() = default;
    CRect(int32_t l, int32_t t, int32_t r, int32_t b) : left(l), top(t), right(r), bottom(b) {}
    CRect(CPoint pt, CSize sz) : left(pt.x), top(pt.y), right(pt.x + sz.cx), bottom(pt.y + sz.cy) {}

    int32_t Width() const { return right - left; }
    int32_t Height() const { return bottom - top; }
    CPoint TopLeft() const { return {left, top}; }
    CSize Size() const { return {Width(), Height()}; }
    /// True when no pixel lies inside.
    bool IsEmpty() const { return left >= right || top >= bottom; }
    bool Contains(CPoint pt) const { return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom; }
    /// The intersection; empty (not necessarily normalised) when there is none.
    CRect Intersect(const CRect& rc) const {
        return {std::max(left, rc.left), std::max(top, rc.top), std::min(right, rc.right),
                std::min(bottom, rc.bottom)};
    }
    /// The smallest rectangle around both; an empty rectangle is ignored.
    CRect Union(const CRect& rc) const {
        if (IsEmpty()) return rc;
        if (rc.IsEmpty()) return *this;
        return {std::min(left, rc.left), std::min(top, rc.top), std::max(right, rc.right),
                std::max(bottom, rc.bottom)};
    }

    friend bool operator==(const CRect&, const CRect&) = default;
};
