// A tool that notes where it is moved.
#pragma once

#include "tests/support/TestTool.h"

#include <vector>

struct TMove {
    int32_t x, y;
    uint32_t pressure, altitude, flags;
    friend bool operator==(const TMove&, const TMove&) = default;
};

class CSpyTool : public CTestTool {
public:
    using CTestTool::CTestTool;
    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override {
        m_vMoves.push_back({x, y, pressure, altitude, flags});
        return false;
    }
    bool OnMouseLeave() override { return ++m_nLeaves, false; }
    ECursor GetCursor(CPoint pt) const override { return m_ptCursor = pt, ECursor::Arrow; }

    std::vector<TMove> m_vMoves;
    int m_nLeaves = 0;
    mutable CPoint m_ptCursor{}; ///< the last place asked for
};
