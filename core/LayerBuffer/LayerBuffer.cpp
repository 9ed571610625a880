#include "core/LayerBuffer/LayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerFactory.h"
#include "core/LayerBuffer/LayerHistory.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

constexpr uint32_t TAG_LAYER_BASE = MakeTag("LAYB");
constexpr int THUMBNAIL_MINSIDE = 34; ///< thumbnails keep more than this on each side where they can

// Memory of an empty layer on a canvas of `nBlocks` blocks: itself, and a flag a block for each plane.
uint64_t EmptyLayerBytes(size_t nBlocks) { return 4096 + uint64_t{5} * nBlocks; }

CSize DividedUp(CSize sz, int n) { return {(sz.cx + n - 1) / n, (sz.cy + n - 1) / n}; }

void ConvertTile(CMonoRasterBlockBuffer& dest, const CColorRasterBlockBuffer& src) {
    const TConstColorPixels px = src.Pixels();
    for (size_t i = 0; i < src.GetPlaneBytes(); ++i)
        dest.GetPlane(0)[i] = GreyOf(px.pR[i], px.pG[i], px.pB[i]);
    std::copy_n(px.pA, src.GetPlaneBytes(), dest.GetAlpha());
}

void ConvertTile(CColorRasterBlockBuffer& dest, const CMonoRasterBlockBuffer& src) {
    for (size_t n = 0; n < 3; ++n) std::copy_n(src.GetPlane(0), src.GetPlaneBytes(), dest.GetPlane(n));
    std::copy_n(src.GetAlpha(), src.GetPlaneBytes(), dest.GetAlpha());
}

// Fills `dest` from `src` where that has tiles; both of the same geometry.
template <class Dest, class Source>
void ConvertTiles(CRasterBuffer& dest, CRasterBuffer& src) {
    src.ForEachBlock([&](CPoint pt) {
        const auto spSource = src.GetBlock(pt, false);
        if (!spSource) return;
        ConvertTile(static_cast<Dest&>(*dest.GetBlock(pt, true)), static_cast<const Source&>(*spSource));
    });
}

} // namespace

boost::shared_ptr<CRasterBuffer> CreatePlane(bool bColor, CSize sz, CSize szBlock) {
    boost::shared_ptr<CRasterBuffer> spPlane;
    if (bColor)
        spPlane = boost::make_shared<CColorRasterBuffer>();
    else
        spPlane = boost::make_shared<CMonoRasterBuffer>();
    spPlane->Create(sz, szBlock);
    return spPlane;
}

boost::shared_ptr<CRasterBuffer> ConvertPlane(const boost::shared_ptr<CRasterBuffer>& spPlane, bool bColor) {
    const bool bIsColor = dynamic_cast<const CColorRasterBuffer*>(spPlane.get()) != nullptr;
    if (bIsColor == bColor) return spPlane;
    const auto spResult = CreatePlane(bColor, spPlane->GetSize(), spPlane->GetBlockSize());
    if (bColor)
        ConvertTiles<CColorRasterBlockBuffer, CMonoRasterBlockBuffer>(*spResult, *spPlane);
    else
        ConvertTiles<CMonoRasterBlockBuffer, CColorRasterBlockBuffer>(*spResult, *spPlane);
    spResult->GetDirty().Fill(true);
    return spResult;
}

int ThumbnailScale(CSize szCanvas) {
    for (int n = DEFAULT_BLOCKSIZE.cx; n > 1; --n) {
        if (DEFAULT_BLOCKSIZE.cx % n != 0) continue;
        if (szCanvas.cx / n > THUMBNAIL_MINSIDE && szCanvas.cy / n > THUMBNAIL_MINSIDE) return n;
    }
    return 1;
}

void CLayerBuffer::Create(const TCanvasPtr& pCanvas) {
    SELF_CHECK(illegal_data, pCanvas != nullptr);
    m_wpCanvas = pCanvas;
    m_size = pCanvas->GetSize();
    m_strName = L"NoName";
    CreateCaches(pCanvas->IsColor());
}

void CLayerBuffer::CreateCaches(bool bColor) {
    const int thumbScale = ThumbnailScale(m_size);
    SELF_CHECK(illegal_data, DEFAULT_BLOCKSIZE.cx % thumbScale == 0);
    m_nThumbScale = thumbScale;
    m_pDrawBuffer = CreatePlane(bColor, m_size, DEFAULT_BLOCKSIZE);
    m_pThumbnail =
        CreatePlane(bColor, DividedUp(m_size, thumbScale), DividedUp(DEFAULT_BLOCKSIZE, thumbScale));
    MarkAllDirty();
}

void CLayerBuffer::FollowColorMode() {
    RenewCaches();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->FollowColorMode();
}

void CLayerBuffer::RenewCaches() {
    const uint8_t uOpacity = GetOpacity();
    CreateCaches(GetCanvas()->IsColor());
    m_pDrawBuffer->SetOpacity(uOpacity);
}

