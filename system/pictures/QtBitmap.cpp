#include "system/pictures/QtBitmap.h"

#include <QColorSpace>

#include <boost/make_shared.hpp>

#include <bit>
#include <cstdlib>

static_assert(std::endian::native == std::endian::little, "Format_ARGB32 must lie in memory as B, G, R, A");

CQtBitmap::CQtBitmap(QImage image) : m_image(std::move(image)) {
    m_image.convertTo(QImage::Format_ARGB32);
    m_image.setColorSpace({}); // colour values are not converted
}

bool CQtBitmap::GetWidth(int32_t& nWidth) {
    nWidth = m_image.width();
    return !m_image.isNull();
}

bool CQtBitmap::GetHeight(int32_t& nHeight) {
    nHeight = m_image.height();
    return !m_image.isNull();
}

bool CQtBitmap::LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) {
    const CRect rcImage(0, 0, m_image.width(), m_image.height());
    if (m_bLocked || rc.IsEmpty() || rc.Intersect(rcImage) != rc) return false;
    // Reading must not copy a picture that is shared; a writer gets a copy of its own.
    uint8_t* pBits = mode == ELockMode::Write ? m_image.bits() : const_cast<uint8_t*>(m_image.constBits());
    if (!pBits) return false;
    bits.nStride = static_cast<int>(m_image.bytesPerLine());
    bits.pData = pBits + static_cast<ptrdiff_t>(rc.top) * bits.nStride + static_cast<ptrdiff_t>(rc.left) * 4;
    m_bLocked = true;
    return true;
}

bool CQtBitmap::UnlockBits() {
    const bool bWasLocked = m_bLocked;
    m_bLocked = false;
    return bWasLocked;
}

namespace {

// Refers to the pixels, but for rows that lie bottom up, which no QImage can refer to.
QImage ImageOf(const TLockedBits& bits, int32_t nWidth, int32_t nHeight) {
    const uint8_t* pFirst = bits.pData;
    if (bits.nStride < 0) pFirst += static_cast<ptrdiff_t>(bits.nStride) * (nHeight - 1);
    const QImage image(pFirst, nWidth, nHeight, std::abs(bits.nStride), QImage::Format_ARGB32);
    return bits.nStride < 0 ? image.mirrored() : image;
}

} // namespace

CLockedImage::CLockedImage(IBitmap& bitmap) : m_bitmap(bitmap) {
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    if (!bitmap.GetWidth(nWidth) || !bitmap.GetHeight(nHeight)) return;
    TLockedBits bits;
    m_bLocked = bitmap.LockBits({0, 0, nWidth, nHeight}, ELockMode::Read, bits);
    if (m_bLocked) m_image = ImageOf(bits, nWidth, nHeight);
    m_image.setDotsPerMeterX(DOTS_PER_METRE);
    m_image.setDotsPerMeterY(DOTS_PER_METRE);
}

CLockedImage::~CLockedImage() {
    if (m_bLocked) m_bitmap.UnlockBits();
}

QImage CopyToImage(IBitmap& bitmap) { return CLockedImage(bitmap).GetImage().copy(); }

boost::shared_ptr<IBitmap> MakeBitmap(const QImage& image) {
    const auto spBitmap = boost::make_shared<CQtBitmap>(image);
    return spBitmap->GetImage().isNull() ? boost::shared_ptr<IBitmap>() : spBitmap;
}

QImage MakeTransparentImage(CSize sz) {
    if (sz.cx <= 0 || sz.cy <= 0 || sz.cx > MAX_IMAGE_SIDE || sz.cy > MAX_IMAGE_SIDE) return {};
    // Zeroed pages are mapped on first use: a large picture costs only the memory that is drawn on.
    void* pPixels = std::calloc(static_cast<size_t>(sz.cy), static_cast<size_t>(sz.cx) * 4);
    if (!pPixels) return {};
    return QImage(static_cast<uchar*>(pPixels), sz.cx, sz.cy, static_cast<qsizetype>(sz.cx) * 4,
                  QImage::Format_ARGB32, std::free, pPixels);
}
