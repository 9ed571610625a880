#include "core/CanvasBuffer/CanvasBuffer.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/LayerBuffer/LayerWire.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterBuffer/PlaneKind.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr uint32_t TAG_FILE = MakeTag("VLM1");
constexpr uint32_t TAG_META = MakeTag("META");
constexpr uint32_t TAG_BODY = MakeTag("CPSB");
constexpr uint32_t META_VERSION = 1; ///< version 0 had no colour modes

constexpr wchar_t UNTITLED[] = L"名称未設定";
constexpr wchar_t COMPOSING[] = L"レイヤーを合成しています";
/// Blocks between two reports of progress: enough to keep every thread busy.
constexpr size_t COMPOSED_AT_ONCE = 512;

// A layer and all below it.
size_t CountLayers(const CLayerBuffer& layer) {
    size_t nLayers = 1;
    for (const TLayerPtr& spChild : layer.GetChildren()) nLayers += CountLayers(*spChild);
    return nLayers;
}

} // namespace

/// The hidden root holds all top-level layers; it has no pixels of its own and clips nothing.
class CCanvasBuffer::InternalLayerBuffer : public CLayerBuffer {
public:
    void Deserialize(CDeserializer& reader, const TCanvasPtr&) override { DeserializeBase(*this, reader); }
    CSerializer Serialize() const override { return SerializeBase(*this); }
    bool IsClipping() const override { return false; }
    bool canBeMergedWith(const CLayerBuffer&) const override { return false; }

protected:
    TLayerPtr CreateLike(const TCanvasPtr& spCanvas) const override {
        const auto spRoot = boost::make_shared<InternalLayerBuffer>();
        spRoot->Create(spCanvas);
        return spRoot;
    }
};

CCanvasBuffer::CCanvasBuffer() : m_spHistory(boost::make_shared<CHistoryStream>()) {}

CCanvasBuffer::~CCanvasBuffer() = default;

void CCanvasBuffer::Create(CSize sz) {
    SELF_CHECK(invalid_argument, sz.cx > 0 && sz.cy > 0);
    m_size = sz;
    auto spRoot = boost::make_shared<InternalLayerBuffer>();
    spRoot->Create(shared_from_this());
    m_spCounters = boost::make_shared<UpdateCounterMatrix>(spRoot->GetDrawBuffer()->GetBufferSize());
    m_spRoot = spRoot;
    SetTitle(UNTITLED);
}

void CCanvasBuffer::SetColorMode(bool bColor, bool bColorRaster) {
    SELF_CHECK(defect_logic, m_spRoot == nullptr);
    m_bColor = bColor;
    m_bColorRaster = bColorRaster;
}

CLayerBuffer& CCanvasBuffer::GetRoot() const {
    const auto& internalLayer = m_spRoot;
    SELF_CHECK(illegal_data, internalLayer != nullptr);
    return *internalLayer;
}

TLayerPtr CCanvasBuffer::GetActiveLayer() const {
    TLayerPtr spLayer = GetRoot().GetActiveChild();
    while (spLayer && spLayer->GetActiveChild()) spLayer = spLayer->GetActiveChild();
    return spLayer;
}

void CCanvasBuffer::SelectLayer(const TLayerPtr& spLayer) {
    TLayerPtr spChild;
    for (TLayerPtr sp = spLayer; sp && sp != m_spRoot; sp = m_spRoot->FindParentOf(*sp)) {
        sp->SetActiveChild(spChild);
        spChild = sp;
    }
    m_spRoot->SetActiveChild(spChild);
}

void CCanvasBuffer::FlushCanvasUpdates() {
    GetRoot().GetPicture().UpdateFlags();
    m_spCounters->Update(GetRoot().GetDrawBuffer()->GetDirty());
}

CRasterBuffer& CCanvasBuffer::GetComposite() const { return *GetRoot().GetDrawBuffer(); }

void CCanvasBuffer::ComposeAll(IProgress& progress) {
    FlushCanvasUpdates();
    std::vector<CPoint> vBlocks;
    GetComposite().ForEachBlock([&](CPoint pt) {
        if (GetComposite().DirtyAt(pt)) vBlocks.push_back(pt);
    });
    progress.Begin(COMPOSING, vBlocks.size());
    const std::span<const CPoint> blocks = vBlocks;
    for (size_t i = 0; i < blocks.size(); i += COMPOSED_AT_ONCE) {
        const auto part = blocks.subspan(i, std::min(COMPOSED_AT_ONCE, blocks.size() - i));
        ComposeBlocks(*this, part, ThreadsForBlocks(part.size()), {});
        progress.Advance(part.size());
    }
}

void CCanvasBuffer::CompleteWork() {
    while (HasPendingWork()) Update();
}