void CLayerBuffer::Resize(CSize sz, const TLayerChange& change) {
    m_size = sz;
    RenewCaches();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->Resize(sz, change);
}

void CLayerBuffer::PushBackup(TPlaneList& lstPlanes) const {
    for (const TLayerPtr& spChild : m_lstChildren) spChild->PushBackup(lstPlanes);
}

void CLayerBuffer::SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane) {
    MarkAllDirty();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->SwapBackup(lstPlanes, itPlane);
}

TCanvasPtr CLayerBuffer::GetCanvas() const {
    const TCanvasPtr pCanvas = m_wpCanvas.lock();
    SELF_CHECK(illegal_data, pCanvas != nullptr);
    return pCanvas;
}

void CLayerBuffer::DrawBlock(CRasterBlockBuffer& dest) {
    UpdateBlock(dest.GetPosition());
    if (m_bVisible) m_pDrawBuffer->BlendBlockInto(dest, nullptr);
}

template <class Paint>
void CLayerBuffer::PaintChildren(CRasterBlockBuffer& dest, Paint paint) const {
    if (m_lstChildren.empty()) return;
    // A clipped child adds colour but no coverage: the layer's own alpha is put back afterwards.
    const std::vector<uint8_t> vAlpha = IsClipping() ? dest.CopyAlpha() : std::vector<uint8_t>();
    for (const TLayerPtr& spChild : m_lstChildren) paint(*spChild);
    if (IsClipping()) dest.RestoreAlpha(vAlpha);
}

void CLayerBuffer::UpdateBlock(CPoint pt) {
    if (!m_pDrawBuffer->DirtyAt(pt)) return;
    bool bPaints = PaintsOwn() && PrepareOwn(pt);
    for (const TLayerPtr& spChild : m_lstChildren) {
        spChild->RefreshBlock(pt);
        bPaints = bPaints || (!IsClipping() && spChild->ShowsAt(pt));
    }
    // A layer's own tile serves as its picture when nothing comes to it: most tiles exist once.
    const auto spOwn = m_lstChildren.empty() ? GetOwnTile(pt) : boost::shared_ptr<CRasterBlockBuffer>();
    if (!bPaints || spOwn) {
        m_pDrawBuffer->ShareBlock(pt, spOwn);
    } else {
        const auto spTile = m_pDrawBuffer->RenewBlock(pt);
        RenderOwn(*spTile);
        PaintChildren(*spTile, [&](CLayerBuffer& child) { child.DrawBlock(*spTile); });
    }
    m_pThumbnail->SetDirty({pt.x / m_nThumbScale, pt.y / m_nThumbScale});
    m_pDrawBuffer->ClearDirty(pt);
}

const boost::shared_ptr<CRasterBuffer>& CLayerBuffer::GetThumbnail() {
    m_pThumbnail->ForEachBlock([&](CPoint pt) {
        if (!m_pThumbnail->DirtyAt(pt)) return;
        const CPoint ptPicture{pt.x * m_nThumbScale, pt.y * m_nThumbScale};
        const CSize szInside = CRect(ptPicture, DEFAULT_BLOCKSIZE).Intersect(m_pDrawBuffer->GetRect()).Size();
        const auto spTile = m_pDrawBuffer->GetBlock(ptPicture, false);
        m_pThumbnail->SetBlock(
            pt, spTile ? spTile->CreateReduced(m_pThumbnail->GetBlockSize(), m_nThumbScale, szInside)
                       : boost::shared_ptr<CRasterBlockBuffer>());
        m_pThumbnail->ClearDirty(pt);
    });
    return m_pThumbnail;
}

void CLayerBuffer::PaintPicture(CRasterBlockBuffer& dest) {
    const CPoint pt = dest.GetPosition();
    if (IsPictureCached(dynamic_cast<const CColorRasterBlockBuffer*>(&dest) != nullptr)) {
        UpdateBlock(pt);
        if (const auto spTile = m_pDrawBuffer->GetBlock(pt, false)) spTile->BlendWith(dest, 255, nullptr);
        return;
    }
    if (PrepareOwn(pt)) RenderContent(dest);
    PaintChildren(dest, [&](CLayerBuffer& child) { child.PaintOnto(dest); });
}

void CLayerBuffer::PaintOnto(CRasterBlockBuffer& dest) {
    if (m_bVisible && HasPicture(dest.GetPosition())) PaintWithOpacity(dest);
}

void CLayerBuffer::PaintWithOpacity(CRasterBlockBuffer& dest) {
    const auto spTile = dest.CreateBlank(dest.GetSize());
    PaintPicture(*spTile);
    spTile->BlendWith(dest, GetOpacity(), nullptr);
}

bool CLayerBuffer::HasPicture(CPoint pt) {
    if (PrepareOwn(pt)) return true;
    return !IsClipping() && std::any_of(m_lstChildren.begin(), m_lstChildren.end(), [&](const auto& spChild) {
        return spChild->IsVisible() && spChild->HasPicture(pt);
    });
}

