// The layer tree in the order in which it is shown: the top layer first, a layer's children below it.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Tree.h"

#include <set>
#include <vector>

/// A place in the tree for CLayerBuffer::MoveLayer: the index is the one after the move.
struct TLayerPlace {
    TLayerPtr spParent;
    int idxLayer = -1;
};

class CLayerRows {
public:
    /// Reads the tree; null for no document. Folded layers stay folded while they exist.
    void Read(CCanvasBuffer* pCanvas);
    int GetCount() const { return static_cast<int>(m_vRows.size()); }
    /// The layer of a row, null for a row that is none or whose layer is gone.
    TLayerPtr GetLayer(int nRow) const;
    /// The row of a layer, or of the folded layer that it lies in; -1 for none.
    int FindRow(const CLayerBuffer& layer) const;
    /// Texts, folds and eyes of all rows.
    std::vector<TTreeRow> MakeTree() const;
    /// Takes effect at the next Read.
    void Fold(int nRow, bool bClosed);
    /// The place of a layer that is dropped on a part of a row; the row behind the last stands for the bottom
    /// of the whole tree. A null parent when nothing would change or the layer would lie in itself.
    TLayerPlace FindPlace(int nFrom, int nTo, EDropAt at) const;

private:
    struct TRow {
        boost::weak_ptr<CLayerBuffer> wpLayer;
        int nDepth;
    };
    void Append(const CLayerBuffer& parent, int nDepth);
    bool IsFolded(const TLayerPtr& spLayer) const;

    std::vector<TRow> m_vRows;
    boost::weak_ptr<CCanvasBuffer> m_wpCanvas;
    std::set<boost::weak_ptr<CLayerBuffer>> m_setFolded;
};
