#include "core/RasterStroke/RasterPencilStroke.h"

#include "core/Base/StableMath.h"
#include "core/RasterStamp/StampShape.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double LARGEST = CStrokeRandom::RAND_LARGEST;

constexpr double GRAINS_BY_ROUGHNESS[] = {6400, 1400, 666, 360, 230, 160, 120, 80}; // thousandths
constexpr double GRAINS_BY_HARDNESS[] = {11, 16, 32, 64, 160};
constexpr uint32_t OPACITY_BY_HARDNESS[] = {30, 20, 10, 5, 2}; // percent

// Full for most of the radius, then falling to 0 at its end; constant with a hard edge.
boost::random::piecewise_linear_distribution<double> MakeDistance(uint8_t uBlurLevel) {
    const double dBend = uBlurLevel * 0.7 / 100 + 0.3;
    std::vector<double> vPoints{0.0, dBend, 1.0};
    std::vector<double> vWeights{1.0, 1.0, 0.0};
    if (uBlurLevel >= 100) {
        vPoints = {0.0, 1.0};
        vWeights = {1.0, 1.0};
    }
    return {vPoints, vWeights};
}

// a + b - a * b / 65535, truncated, for each pixel. The rows must not alias, or the compiler cannot
// vectorise.
inline void AddCover(uint16_t* __restrict pRow, const uint16_t* __restrict pCover, size_t nLength) {
    for (size_t i = 0; i < nLength; ++i) {
        const uint32_t uProduct = uint32_t{pCover[i]} * pRow[i];
        pRow[i] = static_cast<uint16_t>(pCover[i] + pRow[i] - ((uProduct + 1 + (uProduct >> 16)) >> 16));
    }
}

// A table of rotations by each number of Rand, for speed.
const TSinCos& DirectionOf(int nRandom) {
    constexpr double TURN = 6.283185307179586;
    static const std::vector<TSinCos> vDirections = [] {
        std::vector<TSinCos> v(CStrokeRandom::RAND_LARGEST + 1);
        for (size_t n = 0; n < v.size(); ++n) v[n] = StableSinCos(static_cast<double>(n) / LARGEST * TURN);
        return v;
    }();
    return vDirections[static_cast<size_t>(nRandom)];
}

const TBrushParam& Checked(const TBrushParam& param) {
    SELF_CHECK(invalid_argument, param.PaperRoughness < std::size(GRAINS_BY_ROUGHNESS));
    SELF_CHECK(invalid_argument, param.PencilHardness < std::size(GRAINS_BY_HARDNESS));
    SELF_CHECK(invalid_argument, param.AltitParam <= 5);
    return param;
}

} // namespace

double PencilSpread(int nParam, uint32_t uAltitude) {
    // Tenths of the width upright, at the bend, flat; and where the bend is, in degrees.
    struct TRow {
        double dBend, dUpright, dFlat, dDegrees;
    };
    constexpr TRow ROWS[] = {
        {10, 8, 40, 40}, {14, 7, 50, 40}, {18, 6, 60, 40}, {22, 5, 70, 40}, {26, 4, 80, 40}};
    if (nParam == 0) return 1.0;
    const TRow& row = ROWS[nParam - 1];
    const double dAltitude = std::clamp(uAltitude, 35u, 75u) / 90.0;
    const double dAt = row.dDegrees / 90;
    const double dBend = row.dBend / 10;
    const double dUpright = row.dUpright / 10;
    const double dFlat = row.dFlat / 10;
    if (dAt <= dAltitude) return ((dUpright - dBend) / (1 - dAt)) * (dAltitude - 1) + dUpright;
    return dFlat + ((dBend - dFlat) / (dAt - 1.0 / 3)) * (dAltitude - 1.0 / 3);
}

CRasterPencilStroke::CRasterPencilStroke(const TStrokeSetup& setup)
    : CRasterStroke(setup), m_pCodecs(setup.pCodecs),
      m_grain(Checked(setup.param).PaperRoughness, OPACITY_BY_HARDNESS[setup.param.PencilHardness]),
      m_distance(MakeDistance(setup.param.BlurLevel)) {}

void CRasterPencilStroke::LoadTexture() {
    const int texId = GetParam().PencilTexture;
    if (texId == 0 || (m_spTexture && m_spTexture->is(texId))) return;
    m_spTexture = std::make_unique<CPencilTexture>(texId, m_pCodecs);
}

// A fraction of a grain is its probability, so that a thin line does not lose all of them.
uint32_t CRasterPencilStroke::CountGrains(uint32_t uRadius, uint8_t byAlpha) {
    const double w = uRadius / 8192.0;
    const double d = GRAINS_BY_ROUGHNESS[GetParam().PaperRoughness] / 1000.0 * byAlpha * (1.0 / 256) *
                     std::sqrt(w) * w * GRAINS_BY_HARDNESS[GetParam().PencilHardness];
    const auto uWhole = static_cast<uint32_t>(d);
    return uWhole + (GetRandom().Rand() / LARGEST < d - uWhole ? 1 : 0);
}

