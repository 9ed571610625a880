// A drag of the selected strokes.
#pragma once

#include "core/PathSelect/StrokeBox.h"
#include "core/PathSelect/StrokesHistory.h"

#include <boost/noncopyable.hpp>

/// Changes live states only, until it is committed or cancelled, one of which must be called at the end. What
/// is shown is always computed from the committed shapes.
class CStrokesDrag : boost::noncopyable {
public:
    /// The paths must be the layer's; from now on it paints them in their live state.
    CStrokesDrag(CVectorLayerBuffer& layer, const TStrokes& vPaths);
    /// Shows the paths mapped. Raises refused_error for a shape whose arithmetic exceeds 32 bits.
    void Show(const TStrokeMap& map);
    const TStrokeMap& GetMap() const { return m_map; }
    /// Makes the live shapes the committed ones and returns the action; null when nothing has changed. On a
    /// failure all paths are as they were before the drag.
    boost::shared_ptr<CHistory> Commit(const std::wstring& strLabel);
    void Cancel();
    const CStrokesBefore& GetBefore() const { return m_before; }

private:
    CStrokesBefore m_before;
    TStrokeMap m_map;
};
