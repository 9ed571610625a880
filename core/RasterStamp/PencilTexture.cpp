#include "core/RasterStamp/PencilTexture.h"

#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Platform/Bitmap.h"

#include <string>

CPencilTexture::CPencilTexture(int nTexture, IImageCodecs* pCodecs) : m_nTexture(nTexture) {
    constexpr int FIRST_ID = 65500;
    if (nTexture < 1 || nTexture > 3) ThrowViolation<defect_logic>("unknown texture");
    const auto strBytes = FindResource("textures/" + std::to_string(FIRST_ID + nTexture - 1) + ".png");
    const auto img = pCodecs ? pCodecs->LoadResource(strBytes) : nullptr;
    SELF_CHECK(defect_logic, img);
    TLockedBits bits;
    const bool bLocked = img->GetWidth(m_sz.cx) && img->GetHeight(m_sz.cy) &&
                         img->LockBits(CRect({0, 0}, m_sz), ELockMode::Read, bits);
    if (!bLocked) ThrowViolation<illegal_data>("img->LockBits");
    for (int32_t y = 0; y < m_sz.cy; ++y) {
        const uint8_t* pRow = bits.pData + static_cast<ptrdiff_t>(y) * bits.nStride;
        for (int32_t x = 0; x < m_sz.cx; ++x) m_vTexels.push_back(pRow[x * 4 + 1]); // green
    }
    img->UnlockBits();
}
