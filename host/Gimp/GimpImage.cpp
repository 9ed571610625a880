#include "host/Gimp/GimpImage.h"

#include "core/Base/Text.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <libgimp/gimp.h>

namespace {

constexpr size_t CHANNELS = 4;
constexpr int32_t BAND_ROWS = 64; // rows converted at a time

struct TUnref {
    void operator()(GeglBuffer* p) const { g_object_unref(p); }
};
using TBuffer = std::unique_ptr<GeglBuffer, TUnref>;

// GIMP converts every kind of drawable from and to these pixels: straight alpha, sRGB.
const Babl* GetPixelFormat() { return babl_format("R'G'B'A u8"); }

GeglRectangle ToGegl(const CRect& rc) { return {rc.left, rc.top, rc.Width(), rc.Height()}; }

// Empty when the selection leaves nothing of the drawable.
CRect GetSelectedRect(int32_t nDrawable) {
    gint x = 0, y = 0, cx = 0, cy = 0;
    if (!gimp_drawable_mask_intersect(nDrawable, &x, &y, &cx, &cy)) return {};
    return {x, y, x + cx, y + cy};
}

CSize GetDrawableSize(int32_t nDrawable) {
    return {gimp_drawable_width(nDrawable), gimp_drawable_height(nDrawable)};
}

CPoint GetCorner(int32_t nDrawable) {
    gint x = 0, y = 0;
    gimp_drawable_offsets(nDrawable, &x, &y);
    return {x, y};
}

std::wstring GetImageName(int32_t nImage) {
    const std::unique_ptr<gchar, decltype(&g_free)> pszName(gimp_image_get_name(nImage), g_free);
    return pszName ? FromUtf8(pszName.get()) : std::wstring();
}

std::wstring FindObstacle(int32_t nDrawable) {
    if (gimp_item_is_group(nDrawable))
        return L"レイヤーグループには描けません。中のレイヤーを選んでください。";
    if (gimp_item_get_lock_content(nDrawable)) return L"レイヤーがロックされています。";
    if (gimp_drawable_is_indexed(nDrawable))
        return L"インデックスカラーの画像には描けません。RGBに変換してください。";
    return {};
}

} // namespace

CGimpImage::CGimpImage(int32_t nDrawable)
    : m_nDrawable(nDrawable), m_nImage(gimp_item_get_image(nDrawable)), m_rc(GetSelectedRect(nDrawable)),
      m_szDrawable(GetDrawableSize(nDrawable)), m_ptInImage(GetCorner(nDrawable)),
      m_strName(GetImageName(m_nImage)), m_bAlpha(gimp_drawable_has_alpha(nDrawable)) {}

std::wstring CGimpImage::GetObstacle() const {
    return m_rc.IsEmpty() ? L"選択範囲がレイヤーと重なっていません。" : FindObstacle(m_nDrawable);
}

std::vector<THostChannel> CGimpImage::GetChannels() {
    // A channel's own number is its byte in a pixel.
    std::vector<THostChannel> vChannels{{ctRed, 0}, {ctGreen, 1}, {ctBlue, 2}};
    if (m_bAlpha) vChannels.push_back({ctTransparency, 3});
    return vChannels;
}

bool CGimpImage::Open() {
    const size_t uPixels = static_cast<size_t>(m_rc.Width()) * m_rc.Height();
    m_vPixels.resize(uPixels * CHANNELS);
    m_vChanged.resize(uPixels);
    const TBuffer pBuffer(gimp_drawable_get_buffer(m_nDrawable));
    if (!pBuffer) return false;
    const GeglRectangle rc = ToGegl(m_rc);
    gegl_buffer_get(pBuffer.get(), &rc, 1.0, GetPixelFormat(), m_vPixels.data(), GEGL_AUTO_ROWSTRIDE,
                    GEGL_ABYSS_NONE);
    return true;
}

// Calls fn(byte in memory, index of the pixel, byte of the pixel) for the part of `rc` that the picture has.
template <class Function>
void CGimpImage::ForEachByte(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory,
                             Function fn) {
    const CRect rcIn = rc.Intersect(m_rc);
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        for (int32_t x = rcIn.left; x < rcIn.right; ++x) {
            const ptrdiff_t nBits = memory.nBitOffset + static_cast<ptrdiff_t>(y - rc.top) * memory.nRowBits +
                                    static_cast<ptrdiff_t>(x - rc.left) * memory.nColBits;
            const size_t iPixel = static_cast<size_t>(y - m_rc.top) * m_rc.Width() + (x - m_rc.left);
            fn(memory.pData[nBits / 8], iPixel, m_vPixels[iPixel * CHANNELS + channel.uId]);
        }
}

void CGimpImage::Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) {
    ForEachByte(channel, rc, memory, [](uint8_t& uMemory, size_t, uint8_t& uPixel) { uMemory = uPixel; });
}

