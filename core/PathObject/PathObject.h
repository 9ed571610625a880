// Paths as used by layers and tools.
#pragma once

#include "core/PathObject/PathStream.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>

#include <array>
#include <vector>

class CPathObject;

/// The layer's interface for its paths.
class IVectorLayer {
public:
    virtual ~IVectorLayer() = default;
    /// A path's picture changed inside the boxes `vInk` of path units, what it draws inside `rcDrawn`, and
    /// with it its reach.
    virtual void OnPathChanged(const CPathObject& path, const std::vector<CRect>& vInk,
                               const CRect& rcDrawn) = 0;
};

/// Bounds of what a point draws with its handles, as positions.
CRect ReachOf(const CPathControlPointBase& point);

/// An object on a vector layer.
class CVectorObject : boost::noncopyable {
public:
    virtual ~CVectorObject() = default;
    /// The layer that contains the object; null removes it.
    void SetLayer(const boost::weak_ptr<IVectorLayer>& wpLayer) { m_wpLayer = wpLayer; }

protected:
    boost::shared_ptr<IVectorLayer> GetLayer() const { return m_wpLayer.lock(); }

private:
    boost::weak_ptr<IVectorLayer> m_wpLayer;
};

/// A path of any kind. Every change rebuilds it and invalidates its old and new area of the layer. A change
/// that no file can hold (a coordinate, a half-width, an outline whose arithmetic exceeds 32 bits) is
/// reverted and raises refused_error. Positions are path units.
class CPathObject : public CVectorObject, public boost::enable_shared_from_this<CPathObject> {
public:
    CPathStream& GetStream() { return *m_spStream; }
    const CPathStream& GetStream() const { return *m_spStream; }

    /// Bounds of a state's shape, empty without anchors.
    const CRect& RectIncludingPath(size_t state = STATE_COMMITTED) const { return m_aBounds[state]; }
    /// Bounds of all that DrawOutline can draw, as positions: the marks' squares stand out by some pixels.
    const CRect& GetReach() const { return m_rcReach; }
    /// Adds the path's coverage to a tile of a plane of that size whose origin is the canvas's corner;
    /// coverage is never lowered.
    void RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile,
                       size_t state = STATE_COMMITTED) const;
    /// True when the committed shape has paint in the canvas pixel of a position.
    bool HasInkAt(CPoint pt) const;
    /// Draws the live line with its points.
    void DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                     TColor color, bool bOutline) const;
    CSerializer Serialize() const { return GetStream().Serialize(); }
    /// Raises deserialize_error, also for a path whose outline cannot be built.
    void Deserialize(CDeserializer& reader) {
        Read(reader);
        FinishRead();
    }
    /// The two halves of Deserialize: what reads, and what builds the outline. The latter may run for several
    /// paths at once, each in its own thread, while none of them is on a layer.
    void Read(CDeserializer& reader);
    void FinishRead();
    /// Finds the part under the pointer, of the requested kinds: anchors, their handles, the line itself,
    /// and what lies on it (width points, cuts, ends).
    TPathHit HitTest(const TPathPick& pick) const { return HitTestEx(pick, true, true, true, true); }
    TPathHit HitTestEx(const TPathPick& pick, bool bAnchor, bool bHandle, bool bPath, bool bTerm) const;

    /// Maps every point, and multiplies the base width and the wave by `dWidth`.
    void Transform(const boost::function<CPoint(CPoint)>& fnMap, double dWidth = 1);
    /// Shows the committed shapes of different paths mapped, with their base widths and waves multiplied by
    /// `dWidth`, as the live ones. `fnMap` is called on several threads. Raises as UpdateDrag does.
    static void TransformLive(const std::vector<boost::shared_ptr<CPathObject>>& vPaths,
                              const boost::function<CPoint(CPoint)>& fnMap, double dWidth);
    /// Called after a change of committed values. If refused, restores the values of the last Update.
    void Update();
    /// Called after a change of live values; raises refused_error too, but reverts nothing.
    void UpdateDrag();
    /// Ends a drag: the live shape becomes the committed one, or the other way round. A live shape that is
    /// refused leaves the committed one and raises refused_error.
    void CommitDrag();
    void CancelDrag();
    boost::shared_ptr<CPathControlPoint> AppendControlPoint(CPoint pt);
    boost::shared_ptr<CPathControlPoint> InsertControlPoint(const CPathControlPoint& before, CPoint pt);
    void RemoveControlPoint(const CPathControlPoint& point);
    boost::shared_ptr<CPathControlPoint> Divide(uint32_t t);
    boost::shared_ptr<TPathSnapshot> CreateSnapshot() const { return GetStream().CreateSnapshot(); }
    void ApplySnapshot(const TPathSnapshot& snapshot);
    /// Becomes a copy of another path of the same kind.
    void Assign(const CPathObject& from);

protected:
    explicit CPathObject(boost::shared_ptr<CPathStream> spStream);

private:
    void TakeBounds();
    /// The change of a path that its layer is told of.
    struct TChange {
        std::vector<CRect> vInk;
        CRect rcDrawn;
    };
    void Tell(const TChange& change) const;
    TChange RebuildDrag();

    boost::shared_ptr<CPathStream> m_spStream;     ///< never null
    boost::shared_ptr<TPathSnapshot> m_spLastGood; ///< the path after the last Update
    std::array<CRect, 2> m_aBounds;                ///< by state
    CRect m_rcReach;
    struct TShown;
    boost::shared_ptr<TShown> m_spShown; ///< the live state as last reported, while it is dragged
};

/// A path of the stream class `TStream`. The stream is a separate object, so that it cannot be changed
/// accidentally without the path.
template <class TStream>
class CPathObjectImpl : public CPathObject {
public:
    CPathObjectImpl() : CPathObject(boost::make_shared<TStream>()) {}
    TStream& GetStream() { return static_cast<TStream&>(CPathObject::GetStream()); }
    const TStream& GetStream() const { return static_cast<const TStream&>(CPathObject::GetStream()); }
};