boost::shared_ptr<CRasterBuffer> CCanvasBuffer::Flatten(IProgress& progress) {
    if (m_bColor == IsColorPicture()) {
        ComposeAll(progress);
        return GetRoot().GetDrawBuffer();
    }
    FlushCanvasUpdates();
    const auto spPicture = CreatePlane(IsColorPicture(), m_size, DEFAULT_BLOCKSIZE);
    progress.Begin(COMPOSING, spPicture->GetBlockCount());
    spPicture->ForEachBlock([&](CPoint pt) {
        progress.Advance();
        CLayerPicture& root = GetRoot().GetPicture();
        if (root.HasPicture(pt)) root.PaintPicture(*spPicture->GetBlock(pt, true));
    });
    return spPicture;
}

TFloatState CCanvasBuffer::GetFloatState() const {
    const auto spLayer = m_wpFloatLayer.lock();
    if (!spLayer) return {{}, {}, m_spSelect};
    return {spLayer->GetFloat(), spLayer, m_spSelect};
}

void CCanvasBuffer::SetFloatState(const TFloatState& state) {
    const auto spOld = m_wpFloatLayer.lock();
    const auto spLayer = state.wpLayer.lock();
    if (spOld && spOld != spLayer) spOld->SetFloat({});
    if (spLayer) spLayer->SetFloat(state.spFloat);
    m_wpFloatLayer = state.wpLayer;
    m_spSelect = state.spSelect;
}

void CCanvasBuffer::ConvertColorMode(bool bColor, bool bColorRaster, IProgress& progress) {
    CLayerPicture& picture = GetRoot().GetPicture();
    CBoolMatrix was(GetComposite().GetBufferSize());
    picture.AddPictureTo(was);
    m_bColor = bColor;
    m_bColorRaster = bColorRaster;
    progress.Begin(L"カラーモードを変更しています", CountLayers(GetRoot()));
    GetRoot().FollowColorMode(progress);
    picture.DropNeedlessFlags();
    GetComposite().GetDirty().Or(was);
}

void CCanvasBuffer::Resize(CSize sz, const TLayerChange& change, IProgress& progress) {
    SELF_CHECK(invalid_argument, sz.cx > 0 && sz.cy > 0);
    progress.Begin(L"キャンバスを変更しています",
                   GetRoot().CountResizeSteps(sz) + (m_spSelect ? CountChangeSteps(sz) : 0));
    m_place = m_place.After(change, m_size);
    m_size = sz;
    GetRoot().Resize(sz, change, progress);
    const CSize szBlocks = GetComposite().GetBufferSize();
    if (!(m_spCounters->GetSize() == szBlocks))
        m_spCounters = boost::make_shared<UpdateCounterMatrix>(szBlocks);
    if (!m_spSelect) return;
    CAlphaBufferImpl<uint8_t> mask;
    mask.Create(sz, DEFAULT_BLOCKSIZE);
    ChangePlane(m_spSelect->GetMask(), mask, change, progress);
    const auto spSelect = boost::make_shared<CSelectBuffer>(sz, mask, CPoint{});
    spSelect->UpdateOutline();
    m_spSelect = spSelect->GetBound().IsEmpty() ? boost::shared_ptr<CSelectBuffer>() : spSelect;
}

TCanvasPlace TCanvasPlace::After(const TLayerChange& change, CSize sz) const {
    constexpr int UNITS_OF_PIXEL = 8;
    const CPoint ptFirst = change.fnPoint({0, 0});
    const CPoint ptLast = change.fnPoint({sz.cx * UNITS_OF_PIXEL, sz.cy * UNITS_OF_PIXEL});
    const double dX = double(ptLast.x - ptFirst.x) / (sz.cx * UNITS_OF_PIXEL);
    const double dY = double(ptLast.y - ptFirst.y) / (sz.cy * UNITS_OF_PIXEL);
    return {dLeft - ptFirst.x / (UNITS_OF_PIXEL * dX * dScaleX),
            dTop - ptFirst.y / (UNITS_OF_PIXEL * dY * dScaleY), dScaleX * dX, dScaleY * dY};
}

CPoint TCanvasPlace::MapTo(const TCanvasPlace& other, CPoint pt) const {
    // From pixel's middle to pixel's middle.
    const double dX = ((pt.x + 0.5) / dScaleX + dLeft - other.dLeft) * other.dScaleX;
    const double dY = ((pt.y + 0.5) / dScaleY + dTop - other.dTop) * other.dScaleY;
    return {static_cast<int32_t>(std::floor(dX)), static_cast<int32_t>(std::floor(dY))};
}

CCanvasBuffer::FullBackup CCanvasBuffer::CreateFullBackup() {
    const auto& internalLayer = m_spRoot;
    SELF_CHECK(illegal_data, internalLayer);
    const TCanvasPtr pCanvas = internalLayer->GetCanvas();
    SELF_CHECK(illegal_data, pCanvas);
    TLayerPtr spCopy;
    try {
        spCopy = internalLayer->CreateFullCopy(pCanvas);
    } catch (const deserialize_error&) {
        throw internal_error(L"CreateFullBackup: deserialize_error in Deserialize()");
    }
    return {boost::static_pointer_cast<InternalLayerBuffer>(spCopy),
            *m_spCounters,
            m_spSelect,
            m_bColor,
            m_bColorRaster,
            m_place};
}