void CGimpImage::Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) {
    ForEachByte(channel, rc, memory, [&](uint8_t& uMemory, size_t iPixel, uint8_t& uPixel) {
        if (uPixel == uMemory) return;
        uPixel = uMemory;
        m_vChanged[iPixel] = true;
        m_bChanged = true;
    });
}

bool CGimpImage::IsDrawableAsItWas() const {
    return gimp_item_is_valid(m_nDrawable) && GetDrawableSize(m_nDrawable) == m_szDrawable &&
           GetSelectedRect(m_nDrawable) == m_rc && FindObstacle(m_nDrawable).empty();
}

bool CGimpImage::MergeIntoDrawable() {
    {
        const TBuffer pOld(gimp_drawable_get_buffer(m_nDrawable));
        // GIMP takes the result when the last reference to this buffer is released.
        const TBuffer pNew(gimp_drawable_get_shadow_buffer(m_nDrawable));
        if (!pOld || !pNew) return false;
        const Babl* const pOwn = gegl_buffer_get_format(pOld.get());
        const Babl* const pConversion = babl_fish(GetPixelFormat(), pOwn);
        const size_t cbPixel = babl_format_get_bytes_per_pixel(pOwn);
        const size_t uBand = static_cast<size_t>(m_rc.Width()) * BAND_ROWS;
        std::vector<uint8_t> vBand(uBand * cbPixel), vChanged(uBand * cbPixel);
        for (int32_t y = m_rc.top; y < m_rc.bottom; y += BAND_ROWS) {
            const CRect rc{m_rc.left, y, m_rc.right, std::min(y + BAND_ROWS, m_rc.bottom)};
            const GeglRectangle rcBand = ToGegl(rc);
            const size_t iFirst = static_cast<size_t>(y - m_rc.top) * m_rc.Width();
            const size_t uPixels = static_cast<size_t>(rc.Width()) * rc.Height();
            gegl_buffer_get(pOld.get(), &rcBand, 1.0, pOwn, vBand.data(), GEGL_AUTO_ROWSTRIDE,
                            GEGL_ABYSS_NONE);
            babl_process(pConversion, &m_vPixels[iFirst * CHANNELS], vChanged.data(),
                         static_cast<glong>(uPixels));
            for (size_t i = 0; i < uPixels; ++i)
                if (m_vChanged[iFirst + i]) std::memcpy(&vBand[i * cbPixel], &vChanged[i * cbPixel], cbPixel);
            gegl_buffer_set(pNew.get(), &rcBand, 0, pOwn, vBand.data(), GEGL_AUTO_ROWSTRIDE);
        }
    }
    return gimp_drawable_merge_shadow(m_nDrawable, TRUE) &&
           gimp_drawable_update(m_nDrawable, m_rc.left, m_rc.top, m_rc.Width(), m_rc.Height());
}

bool CGimpImage::AddLayer(int32_t nImage) {
    const bool bGrey = gimp_image_base_type(nImage) == GIMP_GRAY;
    const int32_t nLayer =
        gimp_layer_new(nImage, "Vellumcraft", m_rc.Width(), m_rc.Height(),
                       bGrey ? GIMP_GRAYA_IMAGE : GIMP_RGBA_IMAGE, 100, GIMP_LAYER_MODE_NORMAL);
    if (nLayer < 0) return false;
    gimp_layer_set_offsets(nLayer, m_ptInImage.x + m_rc.left, m_ptInImage.y + m_rc.top);
    if (!gimp_image_insert_layer(nImage, nLayer, 0, -1)) return false;
    const TBuffer pBuffer(gimp_drawable_get_buffer(nLayer));
    if (!pBuffer) return false;
    gegl_buffer_set(pBuffer.get(), nullptr, 0, GetPixelFormat(), m_vPixels.data(), GEGL_AUTO_ROWSTRIDE);
    gegl_buffer_flush(pBuffer.get());
    return gimp_drawable_update(nLayer, 0, 0, m_rc.Width(), m_rc.Height());
}

CGimpImage::EDelivery CGimpImage::Deliver() {
    if (IsDrawableAsItWas() && MergeIntoDrawable()) return EDelivery::Drawable;
    if (gimp_image_is_valid(m_nImage)) {
        gimp_image_undo_group_start(m_nImage);
        const bool bAdded = AddLayer(m_nImage);
        gimp_image_undo_group_end(m_nImage);
        return bAdded ? EDelivery::NewLayer : EDelivery::Refused;
    }
    const int32_t nImage = gimp_image_new(m_rc.Width(), m_rc.Height(), GIMP_RGB);
    if (nImage < 0 || !AddLayer(nImage)) return EDelivery::Refused;
    gimp_image_resize_to_layers(nImage);
    gimp_display_new(nImage);
    return EDelivery::NewImage;
}
