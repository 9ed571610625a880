// A drag of the vector eraser as one undoable action, which grows while it is made.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <unordered_map>
#include <vector>

/// Paths of a layer were replaced by pieces of them or by nothing. Made before the first change.
class CErasePathsHistory : public CHistory {
public:
    using TPaths = std::vector<boost::shared_ptr<CPathObject>>;

    CErasePathsHistory(std::wstring strLabel, const boost::shared_ptr<CVectorLayerBuffer>& spLayer);
    void Undo() override;
    void Redo() override;

    /// Replaces a path of the layer, a former piece too, by its own pieces. On an exception it is still
    /// there.
    void Erase(const boost::shared_ptr<CPathObject>& spPath, const TPaths& vPieces);
    /// Ends the drag: nothing is erased any more.
    void Finish() { m_mapPlaces.clear(); }
    bool IsEmpty() const { return m_vErased.empty(); }

protected:
    size_t CountBytes() const override;

private:
    struct TErased {
        boost::shared_ptr<CPathObject> spPath;
        TPaths vPieces;
        int nPlace; ///< of the path among the layer's paths before the drag
    };

    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    std::unordered_map<const CPathObject*, int> m_mapPlaces; ///< before the drag; empty after it
    std::vector<TErased> m_vErased;                          ///< sorted by place
    bool m_bDone = true;
};
