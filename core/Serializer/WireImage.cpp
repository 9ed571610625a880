#include "core/Serializer/WireImage.h"

#include "core/Base/Failure.h"

void CWireImage::Claim(uint64_t uBytes) {
    if (uBytes > m_uClaimable) throw deserialize_error();
    m_uClaimable -= uBytes;
}
