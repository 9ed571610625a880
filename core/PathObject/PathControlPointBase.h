// The base of all points of a path: drawing, dragging and storage.
#pragma once

#include "core/Base/Color.h"
#include "core/Base/FixedMath.h"
#include "core/PathObject/DualValue.h"
#include "core/Serializer/Serializer.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <set>

class CPathControlPointBase;

/// Maps path units to pixels of the view's window.
using TPathMapper = boost::function<CPoint(CPoint)>;

/// The drawing target for paths, in pixels of the window.
class IPathDevice {
public:
    virtual ~IPathDevice() = default;
    virtual void Line(CPoint from, CPoint to, TColor color, bool bDashed) = 0;
    /// A square of 2 * `nHalf` + 1 pixels with a border in `color`, filled with `fill`.
    virtual void Square(CPoint center, int nHalf, TColor color, TColor fill) = 0;
    /// Curves one pixel wide.
    virtual void PolyBezier(const std::vector<CPoint>& vPoints, TColor color) = 0;
};

/// The part of a path that was hit.
enum EPathHit : int {
    HIT_NONE = -1,
    HIT_ANCHOR, ///< an anchor, or a width or cut mark's place on the path
    HIT_BACK,
    HIT_FORE,
    HIT_LEFT,
    HIT_RIGHT,
    HIT_ANGLE,
    HIT_GROW,
    HIT_PATH, ///< the line itself
    HIT_INK,  ///< the stroke or shape beside the line
};

/// The points that are highlighted.
struct TPathSelection {
    const CPathControlPointBase* pHover = nullptr; ///< the point of the part under the pointer or dragged
    EPathHit hover = HIT_NONE;                     ///< that part
    std::set<const CPathControlPointBase*> setSelected;
    bool bAllHandles = false; ///< handles of all anchors, not only of selected ones
    bool bNoHandles = false;  ///< of no anchor: they cannot be dragged

    bool Hovers(const CPathControlPointBase& point, EPathHit part) const {
        return pHover == &point && hover == part;
    }

    bool ShowsHandlesOf(const CPathControlPointBase& point) const {
        return !bNoHandles && (bAllHandles || setSelected.contains(&point));
    }
};

/// The result of a hit test.
struct TPathHit {
    EPathHit kind = HIT_NONE;
    boost::shared_ptr<CPathControlPointBase> spPoint; ///< null for the line
    uint32_t t = 0;                                   ///< place on the line
    int64_t nDistance = 0; ///< squared distance from the pointer in pixels of the window

    explicit operator bool() const { return kind != HIT_NONE; }
};

/// The nearer of two hits, the first one at the same distance.
inline TPathHit Nearer(const TPathHit& a, const TPathHit& b) {
    return b && (!a || b.nDistance < a.nDistance) ? b : a;
}

/// The pointer of a hit test; distances are compared in the window, since marks have a fixed size there.
struct TPathPick {
    TPathMapper mapper;
    CPoint ptWindow;            ///< pixels
    CPoint ptPath;              ///< the same position in path units
    TPathSelection selection{}; ///< the selection that the path is drawn with
    int32_t nReach = 4;         ///< the distance in pixels up to which something is hit

    /// A hit of a part at a path position, within reach of the pointer; none beyond it.
    TPathHit At(CPoint pt, EPathHit kind, const boost::shared_ptr<CPathControlPointBase>& spPoint,
                uint32_t t = 0) const;
};

/// The colours of lines and marks, of the parts under the pointer, and of what is selected.
constexpr TColor PATH_COLOR_NORMAL = 0xFF8000;
constexpr TColor PATH_COLOR_HOVER = 0x0000FF;
constexpr TColor PATH_COLOR_SELECTED = 0xFF00A0;

/// Half the side of a mark's square in pixels; one more under the pointer.
constexpr int MARK_HALF = 3;
/// Half the side of the dot in the marks of widths and cuts.
constexpr int MARK_DOT_HALF = 1;

class CPathControlPointBase : boost::noncopyable {
public:
    virtual ~CPathControlPointBase() = default;
    /// Draws the live state.
    virtual void Draw(IPathDevice& device, const TPathMapper& mapper,
                      const TPathSelection& selection) const = 0;
    /// Writes the committed state.
    virtual CSerializer Serialize() const = 0;
    /// Reads both states; raises deserialize_error.
    virtual void Deserialize(CDeserializer& reader) = 0;
    /// Returns the point itself when its live position is within reach of the pointer.
    virtual TPathHit HitMark(const TPathPick&) { return {}; }
    /// Returns the nearest of the point's live handles, as drawn, within reach of the pointer.
    virtual TPathHit HitHandle(const TPathPick& pick) = 0;
    /// True when live and committed values are equal.
    virtual bool IsSettled() const = 0;
    /// Ends a drag: all live values become the committed ones, or the other way round.
    virtual void Commit() = 0;
    virtual void Cancel() = 0;

protected:
    TColor GetColor(const TPathSelection& selection, EPathHit part) const;
    /// A mark's square, larger under the pointer, filled when selected.
    void DrawMark(IPathDevice& device, CPoint ptWindow, const TPathSelection& selection) const;
    /// The same with a dot in it: what lies on the line between anchors looks different from them.
    void DrawDottedMark(IPathDevice& device, CPoint ptWindow, const TPathSelection& selection) const;
    /// A handle's end and its line, solid under the pointer.
    void DrawHandle(IPathDevice& device, CPoint ptFrom, CPoint ptTo, const TPathSelection& selection,
                    EPathHit part) const;
};

/// The largest absolute coordinate of a stored path: over a million pixels.
constexpr int32_t PATH_COORDINATE_LIMIT = 1 << 23;

/// The largest half-width that a stroke's points can set.
constexpr uint32_t PATH_WIDTH_LIMIT = 1 << 20;

/// True for values that a stored path may contain.
constexpr bool IsStorableWidth(uint32_t uWidth) { return uWidth <= PATH_WIDTH_LIMIT; }
constexpr bool IsStorablePoint(CPoint pt) {
    const auto isInside = [](int32_t n) { return n >= -PATH_COORDINATE_LIMIT && n <= PATH_COORDINATE_LIMIT; };
    return isInside(pt.x) && isInside(pt.y);
}

/// Raises deserialize_error for a point beyond PATH_COORDINATE_LIMIT.
CPoint CheckedCoordinates(CPoint pt);
