#include "core/LayerBuffer/VectorLayerBuffer.h"

#include "core/LayerBuffer/LayerHistory.h"
#include "core/PathObject/PathObjectFactory.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

// Blocks are rasterized so many at once, across and down, so that a path is not taken up for each.
constexpr int32_t MAX_BLOCKS = 8;

// Path units to a pixel, as a power of two.
constexpr int PATH_UNIT_BITS = 3;

// The canvas pixels that coverage inside a box of path units reaches: the filter spreads it by one.
CRect PixelsOf(const CRect& rc) {
    if (rc.IsEmpty()) return {};
    return {(rc.left >> PATH_UNIT_BITS) - 1, (rc.top >> PATH_UNIT_BITS) - 1,
            ((rc.right - 1) >> PATH_UNIT_BITS) + 2, ((rc.bottom - 1) >> PATH_UNIT_BITS) + 2};
}

} // namespace

void CVectorLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    CreateCoverage(0xFFFFFF);
}

void CVectorLayerBuffer::CreateCoverage(TColor color) {
    m_pCoverage = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    m_pCoverage->Create(m_size, DEFAULT_BLOCKSIZE);
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
    if (m_pCoverage->DirtyAt(pt)) Rasterize(DirtyFrom(pt));
    return m_pCoverage->GetBlock(pt, false) != nullptr;
}

// The block of `pt` and more on its right and below it, none of which is up to date.
CRect CVectorLayerBuffer::DirtyFrom(CPoint pt) const {
    const CBoolMatrix& dirty = m_pCoverage->GetDirty();
    const CSize sz = m_pCoverage->GetBlockSize();
    const CPoint ptBlock{pt.x / sz.cx, pt.y / sz.cy};
    const CPoint ptLimit{std::min(dirty.GetSize().cx, ptBlock.x + MAX_BLOCKS),
                         std::min(dirty.GetSize().cy, ptBlock.y + MAX_BLOCKS)};
    const auto firstClean = [&](int32_t y, int32_t xEnd) {
        int32_t x = ptBlock.x;
        while (x < xEnd && dirty.At(x, y)) ++x;
        return x;
    };
    const int32_t xEnd = firstClean(ptBlock.y, ptLimit.x);
    int32_t yEnd = ptBlock.y + 1;
    while (yEnd < ptLimit.y && firstClean(yEnd, xEnd) == xEnd) ++yEnd;
    return {ptBlock.x * sz.cx, ptBlock.y * sz.cy, xEnd * sz.cx, yEnd * sz.cy};
}

// Rasterizes whole blocks anew.
void CVectorLayerBuffer::Rasterize(const CRect& rc) {
    // A tile of its own takes the paths, so that one that fails leaves the old coverage and the flags.
    CAlphaBlock8 all;
    all.Create(rc.Size(), rc.TopLeft());
    for (const auto& spPath : m_lstPaths)
        if (!PixelsOf(spPath->RectIncludingPath()).Intersect(rc).IsEmpty())
            spPath->RasterizePath(m_fill, m_pCoverage->GetSize(), all);
    m_pCoverage->ForEachBlockIn(rc, [&](CPoint pt) {
        auto spTile = boost::static_pointer_cast<CAlphaBlock8>(m_pCoverage->CreateBlock(pt));
        spTile->PasteFrom(all, all.GetPosition());
        if (spTile->IsAll(0)) spTile.reset();
        m_pCoverage->SetBlock(pt, spTile);
        m_pCoverage->ClearDirty(pt);
        // The flags of a block that nobody asked for yet may not have been gathered.
        m_pDrawBuffer->GetDirty().Add(pt.x / DEFAULT_BLOCKSIZE.cx, pt.y / DEFAULT_BLOCKSIZE.cy);
    });
}

void CVectorLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    if (m_bVisible) RenderContent(dest);
}

void CVectorLayerBuffer::RenderContent(CRasterBlockBuffer& dest) const {
    m_pCoverage->BlendBlockInto(dest, nullptr);
}

bool CVectorLayerBuffer::MayPaintAt(CPoint pt) const {
    return m_pCoverage->DirtyAt(pt) || m_pCoverage->HasBlock(pt);
}

void CVectorLayerBuffer::GetChangeMatrix(CBoolMatrix& matrix) {
    // Paths of a hidden layer are rasterized when the layer is shown.
    if (m_bVisible) m_pCoverage->GetDirty().PassTo(matrix);
}

// A layer that was hidden has nothing in its draw buffer.
void CVectorLayerBuffer::AddPictureTo(CBoolMatrix& matrix) const {
    CLayerBuffer::AddPictureTo(matrix);
    m_pCoverage->AddTilesTo(matrix);
    matrix.Or(m_pCoverage->GetDirty());
}

void CVectorLayerBuffer::InsertPath(const boost::shared_ptr<CPathObject>& spPath, int idx) {
    const bool bInside = idx >= 0 && static_cast<size_t>(idx) < m_lstPaths.size();
    m_lstPaths.insert(bInside ? std::next(m_lstPaths.begin(), idx) : m_lstPaths.end(), spPath);
    spPath->SetLayer(boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()));
    InvalidatePath(spPath->RectIncludingPath());
}

int CVectorLayerBuffer::RemovePath(const CPathObject& path) {
    const auto it = std::find_if(m_lstPaths.begin(), m_lstPaths.end(),
                                 [&](const auto& spPath) { return spPath.get() == &path; });
    if (it == m_lstPaths.end()) return -1;
    const auto idx = static_cast<int>(std::distance(m_lstPaths.begin(), it));
    (*it)->SetLayer({});
    InvalidatePath(path.RectIncludingPath());
    m_lstPaths.erase(it);
    return idx;
}

void CVectorLayerBuffer::InvalidatePath(const CRect& rc) { m_pCoverage->MarkDirty(PixelsOf(rc)); }

void CVectorLayerBuffer::SetLayerColor(TColor color, bool bHistory) {
    if (bHistory && color != GetLayerColor())
        GetCanvas()->GetHistory().Register(boost::make_shared<SetLayerColorHistory>(
            L"レイヤーカラー変更", boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()),
            GetLayerColor(), color));
    m_pCoverage->SetColor(color);
    MarkPicture();
}

CSerializer CVectorLayerBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_lstPaths.size()));
    writer.WriteInt32(static_cast<int32_t>(GetLayerColor()));
    writer.WriteChunk(SerializeBase());
    for (const auto& spPath : m_lstPaths) writer.WriteChunk(spPath->Serialize());
    return writer;
}

void CVectorLayerBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    SetLayerColor(static_cast<TColor>(reader.ReadInt32()) & 0xFFFFFF);
    CDeserializer base;
    reader.ReadChunk(base);
    DeserializeBase(base);
    m_lstPaths.clear();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        const auto spPath = CreatePathObjectByTag(chunk.GetTag());
        spPath->Deserialize(chunk);
        InsertPath(spPath);
    }
    reader.ExpectEnd();
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
