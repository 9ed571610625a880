// Draws a tile's samples to the screen copy, under every zoom, rotation and flip.
#pragma once

#include "core/GDIBuffer/GDIBuffer.h"
#include "core/GDIBuffer/ScreenMap.h"

#include <cstring>
#include <vector>

/// Draws the target pixels that sample the tile at `rcTile`. `resolve(index, count, pScreen)` resolves a
/// run of the tile's pixels into pixels of the screen. Each sampled source row is resolved once, its
/// samples are selected by the map's table, and target rows that sample the same source are copied from the
/// first.
template <class Resolve>
void DrawSamples(CGDIBuffer& target, const CScreenMap& map, const CRect& rcTile, Resolve resolve) {
    constexpr int BYTES = CGDIBuffer::PIXEL_BYTES;
    const CRect rc = map.ToTarget(rcTile);
    if (rc.IsEmpty()) return;
    const auto index = [&](int32_t u, int32_t v) {
        return static_cast<size_t>(v - rcTile.top) * static_cast<size_t>(rcTile.Width()) +
               static_cast<size_t>(u - rcTile.left);
    };
    const CRect rcSource = map.ToCanvas(rc);
    const size_t nSpan = static_cast<size_t>(rcSource.Width());
    const size_t nRowBytes = static_cast<size_t>(rc.Width()) * BYTES;
    const uint8_t* pLast = nullptr; // the previous target row and its source
    int32_t nLast = -1;
    // Writes the target row y, which samples row or column `nSource`; copies it if the last one is the
    // same.
    const auto eachRow = [&](auto write) {
        for (int32_t y = rc.top; y < rc.bottom; ++y) {
            uint8_t* pRow = target.GetPixelPtr({rc.left, y});
            if (pLast && map.AtRow(y) == nLast)
                std::memcpy(pRow, pLast, nRowBytes);
            else
                write(map.AtRow(y), pRow);
            pLast = pRow;
            nLast = map.AtRow(y);
        }
    };
    const auto pick = [](const uint8_t* p, uint8_t* pOut) { std::memcpy(pOut, p, BYTES); };
    if (!map.IsSwapped()) {
        const bool bStraight =
            map.AtColumn(rc.left) <= map.AtColumn(rc.right - 1) && rcSource.Width() == rc.Width();
        std::vector<uint8_t> vRow(bStraight ? 0 : nSpan * BYTES);
        eachRow([&](int32_t v, uint8_t* pRow) {
            resolve(index(rcSource.left, v), nSpan, bStraight ? pRow : vRow.data());
            if (bStraight) return;
            for (int32_t x = rc.left; x < rc.right; ++x, pRow += BYTES)
                pick(vRow.data() + static_cast<size_t>(map.AtColumn(x) - rcSource.left) * BYTES, pRow);
        });
        return;
    }
    // Target columns run along source rows: the sampled rows are resolved first, each into a separate line.
    std::vector<uint8_t> vRows(nSpan * BYTES * static_cast<size_t>(rcSource.Height()));
    const auto line = [&](int32_t v) {
        return vRows.data() + static_cast<size_t>(v - rcSource.top) * nSpan * BYTES;
    };
    for (int32_t x = rc.left, nDone = -1; x < rc.right; ++x) {
        const int32_t v = map.AtColumn(x);
        if (v != nDone) resolve(index(rcSource.left, v), nSpan, line(v));
        nDone = v;
    }
    eachRow([&](int32_t u, uint8_t* pRow) {
        for (int32_t x = rc.left; x < rc.right; ++x, pRow += BYTES)
            pick(line(map.AtColumn(x)) + static_cast<size_t>(u - rcSource.left) * BYTES, pRow);
    });
}
