// The graphite grains of a pencil: one speck, turned and scaled, at any place within a pixel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// What a grain leaves on the pixels around it: 16-bit coverage, row by row.
struct TGrainMark {
    int32_t x = 0; ///< of the first pixel, counted from the one that holds the grain's centre
    int32_t y = 0;
    int32_t nWidth = 0; ///< 0 until it is made
    int32_t nHeight = 0;
    size_t nStride = 0; ///< from row to row: the width in whole vectors, nothing behind the pixels
    std::vector<uint16_t> vCover;
};

class CPencilGrain {
public:
    static constexpr size_t LANES = 8; ///< pixels of a vector
    static constexpr int VARIANTS = 5; ///< turned by a fifth of a circle each

    /// `nRoughness` is 0 to 7: the grain's size; `uOpacity` is what it covers, in percent.
    CPencilGrain(int nRoughness, uint32_t uOpacity);

    /// The mark of a variant whose centre lies `fx`, `fy` (0 to 7) cells within its pixel. Made when first
    /// asked for.
    const TGrainMark& MarkAt(int nVariant, int fx, int fy);
    /// Half the side of a turned grain, in cells.
    int GetHalfCells() const { return m_nHalf; }
    /// The cells of a variant: 2 * GetHalfCells() rows of as many, 0 to 65535. Made when first asked for.
    const std::vector<uint16_t>& CellsOf(int nVariant);

private:
    double m_dScale;
    int m_nHalf;
    uint32_t m_uOpacity;
    std::array<std::vector<uint16_t>, VARIANTS> m_aCells;
    std::array<TGrainMark, VARIANTS * 64> m_aMarks;
};
