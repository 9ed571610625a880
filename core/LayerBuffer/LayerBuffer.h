// The base of all layers: what a layer is and where it lies in the tree.
#pragma once

#include "core/LayerBuffer/LayerCanvas.h"
#include "core/LayerBuffer/LayerChange.h"
#include "core/LayerBuffer/LayerPicture.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>
#include <memory>
#include <string>

class CFloatDrop;
class CLayerBuffer;
class IProgress;
using TLayerPtr = boost::shared_ptr<CLayerBuffer>;
using TLayerList = std::list<TLayerPtr>;
using TPlaneList = std::list<boost::shared_ptr<CRasterBuffer>>;
using TCanvasPtr = boost::shared_ptr<ILayerCanvas>;

/// How deep layers may lie in each other, in a document and in its file.
constexpr int MAX_LAYER_NESTING = 256;

/// More than the number of any stroke.
constexpr uint64_t NO_STROKE = UINT64_MAX;

/// A layer. Useless without its canvas, which it holds weakly. How it is painted with its children is
/// `CLayerPicture`'s matter, its form in files `LayerWire`'s.
class CLayerBuffer : public boost::enable_shared_from_this<CLayerBuffer>, boost::noncopyable {
public:
    CLayerBuffer() : m_picture(*this) {}
    virtual ~CLayerBuffer() = default;
    /// Sets canvas, size, the name "NoName" and new planes, all flags dirty.
    virtual void Create(const TCanvasPtr& spCanvas);
    /// Reads the layer's chunk into a new layer of `spCanvas`; raises deserialize_error.
    virtual void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) = 0;
    virtual CSerializer Serialize() const = 0;

    // State.
    /// The document; a self-check fails when it is gone.
    TCanvasPtr GetCanvas() const;
    CSize GetSize() const { return m_size; }
    const std::wstring& GetName() const { return m_strName; }
    /// Renames the layer; an undoable action with `bHistory`.
    void setName(const std::wstring& strName, bool bHistory = false);
    /// Exchanges the name. Never throws.
    void SwapName(std::wstring& strName) { m_strName.swap(strName); }
    void SwapName(CLayerBuffer& other) { SwapName(other.m_strName); }
    bool IsVisible() const { return m_bVisible; }
    /// Shows or hides the layer and flags its picture. With `bModifies` the document counts as changed,
    /// though there is nothing to be undone.
    void SetVisible(bool bVisible, bool bModifies = false);
    /// Shows and hides the layers below as those of a tree of the same shape are; of another shape, nothing.
    /// Never throws.
    void FollowVisibility(const CLayerBuffer& other);
    /// Opacity 0 to 255, kept by the draw buffer alone.
    uint8_t GetOpacity() const { return GetDrawBuffer()->GetOpacity(); }
    /// Sets it and flags the picture. With `bHistory` an undoable action; changes that follow each other on
    /// one layer are one.
    void SetOpacity(uint8_t uOpacity, bool bHistory = false);
    /// Sets name, visibility and opacity of a layer that was just created: without history, no flag changes.
    void InitState(const std::wstring& strName, bool bVisible, uint8_t uOpacity);

    // Tree.
    const TLayerList& GetChildren() const { return m_lstChildren; }
    /// Inserts a layer among the children, at the end for -1; an undoable action unless `bHistory` is false.
    /// An index outside the list is a defect. Raises refused_error, as MoveLayer does, when layers would lie
    /// deeper than MAX_LAYER_NESTING in each other.
    void AddLayer(const TLayerPtr& spLayer, int idxLayer, bool bHistory = true);
    /// Takes a child (by value: it may be named by the list that it leaves) out; an undoable action unless
    /// `bHistory` is false. One that is no child is a defect.
    void RemoveLayer(TLayerPtr spLayer, bool bHistory = true);
    /// Takes a child out and puts it into `spParent` (this layer or another, not below the child), where it
    /// has index `idxLayer` afterwards, -1 for the end; an undoable action unless `bHistory` is false.
    void MoveLayer(TLayerPtr spLayer, const TLayerPtr& spParent, int idxLayer, bool bHistory = true);
    /// Appends a child to a layer that was just created: no history, no check, no flag changes.
    void InitChild(const TLayerPtr& spLayer, bool bActive);
    /// Exchanges the child list with `lst`. A child that was active and left is followed by the last of those
    /// that took its place. Null does nothing.
    static void SwapChildren(const TLayerPtr& spLayer, TLayerList* pList);
    /// Memory of those in the list that are no children of `spLayer`; 0 for null.
    static size_t GetBytesBeside(const TLayerPtr& spLayer, const TLayerList& lst);
    /// The layer, this one or below, that has `layer` as its child; null when none has.
    TLayerPtr FindParentOf(const CLayerBuffer& layer);
    /// How many layers lie in each other below this one, at most; 0 without children.
    int GetNesting() const;
    /// How far below this layer another one lies: 0 for itself, -1 when it does not.
    int GetDepthOf(const CLayerBuffer& layer) const;
    /// Index of a child, -1 when it is none.
    int IndexOf(const CLayerBuffer& layer) const;
    /// The child that is current in this layer, null for none.
    TLayerPtr GetActiveChild() const { return m_wpActive.lock(); }
    void SetActiveChild(const TLayerPtr& spLayer) { m_wpActive = spLayer; }

    // The parts of the picture.
    CLayerPicture& GetPicture() { return m_picture; }
    const boost::shared_ptr<CRasterBuffer>& GetDrawBuffer() const { return m_picture.GetDrawBuffer(); }
    /// Brings what RenderOwn paints from up to date at the block of `pt` and clears its flags. True when
    /// there is something to paint. Distinct blocks may be prepared and rendered by distinct threads, unless
    /// PreparesTogether: then each must have been prepared before.
    virtual bool PrepareOwn(CPoint) { return false; }
    /// True when PrepareOwn prepares blocks beside the one of `pt` too.
    virtual bool PreparesTogether() const { return false; }
    /// Paints the layer's own content, prepared before, into a cleared tile of either kind, also while the
    /// layer is hidden.
    virtual void RenderOwn(CRasterBlockBuffer&) const {}
    /// The tile that is exactly what RenderOwn would paint at the block of `pt`, prepared before; null when
    /// there is no such tile.
    virtual boost::shared_ptr<CRasterBlockBuffer> GetOwnTile(CPoint) const { return {}; }
    /// True when RenderOwn may paint something at the block of `pt`, prepared or not.
    virtual bool MayPaintAt(CPoint) const { return false; }
    /// Passes the flags of the layer's own content on into a matrix of the block grid.
    virtual void GetChangeMatrix(CBoolMatrix&) {}
    /// Adds the blocks of content that the picture does not have while the layer is hidden.
    virtual void AddHiddenTo(CBoolMatrix&) const {}
    /// False while the layer's own content does not show, so that it is not prepared for the view.
    virtual bool PaintsOwn() const { return true; }
    /// True when children paint only where this layer has paint.
    virtual bool IsClipping() const { return true; }
    /// True when children are painted straight onto what lies under this layer, without its opacity.
    virtual bool IsPassThrough() const { return false; }

    // Changes of the whole content, here and below.
    /// A copy of the layer and of all below it for a canvas of this size, in no tree yet. Tiles are shared,
    /// so that it costs next to nothing until something is drawn. Strokes in progress are not copied.
    boost::shared_ptr<CLayerBuffer> CreateFullCopy(const TCanvasPtr& spCanvas) const;
    /// Memory of the content here and below that `pTwin`, a tree of the same shape, does not share; all of it
    /// for null. Pictures that can be painted anew do not count.
    size_t GetBytes(const CLayerBuffer* pTwin) const;
    /// Reads the tiles of the block at `pt` that Deserialize left in the image, here and where layers show
    /// below, through another image of the same bytes (`CRasterBuffer::LoadBlock`).
    virtual void LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage);
    /// Gives the tiles of the block at `pt` back, here and below: what was painted and what LoadBlock has
    /// read. For a document whose picture is asked for once. Distinct threads may drop distinct blocks.
    virtual void DropBlock(CPoint pt);
    /// Gives the memory of the pictures here and below back: they are painted anew when they are next asked
    /// for. For a layer that is in no tree. Never throws.
    virtual void DropCaches();
    /// New draw buffers and thumbnails, and pixels converted, in the kinds that the canvas now has; opacities
    /// stay. Children too. One step of `progress` for each layer.
    virtual void FollowColorMode(IProgress& progress);
    /// Gives the layer and all below it another size: new planes, filled by `change`; opacities stay, every
    /// flag is set. The canvas must have that size already. Raises cancelled_error.
    virtual void Resize(CSize sz, const TLayerChange& change, IProgress& progress);
    /// The steps of progress that Resize takes.
    virtual uint64_t CountResizeSteps(CSize sz) const;
    /// Appends a copy of the pixels of every raster layer here and below, which shares their tiles.
    virtual void PushBackup(TPlaneList& lstPlanes) const;
    /// Exchanges the pixels of every raster layer here and below with the planes from `itPlane` on, in the
    /// order of PushBackup, and moves `itPlane` past them.
    virtual void SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane);
    /// The layer's own content as one tile of the whole canvas: pixels, or the coverage of paths. Null for
    /// layers without content of their own.
    virtual boost::shared_ptr<CRasterBlockBuffer> CreateFlatBlock() { return {}; }

    // Strokes in progress.
    /// Takes strokes in this layer and below one slice of time further and merges the complete stroke of that
    /// number once it is rendered; true when a redraw is due.
    virtual bool UpdateStrokes(uint64_t uNumber);
    /// The lowest number of the complete strokes in this layer and below that wait to be merged, NO_STROKE
    /// when none does.
    virtual uint64_t GetNextStroke() const;
    /// True while complete strokes in this layer or below wait to be merged.
    bool HasPendingWork() const { return GetNextStroke() != NO_STROKE; }
    /// True while UpdateStrokes has something to do in this layer or below without any new point.
    virtual bool IsBehind() const;

    // Merging.
    /// A new layer, in no tree yet, that holds this layer's picture under the other's, both with their
    /// opacities; null when the two cannot be merged.
    virtual boost::shared_ptr<CLayerBuffer> MergeWith(CLayerBuffer&, IProgress&) { return {}; }
    /// True when `other`, directly above, may be merged onto this layer.
    virtual bool canBeMergedWith(const CLayerBuffer& other) const;
    virtual bool IsRasterizable() const { return false; }

protected:
    /// An empty layer of this kind.
    virtual boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const = 0;
    /// Takes the content of `other`, a layer of this kind and size, over: what CreateFullCopy copies.
    virtual void CopyContent(const CLayerBuffer& other);
    /// GetBytes of this layer alone.
    virtual size_t GetOwnBytes(const CLayerBuffer*) const { return 0; }

private:
    // One layer comes into the list or leaves it. Neither throws.
    void Attach(TLayerList& lstLayer, int idxLayer);
    TLayerList Detach(int idxLayer);
    void ExpectRoomFor(const CLayerBuffer& layer) const;
    // Merges floating pixels for an undoable change of the tree.
    std::unique_ptr<CFloatDrop> DropForStep(bool bHistory) const;

    TLayerList m_lstChildren;
    boost::weak_ptr<CLayerBuffer> m_wpActive;
    boost::weak_ptr<ILayerCanvas> m_wpCanvas;
    std::wstring m_strName = L"NoName";
    CSize m_size;
    bool m_bVisible = true;
    CLayerPicture m_picture;
};