void CLayerBuffer::UpdateFlags() {
    CBoolMatrix& dirty = m_pDrawBuffer->GetDirty();
    for (const TLayerPtr& spChild : m_lstChildren) {
        spChild->UpdateFlags();
        if (spChild->PassesFlags() || spChild->m_bJustHidden)
            spChild->m_pDrawBuffer->GetDirty().PassTo(dirty);
        spChild->m_bJustHidden = false;
    }
    GetChangeMatrix(dirty);
}

bool CLayerBuffer::UpdateStrokes(uint64_t uNumber) {
    bool bChanged = false;
    for (const TLayerPtr& spChild : m_lstChildren) bChanged |= spChild->UpdateStrokes(uNumber);
    return bChanged;
}

uint64_t CLayerBuffer::GetNextStroke() const {
    uint64_t uNext = NO_STROKE;
    for (const TLayerPtr& spChild : m_lstChildren) uNext = std::min(uNext, spChild->GetNextStroke());
    return uNext;
}

bool CLayerBuffer::IsBehind() const {
    return std::any_of(m_lstChildren.begin(), m_lstChildren.end(),
                       [](const TLayerPtr& spChild) { return spChild->IsBehind(); });
}

bool CLayerBuffer::canBeMergedWith(const CLayerBuffer& other) const {
    return &other != this && m_lstChildren.empty() && other.m_lstChildren.empty();
}

void CLayerBuffer::SetVisible(bool bVisible, bool bModifies) {
    if (bModifies && bVisible != m_bVisible) GetCanvas()->GetHistory().SetModified(true);
    m_bVisible = bVisible;
    m_bJustHidden = !bVisible;
    MarkPicture();
    m_pDrawBuffer->GetDirty().RenewAll(); // what a hidden layer kept to itself
}

void CLayerBuffer::setName(const std::wstring& strName, bool bHistory) {
    std::wstring strNew = strName;
    if (bHistory && strName != m_strName)
        GetCanvas()->GetHistory().Register(boost::make_shared<LayerRenameHistory>(
            L"レイヤー名変更", shared_from_this(), m_strName, strName));
    m_strName.swap(strNew);
}

void CLayerBuffer::SetOpacity(uint8_t uOpacity, bool bHistory) {
    if (bHistory && uOpacity != GetOpacity()) {
        CHistoryStream& history = GetCanvas()->GetHistory();
        // A slider's way is one step: the newest entry takes the new value over if it is this layer's.
        auto* pNewest = dynamic_cast<LayerAlphaHistory*>(history.GetFoldable().get());
        if (pNewest && pNewest->IsOf(*this)) {
            pNewest->SetNew(uOpacity);
            history.SetModified(true);
        } else {
            history.Register(
                boost::make_shared<LayerAlphaHistory>(shared_from_this(), GetOpacity(), uOpacity));
        }
    }
    m_pDrawBuffer->SetOpacity(uOpacity);
    if (IsClipping()) MarkPicture(); // a set's opacity is never drawn
}

CSerializer CLayerBuffer::SerializeBase() const {
    CSerializer writer;
    writer.SetTag(TAG_LAYER_BASE, 1);
    const int32_t nCount = static_cast<int32_t>(m_lstChildren.size());
    const TLayerPtr spActive = m_wpActive.lock();
    const int idxActive = spActive ? IndexOf(*spActive) : -1;
    writer.WriteInt32(nCount);
    writer.WriteString(m_strName);
    writer.WriteBool(m_bVisible);
    writer.WriteByte(GetOpacity());
    writer.WriteInt32(idxActive < 0 ? nCount : idxActive);
    for (const TLayerPtr& spChild : m_lstChildren) writer.WriteChunk(spChild->Serialize());
    return writer;
}

void CLayerBuffer::DeserializeBase(CDeserializer& reader) {
    reader.ExpectTag(TAG_LAYER_BASE);
    // The root's chunk lies in two others and in the file; a layer's chunk and this one in it add two each.
    if (reader.GetDepth() > 3 + 2 * MAX_LAYER_NESTING) throw deserialize_error();
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    m_strName = reader.ReadString();
    m_bVisible = reader.ReadBool();
    m_pDrawBuffer->SetOpacity(reader.ReadByte());
    // The first version of the chunk knew no active child.
    const uint32_t uActive = reader.GetVersion() >= 1 ? static_cast<uint32_t>(reader.ReadInt32()) : uCount;
    if (uActive > uCount) throw deserialize_error();
    m_lstChildren.clear();
    m_wpActive.reset();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        // A few dozen bytes make a layer, so what layers take by themselves is limited.
        chunk.Claim(EmptyLayerBytes(m_pDrawBuffer->GetDirty().GetCount()));
        const TLayerPtr spChild = CreateLayerByTag(chunk.GetTag());
        spChild->Deserialize(chunk, GetCanvas());
        m_lstChildren.push_back(spChild);
        if (u == uActive) m_wpActive = spChild;
    }
    reader.ExpectEnd();
    MarkAllDirty();
}
