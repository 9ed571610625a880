// A layer of paths, all in one colour.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/PathCoverage.h"
#include "core/LayerBuffer/StrokeOverlay.h"

#include <memory>
#include <utility>
#include <vector>

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
    /// Removes a path and returns its place from the bottom; -1 for a path that is not on the layer.
    int RemovePath(const boost::shared_ptr<CPathObject>& spPath);
    bool HasPath(const CPathObject& path) const { return m_index.Contains(path); }
    /// The paths whose reach (handles and marks included) meets a rectangle of path units, the lowest first.
    std::vector<boost::shared_ptr<CPathObject>> FindPaths(const CRect& rc) const { return m_index.Find(rc); }
    /// The box around the reach of all paths.
    CRect GetPathsReach() const { return m_index.GetBounds(); }
    /// The box around all paths' reach that changed since the last call, before and after.
    CRect TakeReachChange() { return std::exchange(m_rcReachChange, CRect()); }
    /// The stroke in progress, shown over the paths as on a raster layer, but whatever is selected; null
    /// takes it away without a trace.
    void SetStroke(const boost::shared_ptr<CRasterStroke>& spStroke);
    bool UpdateStrokes(uint64_t uNumber) override;
    bool IsBehind() const override;
    /// Chooses the path that is painted in its live state, while the others are not rasterized again; null
    /// for none.
    void SetLivePath(const boost::shared_ptr<CPathObject>& spPath) { m_pCoverage->SetLivePath(spPath); }
    /// The path and its point that the user has selected; null for none, or when they have left the layer.
    /// Not part of the document.
    boost::shared_ptr<CPathObject> GetSelectedPath() const;
    boost::shared_ptr<CPathControlPoint> GetSelectedPoint() const;
    void SelectPath(const boost::shared_ptr<CPathObject>& spPath,
                    const boost::shared_ptr<CPathControlPoint>& spPoint = {});
    void OnPathChanged(const CPathObject& path, const std::vector<CRect>& vInk,
                       const CRect& rcDrawn) override;
    /// Flags the blocks that coverage inside a box of path units reaches, to be rasterized anew.
    void InvalidatePath(const CRect& rc) { m_pCoverage->Invalidate(rc, nullptr); }

    /// The one colour of all paths, white for a new layer.
    TColor GetLayerColor() const { return m_pCoverage->GetPlane().GetColor(); }
    /// Sets it and flags the picture; an undoable action with `bHistory`.
    void SetLayerColor(TColor color, bool bHistory = false);

    void DropBlock(CPoint pt) override;
    void DropCaches() override;
    void Resize(CSize sz, const TLayerChange& change, IProgress& progress) override;
    uint64_t CountResizeSteps(CSize sz) const override;
    boost::shared_ptr<CRasterBlockBuffer> CreateFlatBlock() override;

protected:
    boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const override;
    void CopyContent(const CLayerBuffer& other) override;
    size_t GetOwnBytes(const CLayerBuffer* pTwin) const override;

private:
    void CreateCoverage(TColor color);
    void InvalidatePaths();
    void FlagStroke();

    TPathList m_lstPaths;
    CPathIndex m_index;
    std::unique_ptr<CPathCoverage> m_pCoverage;
    boost::shared_ptr<CStrokeOverlay> m_spStroke;
    bool m_bBehind = false; ///< the stroke's last slice of time did not suffice
    CRect m_rcReachChange;
    boost::weak_ptr<CPathObject> m_wpSelectedPath;
    boost::weak_ptr<CPathControlPoint> m_wpSelectedPoint;
};

/// A new vector layer of the canvas's size, in no tree yet.
boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas);
