// A layer of paths, all in one colour.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/PathCoverage.h"

class CVectorLayerBuffer : public CLayerBuffer, public IVectorLayer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYV");

    void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) override;
    void Create(const TCanvasPtr& spCanvas) override;
    bool PrepareOwn(CPoint pt) override;
    bool PreparesTogether() const override { return true; }
    void RenderOwn(CRasterBlockBuffer& dest) const override;
    bool MayPaintAt(CPoint pt) const override;
    void GetChangeMatrix(CBoolMatrix& matrix) override;
    void AddHiddenTo(CBoolMatrix& matrix) const override;
    /// A hidden vector layer paints nothing and is not rasterized.
    bool PaintsOwn() const override { return IsVisible(); }
    CSerializer Serialize() const override;
    bool canBeMergedWith(const CLayerBuffer&) const override { return false; }
    bool IsRasterizable() const override { return true; }

    /// The paths, the lowest first.
    const TPathList& GetPaths() const { return m_lstPaths; }
    /// Puts a path among the others, at the place `idx` from the bottom or on top for -1, and flags the
    /// blocks that it can touch.
    void InsertPath(const boost::shared_ptr<CPathObject>& spPath, int idx = -1);
    /// Flags the blocks that a path's coverage reaches, to be rasterized anew.
    void InvalidatePath(const CRect& rc) override;

    /// The one colour of all paths, white for a new layer.
    TColor GetLayerColor() const { return m_pCoverage->GetColor(); }
    /// Sets it and flags the picture; an undoable action with `bHistory`.
    void SetLayerColor(TColor color, bool bHistory = false);

    void DropCaches() override;
    void Resize(CSize sz, const TLayerChange& change) override;
    boost::shared_ptr<CRasterBlockBuffer> CreateFlatBlock() override;

protected:
    boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const override;
    void CopyContent(const CLayerBuffer& other) override;
    size_t GetOwnBytes(const CLayerBuffer* pTwin) const override;

private:
    void CreateCoverage(TColor color);
    void InvalidatePaths();

    TPathList m_lstPaths;
    CPathFill m_fill;
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_pCoverage; ///< all paths, its ink the layer's colour
};

/// A new vector layer of the canvas's size, in no tree yet.
boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas);
