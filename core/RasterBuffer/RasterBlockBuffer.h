// The abstract tile: a rectangle of pixels in separate byte planes, one a channel.
#pragma once

#include "core/Base/Color.h"
#include "core/Base/Geometry.h"
#include "core/Serializer/Serializer.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <vector>

class CGDIBuffer;
class CRasterBuffer;
class CScreenMap;
struct CBitmapSession;

/// Tiles are 96 by 96 pixels; a byte plane of that size is a multiple of 64 bytes, so that every plane of a
/// tile starts 64-byte aligned.
constexpr CSize DEFAULT_BLOCKSIZE{96, 96};

/// A tile. Pixel (x, y) of a tile lies at index y * width + x of each plane; tiles are never clipped to their
/// plane. A writer never changes a tile that may be shared: it replaces it by its Clone first.
class CRasterBlockBuffer : boost::noncopyable {
public:
    virtual ~CRasterBlockBuffer() = default;

    /// Reads the tile's chunk; raises deserialize_error, after which the tile must be discarded.
    virtual void Deserialize(CDeserializer& reader) = 0;
    /// Reads and checks what precedes the pixels in the tile's chunk: sets size and position, allocates
    /// nothing. Raises deserialize_error, also when the chunk does not hold exactly these pixels.
    virtual void ReadHead(CDeserializer& reader) = 0;
    /// Sets the geometry and allocates all planes, zeroed. Raises std::bad_alloc without leaking memory.
    virtual void Create(CSize szBlock, CPoint ptPos) = 0;
    /// A new tile with the same size, position, owner and pixels.
    virtual boost::shared_ptr<CRasterBlockBuffer> Clone() const = 0;
    /// A zeroed tile of size `sz` at this tile's position with the same owner.
    virtual boost::shared_ptr<CRasterBlockBuffer> CreateBlank(CSize sz) const = 0;
    /// A tile of size `sz` that holds this one reduced, at this position divided by `iScale`. Pixels beyond
    /// `szInside` from the top-left corner lie outside the plane and are ignored.
    virtual boost::shared_ptr<CRasterBlockBuffer> CreateReduced(CSize sz, int iScale,
                                                                CSize szInside) const = 0;
    /// Draws the target pixels that sample this tile, on white.
    virtual void DrawToScreen(CGDIBuffer& target, const CScreenMap& map) const = 0;
    /// Composites this tile onto `dest` (same position) with the owner's opacity. Another size of `dest`,
    /// or a mask that is not 8-bit coverage of this size, is a defect.
    virtual void BlendInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const = 0;
    /// The same with the given opacity, which coverage tiles ignore.
    virtual void BlendWith(CRasterBlockBuffer& dest, uint8_t uOpacity,
                           const CRasterBlockBuffer* pMask) const = 0;
    /// Fills the tile from the bitmap's pixels at the tile's position; pixels outside the bitmap are
    /// unchanged. Raises internal_error when the bitmap cannot be locked.
    virtual void ReadBitmap(CBitmapSession& session) = 0;
    /// The opposite of ReadBitmap.
    virtual void WriteBitmap(CBitmapSession& session) const = 0;
    /// Sets all planes to 0: transparent.
    virtual void Clear() = 0;
    /// The colour of one pixel, unchecked; a grey tile returns its level in all three bytes.
    virtual TColor GetPixelColor(CPoint pt) const = 0;
    /// The alpha of one pixel, unchecked; for a 16-bit coverage tile its upper byte.
    virtual uint8_t GetPixelAlpha(CPoint pt) const = 0;
    /// Sets every pixel of a colour tile; a grey tile is unchanged.
    virtual void Fill(TColor color, uint8_t uAlpha) = 0;
    /// Composites every pixel on white, as the screen shows it; coverage tiles, which have no colour, are
    /// unchanged.
    virtual void LayOnWhite() {}
    /// The tile's chunk. It refers to the tile, which a shared_ptr must own; copy-on-write keeps the
    /// chunk's content unchanged.
    virtual CSerializer Serialize() const = 0;
    /// Sets the plane whose opacity applies when this tile is blended; one of another kind counts as null.
    /// The pointer is not owning: the tile must not be blended after the owner was destroyed.
    virtual void SetOwner(CRasterBuffer* pOwner) = 0;
    /// Copies the overlap of this tile into `dest`, a tile of the same kind whose top-left corner is at
    /// `ptDest` in this tile's plane. With a mask (8-bit coverage of `dest`'s size, anything else is a
    /// defect) the copied alpha is min(alpha, mask); with `bCut` it is subtracted from this tile.
    virtual void ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                           const CRasterBlockBuffer* pMask) = 0;
    /// Composites the overlap of `src`, a tile of the same kind at `ptSrc`, over this tile by the fast
    /// kernel.
    virtual void PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) = 0;

    CSize GetSize() const { return m_szBlock; }
    CPoint GetPosition() const { return m_ptPos; }
    /// Moves a tile that is in no plane yet.
    void SetPosition(CPoint ptPos) { m_ptPos = ptPos; }
    CRect GetRect() const { return CRect(m_ptPos, m_szBlock); }
    CRasterBuffer* GetOwner() const { return m_pOwner; }
    /// Address of a pixel in the tile's first plane, unchecked.
    uint8_t* GetPixelPtr(CPoint pt) { return m_pFirst + Offset(pt); }
    const uint8_t* GetPixelPtr(CPoint pt) const { return m_pFirst + Offset(pt); }
    /// The bytes of the alpha plane, which is a tile's last one.
    std::vector<uint8_t> CopyAlpha() const;
    /// Takes an alpha plane back; one of another size is a defect. Colours stay.
    void RestoreAlpha(const std::vector<uint8_t>& vAlpha);
    /// Sets every plane to 0 outside a rectangle of the tile's own coordinates.
    void ClearOutside(const CRect& rcKeep);
    /// Bytes of all planes.
    size_t GetBytes() const { return GetPlaneBytes() * m_nPlanes; }
    /// Bytes of one plane.
    size_t GetPlaneBytes() const {
        return static_cast<size_t>(m_szBlock.cx) * static_cast<size_t>(m_szBlock.cy) * m_nSample;
    }

