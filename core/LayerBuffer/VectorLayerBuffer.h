// A layer of paths, all in one colour.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/PathCoverage.h"
#include "core/LayerBuffer/SelectedPaths.h"
#include "core/LayerBuffer/StrokeOverlay.h"

#include <memory>
#include <utility>
#include <vector>

class CVectorLayerBuffer : public CLayerBuffer, public IVectorLayer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYV");
    using TPaths = std::vector<boost::shared_ptr<CPathObject>>;

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
    /// The same for many: puts paths at places that rise from path to path, each counted among all
    /// afterwards.
    void InsertPaths(const TPaths& vPaths, const std::vector<int>& vPlaces);
    /// Removes paths of the layer, the lowest first, and returns the places that InsertPaths takes.
    std::vector<int> RemovePaths(const TPaths& vPaths);
    bool HasPath(const CPathObject& path) const { return m_index.Contains(path); }
    /// The paths whose reach (handles and marks included) meets a rectangle of path units, the lowest first.
    TPaths FindPaths(const CRect& rc) const { return m_index.Find(rc); }
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
    void SetLivePath(const boost::shared_ptr<CPathObject>& spPath) {
        m_pCoverage->SetLivePaths(spPath ? TPaths{spPath} : TPaths());
    }
    /// The same for several.
    void SetLivePaths(const TPaths& vPaths) { m_pCoverage->SetLivePaths(vPaths); }
    /// The paths that the user has selected, the lowest first; those that have left the layer are none of
    /// them. Not part of the document.
    TPaths GetSelectedPaths() const { return m_index.InOrder(m_selected.GetPaths()); }
    bool IsSelected(const CPathObject& path) const { return HasPath(path) && m_selected.Contains(path); }
    void SelectPaths(const TPaths& vPaths);
    /// Counts what happens to the paths and to their selection: equal numbers mean that nothing has.
    uint32_t GetPathsChangeCount() const { return m_uPathsChanges; }
    /// The only one of them and its selected point; null when there is none, or more than one.
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
    void Forget(CPathObject& path);
    void NoteChange(const CRect& rcReach);
    void InvalidatePaths();
    void FlagStroke();

    TPathList m_lstPaths;
    CPathIndex m_index;
    std::unique_ptr<CPathCoverage> m_pCoverage;
    boost::shared_ptr<CStrokeOverlay> m_spStroke;
    bool m_bBehind = false; ///< the stroke's last slice of time did not suffice
    CRect m_rcReachChange;
    uint32_t m_uPathsChanges = 0;
    CSelectedPaths m_selected;
    boost::weak_ptr<CPathControlPoint> m_wpSelectedPoint;
};

/// A new vector layer of the canvas's size, in no tree yet.
boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas);
