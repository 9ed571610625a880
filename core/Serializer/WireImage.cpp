#include "core/Serializer/WireImage.h"

#include "core/Base/Failure.h"

#include <algorithm>

void CWireImage::Claim(uint64_t uBytes) {
    if (uBytes > m_uClaimable) throw deserialize_error();
    m_uClaimable -= uBytes;
}

void CWireImage::SetAttached(std::vector<TAttached> vAttached) {
    m_vAttached = std::move(vAttached);
    std::ranges::sort(m_vAttached);
}

std::span<const CWireImage::TAttached> CWireImage::AttachedTo(uint32_t uOwner) const {
    return std::ranges::equal_range(m_vAttached, uOwner, {}, &TAttached::uOwner);
}
