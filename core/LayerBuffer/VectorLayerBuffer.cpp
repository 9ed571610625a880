#include "core/LayerBuffer/VectorLayerBuffer.h"

#include "core/LayerBuffer/LayerHistory.h"
#include "core/PathObject/PathObjectFactory.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CVectorLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    CreateCoverage(0xFFFFFF);
}

void CVectorLayerBuffer::CreateCoverage(TColor color) {
    m_pCoverage = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    m_pCoverage->Create(GetSize(), DEFAULT_BLOCKSIZE);
    m_pCoverage->SetColor(color);
    InvalidatePaths();
}

void CVectorLayerBuffer::InvalidatePaths() {
    for (const auto& spPath : m_lstPaths) InvalidatePath(spPath->RectIncludingPath());
}

void CVectorLayerBuffer::Resize(CSize sz, const TLayerChange& change) {
    CLayerBuffer::Resize(sz, change);
    CreateCoverage(GetLayerColor());
    for (const auto& spPath : m_lstPaths) spPath->Transform(change.fnPoint);
}

boost::shared_ptr<CRasterBlockBuffer> CVectorLayerBuffer::CreateFlatBlock() {
    m_pCoverage->ForEachBlock([&](CPoint pt) { PrepareOwn(pt); });
    return m_pCoverage->ExtractBlock(m_pCoverage->GetRect(), false, nullptr);
}

bool CVectorLayerBuffer::PrepareOwn(CPoint pt) {
    if (m_pCoverage->DirtyAt(pt)) {
        // The flags of a block that nobody asked for yet may not have been gathered.
        m_pCoverage->ForEachBlockIn(UpdateCoverage(*m_pCoverage, pt, m_lstPaths, m_fill), [&](CPoint ptDone) {
            GetDrawBuffer()->GetDirty().Add(ptDone.x / DEFAULT_BLOCKSIZE.cx, ptDone.y / DEFAULT_BLOCKSIZE.cy);
        });
    }
    return m_pCoverage->GetBlock(pt, false) != nullptr;
}

void CVectorLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    m_pCoverage->BlendBlockInto(dest, nullptr);
}

bool CVectorLayerBuffer::MayPaintAt(CPoint pt) const {
    return m_pCoverage->DirtyAt(pt) || m_pCoverage->HasBlock(pt);
}

void CVectorLayerBuffer::GetChangeMatrix(CBoolMatrix& matrix) {
    // Paths of a hidden layer are rasterized when the layer is shown.
    if (IsVisible()) m_pCoverage->GetDirty().PassTo(matrix);
}

// A layer that was hidden has nothing in its draw buffer.
void CVectorLayerBuffer::AddHiddenTo(CBoolMatrix& matrix) const {
    m_pCoverage->AddTilesTo(matrix);
    matrix.Or(m_pCoverage->GetDirty());
}

void CVectorLayerBuffer::InsertPath(const boost::shared_ptr<CPathObject>& spPath, int idx) {
    const bool bInside = idx >= 0 && static_cast<size_t>(idx) < m_lstPaths.size();
    m_lstPaths.insert(bInside ? std::next(m_lstPaths.begin(), idx) : m_lstPaths.end(), spPath);
    spPath->SetLayer(boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()));
    InvalidatePath(spPath->RectIncludingPath());
}

void CVectorLayerBuffer::InvalidatePath(const CRect& rc) { m_pCoverage->MarkDirty(CoveredPixels(rc)); }

void CVectorLayerBuffer::SetLayerColor(TColor color, bool bHistory) {
    if (bHistory && color != GetLayerColor())
        GetCanvas()->GetHistory().Register(boost::make_shared<SetLayerColorHistory>(
            L"レイヤーカラー変更", boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()),
            GetLayerColor(), color));
    m_pCoverage->SetColor(color);
    GetPicture().MarkPicture();
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
    constexpr size_t PATH_BYTES = 1024; // beside what the points take
    constexpr size_t POINT_BYTES = 512; // with its share of the outline
    size_t nBytes = 0;
    for (const auto& spPath : m_lstPaths)
        nBytes += PATH_BYTES + spPath->GetStream().ControlPointCount() * POINT_BYTES;
    return nBytes;
}

boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CVectorLayerBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
