// Undoable changes of several paths of a layer.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <vector>

using TStrokes = CVectorLayerBuffer::TPaths;
using TPathStates = std::vector<boost::shared_ptr<TPathSnapshot>>;

/// Paths changed from one snapshot each to another; their points keep their identity.
class CStrokesChangeHistory : public CHistory {
public:
    CStrokesChangeHistory(std::wstring strLabel, TStrokes vPaths, TPathStates vBefore, TPathStates vAfter);
    void Undo() override;
    void Redo() override;
    bool IsOf(const TStrokes& vPaths) const { return vPaths == m_vPaths; }
    /// Takes in a further change of the same paths.
    void Extend(const CStrokesChangeHistory& later) { m_vAfter = later.m_vAfter; }

protected:
    size_t CountBytes() const override;

private:
    TStrokes m_vPaths;
    TPathStates m_vBefore;
    TPathStates m_vAfter;
};

/// The state of paths before a change, to go back to until the change is complete.
class CStrokesBefore {
public:
    explicit CStrokesBefore(const TStrokes& vPaths);
    const TStrokes& GetPaths() const { return m_vPaths; }
    /// Puts all paths back.
    void Restore() const;
    /// The action from then to now; null when the paths are the same.
    boost::shared_ptr<CStrokesChangeHistory> MakeHistory(const std::wstring& strLabel) const;
    /// The paths' state now.
    static TPathStates StatesOf(const TStrokes& vPaths);

private:
    TStrokes m_vPaths;
    TPathStates m_vBefore;
};

/// Paths were added to a layer (true) or removed from it (false).
template <bool bAdd>
class CStrokesAddDelHistory : public CHistory {
public:
    /// Paths to be added go on top of the others. Redo performs the action.
    CStrokesAddDelHistory(std::wstring strLabel, const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                          TStrokes vPaths);
    void Undo() override { Apply(!bAdd); }
    void Redo() override { Apply(bAdd); }

protected:
    size_t CountBytes() const override;

private:
    void Apply(bool bInsert);

    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    TStrokes m_vPaths;
    std::vector<int> m_vPlaces; ///< of the paths in the layer's list
    bool m_bHolds = bAdd;       ///< the paths are on no layer and belong to this object
};

extern template class CStrokesAddDelHistory<true>;
extern template class CStrokesAddDelHistory<false>;
