#include "core/LayerBuffer/VectorLayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerHistory.h"
#include "core/PathObject/PathBytes.h"
#include "core/PathObject/PathObjectFactory.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CVectorLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    CreateCoverage(0xFFFFFF);
}

void CVectorLayerBuffer::CreateCoverage(TColor color) {
    m_pCoverage = std::make_unique<CPathCoverage>(GetSize(), color);
    InvalidatePaths();
}

void CVectorLayerBuffer::InvalidatePaths() {
    for (const auto& spPath : m_lstPaths) InvalidatePath(spPath->RectIncludingPath());
}

void CVectorLayerBuffer::Resize(CSize sz, const TLayerChange& change, IProgress& progress) {
    CLayerBuffer::Resize(sz, change, progress);
    CreateCoverage(GetLayerColor());
    for (const auto& spPath : m_lstPaths) {
        spPath->Transform(change.fnPoint, change.dWidth);
        progress.Advance();
    }
}

uint64_t CVectorLayerBuffer::CountResizeSteps(CSize sz) const {
    return m_lstPaths.size() + CLayerBuffer::CountResizeSteps(sz);
}

boost::shared_ptr<CRasterBlockBuffer> CVectorLayerBuffer::CreateFlatBlock() {
    CAlphaBufferImpl<uint8_t>& plane = m_pCoverage->GetPlane();
    plane.ForEachBlock([&](CPoint pt) { PrepareOwn(pt); });
    return plane.ExtractBlock(plane.GetRect(), false, nullptr);
}

bool CVectorLayerBuffer::PrepareOwn(CPoint pt) {
    CAlphaBufferImpl<uint8_t>& plane = m_pCoverage->GetPlane();
    if (plane.DirtyAt(pt)) {
        // The flags of a block that nobody asked for yet may not have been gathered.
        plane.ForEachBlockIn(m_pCoverage->Update(pt, m_lstPaths), [&](CPoint ptDone) {
            GetDrawBuffer()->GetDirty().Add(ptDone.x / DEFAULT_BLOCKSIZE.cx, ptDone.y / DEFAULT_BLOCKSIZE.cy);
        });
    }
    if (m_spStroke) m_spStroke->ClearFlag(pt);
    return MayPaintAt(pt);
}

void CVectorLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    m_pCoverage->GetPlane().BlendBlockInto(dest, nullptr);
    if (m_spStroke && m_spStroke->CoversBlock(dest.GetPosition())) m_spStroke->PaintInto(dest);
}

bool CVectorLayerBuffer::MayPaintAt(CPoint pt) const {
    return m_pCoverage->GetPlane().DirtyAt(pt) || m_pCoverage->GetPlane().HasBlock(pt) ||
           (m_spStroke && m_spStroke->CoversBlock(pt));
}

void CVectorLayerBuffer::GetChangeMatrix(CBoolMatrix& matrix) {
    // Paths of a hidden layer are rasterized when the layer is shown.
    if (IsVisible()) m_pCoverage->GetPlane().GetDirty().PassTo(matrix);
    if (m_spStroke) m_spStroke->PassFlags(matrix);
}

// A layer that was hidden has nothing in its draw buffer.
void CVectorLayerBuffer::AddHiddenTo(CBoolMatrix& matrix) const {
    m_pCoverage->GetPlane().AddTilesTo(matrix);
    matrix.Or(m_pCoverage->GetPlane().GetDirty());
}

void CVectorLayerBuffer::InsertPath(const boost::shared_ptr<CPathObject>& spPath, int idx) {
    const bool bInside = idx >= 0 && static_cast<size_t>(idx) < m_lstPaths.size();
    m_lstPaths.insert(bInside ? std::next(m_lstPaths.begin(), idx) : m_lstPaths.end(), spPath);
    spPath->SetLayer(boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()));
    m_index.Insert(spPath);
    if (bInside) m_index.Sort(m_lstPaths);
    NoteChange(spPath->GetReach());
    m_pCoverage->Add(spPath);
}

int CVectorLayerBuffer::RemovePath(const boost::shared_ptr<CPathObject>& spPath) {
    const auto it = std::find(m_lstPaths.begin(), m_lstPaths.end(), spPath);
    if (it == m_lstPaths.end()) return -1;
    const auto idx = static_cast<int>(std::distance(m_lstPaths.begin(), it));
    Forget(*spPath);
    m_lstPaths.erase(it);
    return idx;
}

void CVectorLayerBuffer::NoteChange(const CRect& rcReach) {
    m_rcReachChange = m_rcReachChange.Union(rcReach);
    ++m_uPathsChanges;
}

// All but the list.
void CVectorLayerBuffer::Forget(CPathObject& path) {
    if (m_pCoverage->IsLive(path)) m_pCoverage->SetLivePaths({});
    NoteChange(path.GetReach());
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) InvalidatePath(path.RectIncludingPath(state));
    m_index.Remove(path);
    path.SetLayer({});
}

void CVectorLayerBuffer::InsertPaths(const TPaths& vPaths, const std::vector<int>& vPlaces) {
    const auto spThis = boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this());
    auto it = m_lstPaths.begin();
    int idx = 0;
    for (size_t n = 0; n < vPaths.size(); ++n, ++idx) {
        for (; idx < vPlaces[n] && it != m_lstPaths.end(); ++idx) ++it;
        m_lstPaths.insert(it, vPaths[n]);
        vPaths[n]->SetLayer(spThis);
        m_index.Insert(vPaths[n]);
        NoteChange(vPaths[n]->GetReach());
        InvalidatePath(vPaths[n]->RectIncludingPath());
    }
    m_index.Sort(m_lstPaths);
}