void CRasterPencilStroke::GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t altitude,
                                   int nScale, int ix, int iy) {
    uint32_t uRadius = 0;
    uint8_t byAlpha = 0;
    EvaluatePressure(uRadius, byAlpha, pressure, nScale);
    if (GetParam().AntiSplit) {
        const uint64_t uWobble = uint64_t{GetMinRadius()} * 4 * static_cast<uint64_t>(nScale);
        uRadius = std::max(uRadius, static_cast<uint32_t>((uWobble + uint64_t{uRadius} * 6) / 10));
    }
    const int nLost = uRadius >= 0x40000 ? 2 : uRadius >= 0x10000;
    fx = fx >> nLost << nLost;
    fy = fy >> nLost << nLost;
    brush.byAlpha = 255; // pressure changes the number of grains
    brush.uStep = std::clamp(uRadius >> 12, 8u, 16u);
    LoadTexture();
    const double dSpread = PencilSpread(GetParam().AltitParam, altitude);
    const uint32_t uGrains = CountGrains(uRadius, byAlpha);
    const auto uHalfSize = static_cast<uint32_t>(dSpread * (uRadius / 8192.0) + 2.0);
    brush.uBufferSize = uHalfSize;
    const TThrow params{fx, fy, ix, iy, uRadius, dSpread, uGrains, uHalfSize};
    const size_t nLength = StampLength(uHalfSize);
    const int64_t nMeasure = 90 * (uRadius + int64_t{uGrains} * 8192) + altitude;
    const int64_t nKey = (nMeasure * 64 + fx + fy * 8) * 4 + GetRandom().Rand() % 4;
    const auto make = [&](uint16_t* pStamp) {
        std::fill_n(pStamp, nLength, uint16_t{0});
        ThrowGrains(pStamp, params);
    };
    if (m_spTexture) {
        m_vStamp.resize(nLength);
        make(m_vStamp.data());
        brush.pBuffer = m_vStamp.data();
        return;
    }
    CStampCache& cache = IsPredicting() ? m_cachePredict : m_cache;
    brush.pBuffer = cache.Find(nKey, uHalfSize);
    if (!brush.pBuffer) brush.pBuffer = cache.Make(nKey, uHalfSize, nLength, make);
}

void CRasterPencilStroke::ThrowGrains(uint16_t* pStamp, const TThrow& params) {
    for (uint32_t n = 0; n < params.uGrains; ++n) {
        const CPoint pt = ChoosePlace(params);
        AddGrain(pStamp, params, {pt.x + params.fx, pt.y + params.fy});
    }
}

// The offset of the next accepted grain, in cells from the stamp's centre.
CPoint CRasterPencilStroke::ChoosePlace(const TThrow& params) {
    constexpr int MOST_TRIES = 100000; // no paper is that white
    for (int nTry = 0; nTry < MOST_TRIES; ++nTry) {
        const double dDistance = (params.uRadius / 1024) * params.dSpread * m_distance(GetRandom().Twister());
        const TSinCos& direction = DirectionOf(GetRandom().Rand());
        const CPoint pt{static_cast<int32_t>(dDistance * direction.dCos),
                        static_cast<int32_t>(dDistance * direction.dSin)};
        if (!m_spTexture) return pt;
        const uint8_t uTexel =
            m_spTexture->At(params.fx + params.ix * 8 + pt.x, params.fy + params.iy * 8 + pt.y);
        if (GetRandom().Rand() >= uTexel / 255.0 * LARGEST) return pt;
    }
    ThrowViolation<defect_logic>("nTry < MOST_TRIES");
}

void CRasterPencilStroke::AddGrain(uint16_t* pStamp, const TThrow& params, CPoint ptCell) {
    const int nVariant = GetRandom().Rand() % CPencilGrain::VARIANTS;
    const TGrainMark& mark = m_grain.MarkAt(nVariant, ptCell.x & 7, ptCell.y & 7);
    const auto nHalf = static_cast<int32_t>(params.uHalfSize);
    const CPoint ptFirst{(ptCell.x >> 3) + mark.x + nHalf, (ptCell.y >> 3) + mark.y + nHalf};
    const CRect rc = CRect(ptFirst, CSize{mark.nWidth, mark.nHeight}).Intersect({0, 0, 2 * nHalf, 2 * nHalf});
    const size_t nStride = StampStride(params.uHalfSize);
    if (rc.IsEmpty()) return;
    const bool bCut = rc.Width() < mark.nWidth;
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        uint16_t* pRow = pStamp + STAMP_MARGIN + static_cast<size_t>(y) * nStride + rc.left;
        const uint16_t* pCover =
            mark.vCover.data() + static_cast<size_t>(y - ptFirst.y) * mark.nStride + (rc.left - ptFirst.x);
        if (bCut)
            AddCover(pRow, pCover, static_cast<size_t>(rc.Width()));
        else // whole vectors: the values behind the row do not change
            for (size_t x = 0; x < mark.nStride; x += CPencilGrain::LANES)
                AddCover(pRow + x, pCover + x, CPencilGrain::LANES);
    }
}