void CCanvasBuffer::SwapFullBackup(const boost::shared_ptr<CCanvasBuffer>& spCanvas, FullBackup* pBackup) {
    if (!spCanvas) return;
    FullBackup& stor = *pBackup;
    SELF_CHECK(illegal_data, stor.internalLayer);
    const bool bSameSize = stor.internalLayer->GetSize() == spCanvas->m_size;
    stor.internalLayer->SwapName(*spCanvas->m_spRoot);
    stor.internalLayer->FollowVisibility(*spCanvas->m_spRoot);
    spCanvas->m_spRoot.swap(stor.internalLayer);
    if (!(spCanvas->m_spCounters->GetSize() == stor.spCounters.GetSize()))
        std::swap(*spCanvas->m_spCounters, stor.spCounters);
    spCanvas->m_spSelect.swap(stor.spSelect);
    std::swap(spCanvas->m_bColor, stor.m_bColor);
    std::swap(spCanvas->m_bColorRaster, stor.m_bColorRaster);
    std::swap(spCanvas->m_place, stor.place);
    spCanvas->m_size = spCanvas->m_spRoot->GetSize();
    CLayerPicture& picture = spCanvas->m_spRoot->GetPicture();
    if (bSameSize) {
        picture.DropNeedlessFlags();
        stor.internalLayer->GetPicture().AddPictureTo(spCanvas->GetComposite().GetDirty());
    } else {
        picture.MarkAllDirty();
    }
    stor.internalLayer->DropCaches();
}

size_t CCanvasBuffer::GetBytesBeside(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                                     const FullBackup& backup) {
    if (!spCanvas) return 0;
    const bool bSelect = backup.spSelect && backup.spSelect != spCanvas->m_spSelect;
    return backup.internalLayer->GetBytes(spCanvas->m_spRoot.get()) +
           (bSelect ? backup.spSelect->GetBytes(spCanvas->m_spSelect.get()) : 0);
}

const std::wstring& CCanvasBuffer::GetTitle() const { return GetRoot().GetName(); }

void CCanvasBuffer::SetTitle(const std::wstring& strTitle) { GetRoot().setName(strTitle); }

void CCanvasBuffer::SwapPathAndTitle(std::wstring& strPath, std::wstring& strTitle) {
    m_strPath.swap(strPath);
    GetRoot().SwapName(strTitle);
}

CSerializer CCanvasBuffer::Serialize() const {
    CSerializer meta;
    meta.SetTag(TAG_META, META_VERSION);
    meta.WriteSize(m_size);
    meta.WriteBool(m_bColorRaster);
    meta.WriteBool(m_bColor);
    CSerializer body;
    body.SetTag(TAG_BODY, 0);
    body.WriteChunk(GetRoot().Serialize());
    CSerializer top;
    top.SetTag(TAG_FILE, 0);
    top.WriteChunk(std::move(meta));
    top.WriteChunk(std::move(body));
    return top;
}

void CCanvasBuffer::Deserialize(CDeserializer& top, const std::wstring& strPath) {
    top.ExpectTag(TAG_FILE);
    CDeserializer meta;
    top.ReadChunk(meta);
    meta.ExpectTag(TAG_META);
    const CSize sz = meta.ReadSize();
    if (meta.GetVersion() >= META_VERSION) {
        m_bColorRaster = meta.ReadBool();
        m_bColor = meta.ReadBool();
    }
    if (sz.cx <= 0 || sz.cy <= 0 || sz.cx > MAX_DOCUMENT_SIDE || sz.cy > MAX_DOCUMENT_SIDE)
        throw deserialize_error();
    Create(sz);
    CDeserializer body;
    top.ReadChunk(body);
    CDeserializer root;
    body.ReadChunk(root);
    m_spRoot->Deserialize(root, shared_from_this());
    m_spRoot->GetPicture().DropNeedlessFlags();
    body.ExpectEnd();
    meta.ExpectEnd();
    top.ExpectEnd();
    m_strPath = strPath;
}

boost::shared_ptr<CCanvasBuffer> CreateCanvas(CSize sz, bool bColor) {
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->SetColorMode(bColor, bColor);
    spCanvas->Create(sz);
    return spCanvas;
}

size_t ThreadsForBlocks(size_t nBlocks) {
    constexpr size_t EACH = 24; // a quarter of a millisecond at least, ten times what a thread's start takes
    return std::clamp<size_t>(nBlocks / EACH, 1, AvailableThreads());
}

void ComposeBlocks(CCanvasBuffer& canvas, std::span<const CPoint> blocks, size_t nThreads,
                   const std::function<void(CPoint)>& fnDone) {
    canvas.GetRoot().GetPicture().PrepareBlocks(blocks);
    ForEachIndex(blocks.size(), nThreads, [&](size_t i) {
        ComposeBlock(canvas, blocks[i].x, blocks[i].y);
        if (fnDone) fnDone(blocks[i]);
    });
}

void ComposeBlock(CCanvasBuffer& canvas, int32_t x, int32_t y) {
    canvas.GetRoot().GetPicture().UpdateBlock({x, y});
}
