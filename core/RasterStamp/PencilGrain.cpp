// A stamp has many grains, so a grain's pixels are cached: they depend only on the variant and the subpixel
// position.
#include "core/RasterStamp/PencilGrain.h"

#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Base/StableMath.h"

#include <cmath>
#include <utility>

namespace {

constexpr int IMAGE_SIDE = 40;
constexpr int IMAGE_CENTRE = IMAGE_SIDE / 2;
constexpr double HALF_DIAGONAL = 29.698484809834994; // of 42 by 42: the rotated image and a margin
constexpr int CELLS = 8;                             // to a pixel, in each direction

} // namespace

CPencilGrain::CPencilGrain(int nRoughness, uint32_t uOpacity)
    : m_dScale((nRoughness + 1.0) * 0.078125), m_nHalf(static_cast<int>(std::ceil(m_dScale * HALF_DIAGONAL))),
      m_uOpacity(uOpacity) {}

const std::vector<uint16_t>& CPencilGrain::CellsOf(int nVariant) {
    constexpr double PI = 3.14159265358979323846;
    auto& vKnown = m_aCells[static_cast<size_t>(nVariant)];
    if (!vKnown.empty()) return vKnown;
    std::vector<uint16_t> vCells; // if memory runs out, none is valid
    const auto strImage = FindResource("textures/grain.bin");
    SELF_CHECK(defect_logic, strImage.size() == size_t{IMAGE_SIDE} * IMAGE_SIDE);
    const TSinCos turn = StableSinCos(nVariant * 2 * PI / VARIANTS);
    for (int dy = -m_nHalf; dy < m_nHalf; ++dy)
        for (int dx = -m_nHalf; dx < m_nHalf; ++dx) {
            const int p = static_cast<int>((turn.dCos * dx + turn.dSin * dy) / m_dScale) + IMAGE_CENTRE;
            const int q = static_cast<int>((turn.dCos * dy - turn.dSin * dx) / m_dScale) + IMAGE_CENTRE;
            const bool bIn = p >= 0 && p < IMAGE_SIDE && q >= 0 && q < IMAGE_SIDE;
            const auto uLight =
                bIn ? static_cast<uint8_t>(strImage[static_cast<size_t>(q * IMAGE_SIDE + p)]) : uint8_t{255};
            vCells.push_back(static_cast<uint16_t>((255 - uLight) * 65535 / 255));
        }
    vKnown.swap(vCells);
    return vKnown;
}

const TGrainMark& CPencilGrain::MarkAt(int nVariant, int fx, int fy) {
    TGrainMark& known = m_aMarks[static_cast<size_t>((nVariant * CELLS + fy) * CELLS + fx)];
    if (known.nWidth != 0) return known;
    TGrainMark mark;
    const auto& vCells = CellsOf(nVariant);
    mark.x = (fx - m_nHalf) >> 3;
    mark.y = (fy - m_nHalf) >> 3;
    mark.nWidth = ((fx + m_nHalf - 1) >> 3) - mark.x + 1;
    mark.nHeight = ((fy + m_nHalf - 1) >> 3) - mark.y + 1;
    std::vector<uint32_t> vSums(static_cast<size_t>(mark.nWidth * mark.nHeight));
    for (int i = 0; i < 2 * m_nHalf; ++i)
        for (int j = 0; j < 2 * m_nHalf; ++j) {
            const int nPixelY = ((fy - m_nHalf + i) >> 3) - mark.y;
            const int nPixelX = ((fx - m_nHalf + j) >> 3) - mark.x;
            vSums[static_cast<size_t>(nPixelY * mark.nWidth + nPixelX)] +=
                vCells[static_cast<size_t>(i * 2 * m_nHalf + j)];
        }
    const auto nWidth = static_cast<size_t>(mark.nWidth);
    mark.nStride = (nWidth + LANES - 1) / LANES * LANES;
    mark.vCover.resize(mark.nStride * static_cast<size_t>(mark.nHeight));
    for (size_t idx = 0; idx < vSums.size(); ++idx)
        mark.vCover[idx / nWidth * mark.nStride + idx % nWidth] =
            static_cast<uint16_t>((vSums[idx] >> 6) * m_uOpacity / 100);
    known = std::move(mark);
    return known;
}
