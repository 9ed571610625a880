// A layer, mask or channel of a GIMP image as a host's picture. The libgimp library keeps the connection to
// GIMP in globals, so all this works on the thread of the plug-in's call only.
#pragma once

#include "host/HostImage.h"

#include <string>

/// The part of a drawable within the bounds of GIMP's selection, in the drawable's coordinates. Its pixels
/// are kept in memory as 8-bit R, G, B, A: those read by Open, then those written by the session.
class CGimpImage : public IHostImage {
public:
    /// `nDrawable` is GIMP's number of the drawable.
    explicit CGimpImage(int32_t nDrawable);

    /// Why a session cannot change this drawable, in words for the user; empty when it can.
    std::wstring GetObstacle() const;
    /// The image's name in GIMP when the object was created.
    const std::wstring& GetName() const { return m_strName; }

    CRect GetRect() override { return m_rc; }
    /// Red, green and blue also for a grey drawable, and transparency if it has an alpha channel.
    std::vector<THostChannel> GetChannels() override;
    /// Reads the pixels. Raises bad_alloc.
    bool Open() override;
    void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override;
    void Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override;

    /// True when Write changed a pixel.
    bool IsChanged() const { return m_bChanged; }

    /// The target that Deliver wrote to.
    enum class EDelivery {
        Drawable, ///< one undo step of the drawable
        NewLayer, ///< the drawable was no longer as it was when the session started
        NewImage, ///< its image was closed
        Refused,  ///< GIMP refused all of these
    };
    /// Writes the changed pixels to the drawable; all others keep their values in the drawable's own
    /// precision. GIMP blends at the edge of its selection. Raises bad_alloc.
    EDelivery Deliver();

private:
    template <class Function>
    void ForEachByte(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory, Function fn);
    bool IsDrawableAsItWas() const;
    bool MergeIntoDrawable();
    bool AddLayer(int32_t nImage);

    const int32_t m_nDrawable;
    const int32_t m_nImage;
    const CRect m_rc;
    const CSize m_szDrawable;
    const CPoint m_ptInImage; ///< of the drawable's corner
    const std::wstring m_strName;
    const bool m_bAlpha;
    std::vector<uint8_t> m_vPixels;
    std::vector<bool> m_vChanged; ///< one for a pixel
    bool m_bChanged = false;
};