std::vector<int> CVectorLayerBuffer::RemovePaths(const TPaths& vPaths) {
    if (!std::ranges::all_of(vPaths, [&](const auto& spPath) { return HasPath(*spPath); }))
        throw internal_error(L"RemovePaths: object not found");
    std::vector<int> vPlaces;
    auto it = m_lstPaths.begin();
    int idx = 0;
    for (const auto& spPath : vPaths) {
        for (; *it != spPath; ++idx) ++it;
        Forget(*spPath);
        it = m_lstPaths.erase(it);
        vPlaces.push_back(idx++);
    }
    return vPlaces;
}

void CVectorLayerBuffer::OnPathChanged(const CPathObject& path, const std::vector<CRect>& vInk,
                                       const CRect& rcDrawn) {
    for (const CRect& rc : vInk) m_pCoverage->Invalidate(rc, &path);
    m_index.Refresh(path);
    NoteChange(rcDrawn);
}

// Only the picture is stale there, not the paths' coverage.
void CVectorLayerBuffer::FlagStroke() {
    CBoolMatrix& dirty = GetDrawBuffer()->GetDirty();
    m_pCoverage->GetPlane().ForEachBlock([&](CPoint pt) {
        if (m_spStroke->CoversBlock(pt)) dirty.Add(pt.x / DEFAULT_BLOCKSIZE.cx, pt.y / DEFAULT_BLOCKSIZE.cy);
    });
    m_spStroke->PassFlags(dirty);
}

void CVectorLayerBuffer::SetStroke(const boost::shared_ptr<CRasterStroke>& spStroke) {
    if (m_spStroke) FlagStroke();
    m_spStroke.reset();
    if (spStroke) m_spStroke = boost::make_shared<CStrokeOverlay>(spStroke, TCanvasPtr());
}

bool CVectorLayerBuffer::UpdateStrokes(uint64_t uNumber) {
    const bool bChildren = CLayerBuffer::UpdateStrokes(uNumber);
    if (!m_spStroke) return bChildren;
    m_bBehind = !m_spStroke->GetStroke().Update();
    return true;
}

bool CVectorLayerBuffer::IsBehind() const { return (m_spStroke && m_bBehind) || CLayerBuffer::IsBehind(); }

boost::shared_ptr<CPathObject> CVectorLayerBuffer::GetSelectedPath() const {
    const TPaths vPaths = GetSelectedPaths();
    return vPaths.size() == 1 ? vPaths.front() : nullptr;
}

boost::shared_ptr<CPathControlPoint> CVectorLayerBuffer::GetSelectedPoint() const {
    const auto spPath = GetSelectedPath();
    const auto spPoint = m_wpSelectedPoint.lock();
    return spPath && spPoint && spPath->GetStream().Contains(*spPoint) ? spPoint : nullptr;
}

void CVectorLayerBuffer::SelectPath(const boost::shared_ptr<CPathObject>& spPath,
                                    const boost::shared_ptr<CPathControlPoint>& spPoint) {
    SelectPaths(spPath ? TPaths{spPath} : TPaths());
    m_wpSelectedPoint = spPoint;
}

// Also paths that stay selected may be shown in another way: alone, or without their point.
void CVectorLayerBuffer::SelectPaths(const TPaths& vPaths) {
    CSelectedPaths selected(vPaths);
    for (const TPaths& vShown : {GetSelectedPaths(), vPaths})
        for (const auto& spShown : vShown) NoteChange(spShown->GetReach());
    m_selected = std::move(selected);
    ++m_uPathsChanges;
    m_wpSelectedPoint.reset();
}

void CVectorLayerBuffer::SetLayerColor(TColor color, bool bHistory) {
    if (bHistory && color != GetLayerColor())
        GetCanvas()->GetHistory().Register(boost::make_shared<SetLayerColorHistory>(
            L"レイヤーカラー変更", boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()),
            GetLayerColor(), color));
    m_pCoverage->GetPlane().SetColor(color);
    GetPicture().MarkPicture();
}

void CVectorLayerBuffer::DropBlock(CPoint pt) {
    CLayerBuffer::DropBlock(pt);
    m_pCoverage->GetPlane().ShareBlock(pt, {});
}

void CVectorLayerBuffer::DropCaches() {
    CLayerBuffer::DropCaches();
    m_pCoverage->Clear();
    InvalidatePaths();
}

TLayerPtr CVectorLayerBuffer::CreateLike(const TCanvasPtr& spCanvas) const {
    return CreateVectorLayer(spCanvas);
}

void CVectorLayerBuffer::CopyContent(const CLayerBuffer& other) {
    CLayerBuffer::CopyContent(other);
    const auto& vector = dynamic_cast<const CVectorLayerBuffer&>(other);
    SetLayerColor(vector.GetLayerColor());
    for (const auto& spPath : vector.m_lstPaths) {
        CDeserializer chunk(spPath->Serialize());
        const auto spCopy = CreatePathObjectByTag(chunk.GetTag());
        spCopy->Deserialize(chunk);
        InsertPath(spCopy);
    }
}

size_t CVectorLayerBuffer::GetOwnBytes(const CLayerBuffer*) const {
    size_t nBytes = 0;
    for (const auto& spPath : m_lstPaths) nBytes += GetPathBytes(*spPath);
    return nBytes;
}

boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CVectorLayerBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
