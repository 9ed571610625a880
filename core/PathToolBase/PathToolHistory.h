// Undoable actions that add, remove or replace paths of a layer.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <vector>

/// A path was added to a layer (0) or deleted from it (1), at its place in the layer's list; the label may be
/// that of the tool that did it.
template <int kind>
class CAddDelPathHistory : public CHistory {
public:
    CAddDelPathHistory(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                       const boost::shared_ptr<CPathObject>& spPath, int idx,
                       const wchar_t* pszLabel = kind == 0 ? L"パス追加" : L"パス削除");
    void Undo() override { Apply(kind == 1); }
    void Redo() override { Apply(kind == 0); }

protected:
    size_t CountBytes() const override;

private:
    void Apply(bool bInsert);

    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    boost::shared_ptr<CPathObject> m_spPath;
    int m_idx;
    bool m_bHolds; ///< the path is on no layer and belongs to this object
};

extern template class CAddDelPathHistory<0>;
extern template class CAddDelPathHistory<1>;

/// Paths of a layer were replaced by others, the first of which takes the place of the first.
class CReplacePathsHistory : public CHistory {
public:
    using TPaths = std::vector<boost::shared_ptr<CPathObject>>;

    /// `vOld` are on the layer, `vNew` on none. Redo performs the replacement.
    CReplacePathsHistory(std::wstring strLabel, const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                         const TPaths& vOld, const TPaths& vNew);
    void Undo() override;
    void Redo() override;

protected:
    size_t CountBytes() const override;

private:
    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    TPaths m_vOld;
    TPaths m_vNew;
    std::vector<int> m_vPlaces; ///< of the old ones in the layer's list, each before it was removed
    bool m_bDone = false;       ///< the old ones belong to this object
};

/// A path was divided; both pieces, or a closed path's opened form, take its place.
class CDividePathHistory : public CReplacePathsHistory {
public:
    CDividePathHistory(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                       const boost::shared_ptr<CPathObject>& spPath, const TPaths& vPieces)
        : CReplacePathsHistory(L"パスの分割", spLayer, {spPath}, vPieces) {}
};

/// Open paths became one. Raises internal_error when one of them is not open.
class CCombinePathHistory : public CReplacePathsHistory {
public:
    CCombinePathHistory(const wchar_t* pszLabel, const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                        const TPaths& vOld, const boost::shared_ptr<CPathObject>& spJoined);
};
