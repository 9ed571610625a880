#include "core/ImageOperation/RescalePlane.h"

#include "core/Base/Failure.h"

#include <array>

bool RescaleRect(CRasterBuffer& from, const CRescaleMap& map, const CRect& rcTo, uint8_t* const* apTo,
                 ptrdiff_t nToStride) {
    constexpr size_t MOST_CHANNELS = 4;
    const CRect rcFrom = map.GetSource(rcTo);
    bool bAny = false;
    from.ForEachBlockIn(rcFrom, [&](CPoint pt) { bAny = bAny || from.HasBlock(pt); });
    if (!bAny) return false;
    const auto spTile = from.ExtractBlock(rcFrom, false, nullptr);
    const size_t nChannels = spTile->GetBytes() / spTile->GetPlaneBytes();
    SELF_CHECK(illegal_data, nChannels <= MOST_CHANNELS);
    std::array<const uint8_t*, MOST_CHANNELS> apFrom{};
    for (size_t n = 0; n < nChannels; ++n)
        apFrom[n] = spTile->GetPixelPtr({0, 0}) + n * spTile->GetPlaneBytes();
    map.Render(apTo, nToStride, rcTo, apFrom.data(), rcFrom, nChannels);
    return true;
}
