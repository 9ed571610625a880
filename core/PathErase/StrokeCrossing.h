// The places at which a stroke crosses others, or nearly does.
#pragma once

#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathErase/EraserTouch.h"
#include "core/PathObject/PathObjects.h"

#include <optional>
#include <unordered_map>

/// The largest gap between the paint of two strokes that counts as a crossing, path units.
constexpr double CROSSING_GAP = 16;

/// The lines of a layer's paths, made when they are asked for and kept while the paths do not change. Null
/// for a path without a line.
class CStrokeLines : boost::noncopyable {
public:
    boost::shared_ptr<const CStrokeLine> Get(const boost::shared_ptr<CPathObject>& spPath);
    /// Must be called when any path has changed.
    void Clear() { m_mapLines.clear(); }

private:
    // The path is held, so that no other one gets its address.
    struct TEntry {
        boost::shared_ptr<CPathObject> spPath;
        boost::shared_ptr<const CStrokeLine> spLine;
    };
    std::unordered_map<const CPathObject*, TEntry> m_mapLines;
};

struct TStrokeCrossing {
    uint32_t t = 0;        ///< on the stroke
    double dLength = 0;    ///< the same as a length along it
    TVector direction;     ///< of the other stroke
    double dHalfWidth = 0; ///< of the other stroke
    bool bThrough = false; ///< the centre lines cross; otherwise the other one ends or turns here
};

/// The crossing that is nearest to a place of a stroke of the layer, forward or backward along it:
/// where the centre lines cross; where another stroke, or this one, ends in this one's paint or, prolonged by
/// its end, would soon meet it, the gap of the paint being CROSSING_GAP at most; where another passes by
/// with no larger gap and soon goes away again. Left out are crossings behind which the stroke stands out by
/// no more than that.
std::optional<TStrokeCrossing> FindNextCrossing(const CVectorLayerBuffer& layer, CStrokeLines& lines,
                                                const boost::shared_ptr<CPathObject>& spPath, uint32_t tFrom,
                                                bool bForward);