protected:
    /// Sets the geometry and allocates `nPlanes` planes of `nSample` bytes a pixel in one block, the first
    /// 64-byte aligned; not zeroed.
    void Allocate(CSize szBlock, CPoint ptPos, size_t nPlanes, size_t nSample = 1);
    /// The bytes of a mask tile, null for none; a tile that is not 8-bit coverage of size `sz` is a defect.
    static const uint8_t* MaskBytes(const CRasterBlockBuffer* pMask, CSize sz);
    /// One byte per pixel, 255 within `szInside` from the top-left corner, else 0; empty when all pixels
    /// are inside.
    std::vector<uint8_t> InsideBytes(CSize szInside) const;
    uint8_t* GetLastPlane() const { return m_pFirst + (m_nPlanes - 1) * GetPlaneBytes(); }
    size_t Offset(CPoint pt) const {
        return static_cast<size_t>(pt.y) * static_cast<size_t>(m_szBlock.cx) + static_cast<size_t>(pt.x);
    }
    /// The part of `other`, placed at `pt` in this tile's plane, that overlaps this tile, in `other`'s own
    /// coordinates; `ptMove` is the offset from there to this tile's.
    CRect OverlapWith(const CRasterBlockBuffer& other, CPoint pt, CPoint& ptMove) const;

    CPoint m_ptPos;
    CSize m_szBlock;
    CRasterBuffer* m_pOwner = nullptr;
    std::unique_ptr<uint8_t[]> m_pAlloc; ///< holds all planes
    uint8_t* m_pFirst = nullptr;         ///< the first plane, inside m_pAlloc
    size_t m_nPlanes = 0;
    size_t m_nSample = 1; ///< bytes a pixel in each plane
};
