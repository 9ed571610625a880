// The base of all layers: a cached picture of the layer and everything under it, rebuilt block by block.
#pragma once

#include "core/LayerBuffer/LayerCanvas.h"
#include "core/RasterBuffer/RasterBuffer.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>
#include <string>

class CLayerBuffer;
using TLayerPtr = boost::shared_ptr<CLayerBuffer>;
using TLayerList = std::list<TLayerPtr>;
using TCanvasPtr = boost::shared_ptr<ILayerCanvas>;

/// An empty plane of the canvas's grid, colour or grey.
boost::shared_ptr<CRasterBuffer> CreatePlane(bool bColor, CSize sz, CSize szBlock);

/// The plane in the other kind, tile by tile and only where tiles exist: colour to grey by GreyOf, grey into
/// all three channels. A plane of the wanted kind is returned itself.
boost::shared_ptr<CRasterBuffer> ConvertPlane(const boost::shared_ptr<CRasterBuffer>& spPlane, bool bColor);

/// By how much thumbnails shrink a canvas: the largest divisor of 96 that keeps both sides over 34, else 1.
int ThumbnailScale(CSize szCanvas);

/// A layer. Useless without its canvas, which it holds weakly. Children are painted from the first to the
/// last; children of anything but a set or the root are clipped to their parent's coverage.
class CLayerBuffer : public boost::enable_shared_from_this<CLayerBuffer>, boost::noncopyable {
public:
    virtual ~CLayerBuffer() = default;

    /// Reads the layer's chunk into a new layer of `spCanvas`; raises deserialize_error.
    virtual void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) = 0;
    /// Sets canvas, size, the name "NoName" and new planes, all flags dirty.
    virtual void Create(const TCanvasPtr& spCanvas);
    /// Brings the tile at `dest`'s position up to date and, if the layer is visible, blends it into `dest`.
    virtual void DrawBlock(CRasterBlockBuffer& dest);
    /// Paints the layer's own content into a cleared tile.
    virtual void RenderOwn(CRasterBlockBuffer&) {}
    /// The layer's extra dirty flags, null when it has none.
    virtual boost::shared_ptr<CBoolMatrix> GetChangeMatrix() const { return {}; }
    virtual CSerializer Serialize() const = 0;
    /// True if the layer or a child has a stroke or commit pending.
    virtual bool HasPendingWork();
    /// True when `other`, directly above, may be merged onto this layer.
    virtual bool canBeMergedWith(const CLayerBuffer& other) const;
    virtual bool IsRasterizable() const { return false; }

    /// Rebuilds the draw buffer's tile at `pt` (any pixel of the block) if it is stale.
    void UpdateBlock(CPoint pt);
    /// ORs the flags of all layers below into this layer's own, children first.
    void UpdateFlags();
    /// Flags every block of this layer's picture as stale.
    void MarkAllDirty() { m_pDrawBuffer->GetDirty().Fill(true); }

    /// Inserts a layer among the children, at the end for -1; an undoable action unless `bHistory` is false.
    /// An index outside the list is a defect.
    void AddLayer(const TLayerPtr& spLayer, int idxLayer, bool bHistory = true);
    /// Takes a child out; an undoable action unless `bHistory` is false. One that is no child is a defect.
    void RemoveLayer(const TLayerPtr& spLayer, bool bHistory = true);
    const TLayerList& GetChildren() const { return m_lstChildren; }
    /// Index of a child, -1 when it is none.
    int IndexOf(const CLayerBuffer& layer) const;
    /// The child that is current in this layer, null for none.
    TLayerPtr GetActiveChild() const { return m_wpActive.lock(); }
    void SetActiveChild(const TLayerPtr& spLayer) { m_wpActive = spLayer; }

    const boost::shared_ptr<CRasterBuffer>& GetDrawBuffer() const { return m_pDrawBuffer; }
    const boost::shared_ptr<CRasterBuffer>& GetThumbnail() const { return m_pThumbnail; }
    /// The document; a self-check fails when it is gone.
    TCanvasPtr GetCanvas() const;
    CSize GetSize() const { return m_size; }
    const std::wstring& GetName() const { return m_strName; }
    /// Renames the layer; an undoable action with `bHistory`.
    void setName(const std::wstring& strName, bool bHistory = false);
    bool IsVisible() const { return m_bVisible; }
    /// Shows or hides the layer and flags its picture.
    void SetVisible(bool bVisible);
    /// Opacity 0 to 255, kept by the draw buffer alone.
    uint8_t GetOpacity() const { return m_pDrawBuffer->GetOpacity(); }
    /// Sets it and flags the picture. With `bHistory` an undoable action; changes that follow each other on
    /// one layer are one.
    void SetOpacity(uint8_t uOpacity, bool bHistory = false);

protected:
    /// True when children paint only where this layer has paint.
    virtual bool ClipsChildren() const { return true; }
    /// False while nothing of this layer can show, so that its flags stay with it.
    virtual bool PassesFlags() const { return true; }

    /// The chunk part that every layer has.
    CSerializer SerializeBase() const;
    void DeserializeBase(CDeserializer& reader);

    boost::shared_ptr<CRasterBuffer> m_pDrawBuffer;
    boost::shared_ptr<CRasterBuffer> m_pThumbnail;
    TLayerList m_lstChildren;
    boost::weak_ptr<CLayerBuffer> m_wpActive;
    boost::weak_ptr<ILayerCanvas> m_wpCanvas;
    std::wstring m_strName = L"NoName";
    CSize m_size;
    bool m_bVisible = true;
    bool m_bJustHidden = false; ///< what lies above has not yet been told that this layer is gone
};
