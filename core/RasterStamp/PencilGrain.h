// The graphite grains of a pencil: one speck, rotated and scaled, at any subpixel position.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The mark of a grain on the surrounding pixels: 16-bit coverage, row by row.
struct TGrainMark {
    int32_t x = 0; ///< of the first pixel, relative to the pixel of the grain's centre
    int32_t y = 0;
    int32_t nWidth = 0; ///< 0 until it is computed
    int32_t nHeight = 0;
    size_t nStride = 0; ///< between rows: the width in whole vectors, zeros behind the pixels
    std::vector<uint16_t> vCover;
};

class CPencilGrain {
public:
    static constexpr size_t LANES = 8; ///< pixels in a vector
    static constexpr int VARIANTS = 5; ///< each rotated by a fifth of a circle

    /// `nRoughness` is 0 to 7: the grain's size; `uOpacity` is its coverage in percent.
    CPencilGrain(int nRoughness, uint32_t uOpacity);

    /// The mark of a variant whose centre lies `fx`, `fy` (0 to 7) cells within its pixel. Computed at
    /// first use.
    const TGrainMark& MarkAt(int nVariant, int fx, int fy);
    /// Half the side of a rotated grain, in cells.
    int GetHalfCells() const { return m_nHalf; }
    /// The cells of a variant: 2 * GetHalfCells() rows of as many, 0 to 65535. Computed at first use.
    const std::vector<uint16_t>& CellsOf(int nVariant);

private:
    double m_dScale;
    int m_nHalf;
    uint32_t m_uOpacity;
    std::array<std::vector<uint16_t>, VARIANTS> m_aCells;
    std::array<TGrainMark, VARIANTS * 64> m_aMarks;
};
