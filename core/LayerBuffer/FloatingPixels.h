// Pixels that float above a raster layer: moved as often as one likes, merged into the layer later.
#pragma once

#include "core/LayerBuffer/RasterOverlay.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <optional>

class CRasterLayerBuffer;

/// Pixels of a layer's kind with the selection that they were taken with, at any place, also beyond the
/// canvas. Never changed after it was created: a moved one is a new record that shares plane and mask.
class CFloatingPixels : public IRasterOverlay, boost::noncopyable {
public:
    using TMask = CAlphaBufferImpl<uint8_t>;

    /// `spMask` has the plane's size, null for pixels without a selection. `ptOffset` is the canvas position
    /// of the plane's corner. `ptHome` is where the pixels were cut from, nullopt for copied and pasted ones.
    CFloatingPixels(const boost::shared_ptr<CRasterBuffer>& spPlane, const boost::shared_ptr<TMask>& spMask,
                    CPoint ptOffset, std::optional<CPoint> ptHome)
        : m_spPlane(spPlane), m_spMask(spMask), m_ptOffset(ptOffset), m_ptHome(ptHome) {}

    CRasterBuffer& GetPlane() const { return *m_spPlane; }
    /// Null for pixels without a selection.
    const boost::shared_ptr<TMask>& GetMask() const { return m_spMask; }
    CPoint GetOffset() const { return m_ptOffset; }
    /// The plane's rectangle on the canvas.
    CRect GetRect() const { return CRect(m_ptOffset, m_spPlane->GetSize()); }

    /// The same pixels at another place.
    boost::shared_ptr<CFloatingPixels> MoveTo(CPoint ptOffset) const;
    /// The same pixels at the same place as a copy: they were cut from nowhere.
    boost::shared_ptr<CFloatingPixels> Copy() const;
    /// The mask where it lies, as a canvas's selection; null without a mask, and when none of it is on the
    /// canvas.
    boost::shared_ptr<CSelectBuffer> CreateSelect(CSize szCanvas) const;

    bool CoversBlock(CPoint pt) const override;
    /// Composites the pixels onto a tile of the layer's plane. At the place that they were cut from, alpha is
    /// added back, so that the tile gets the bytes that it had before the cut.
    void PaintInto(CRasterBlockBuffer& tile) const override;
    /// The same for good into the layer's plane, which shares tiles where it can.
    void MergeInto(CRasterBuffer& raster, CPoint pt) const;
    void PassFlags(CBoolMatrix&) override {}
    void ClearFlag(CPoint) override {}

    /// Memory that `pOther`, null for none, does not share.
    size_t GetBytes(const CFloatingPixels* pOther) const;
    /// True when the tile that lay at the canvas's block `pt` before the cut is one of these.
    bool HoldsCutTile(CPoint pt, const CRasterBlockBuffer* pTile) const;

private:
    bool IsHome() const { return m_ptHome == m_ptOffset; }

    boost::shared_ptr<CRasterBuffer> m_spPlane;
    boost::shared_ptr<TMask> m_spMask;
    CPoint m_ptOffset;
    std::optional<CPoint> m_ptHome;
};

/// Takes pixels from a layer's plane, with bCut off the plane: alpha min(alpha, mask) under a selection of
/// the plane's size, everything without one. Tiles that are taken whole are shared or moved. Raises an
/// exception only when memory runs out; then pixels may be missing from `raster`.
boost::shared_ptr<CFloatingPixels> TakePixels(CRasterBuffer& raster, const CSelectBuffer* pSelect, bool bCut);

/// A canvas's floating pixels with their layer, and its selection. `spFloat` and the layer are null when
/// nothing floats.
struct TFloatState {
    boost::shared_ptr<CFloatingPixels> spFloat;
    boost::weak_ptr<CRasterLayerBuffer> wpLayer;
    boost::shared_ptr<CSelectBuffer> spSelect;
};
