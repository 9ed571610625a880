#include "host/PictureHost/PictureHost.h"

#include "core/Base/Failure.h"

#include <cstring>

using namespace hostabi;

namespace {

constexpr Fixed RESOLUTION = 72 << 16;

SPErr NotImplemented() { return SP_NOT_IMPLEMENTED; }

SPErr ReleaseNothing(const char*, int32_t) { return noErr; }

SPBoolean IsEqualText(const char* psz1, const char* psz2) { return std::strcmp(psz1, psz2) == 0; }

bool IsEmptyRect(const Rect& rc) { return rc.left >= rc.right || rc.top >= rc.bottom; }

VRect MakeVRect(const CRect& rc) { return {rc.top, rc.left, rc.bottom, rc.right}; }

/// Makes a host the current one of its thread during one call.
class CCurrentHost : boost::noncopyable {
public:
    CCurrentHost(CPictureHost*& pSlot, CPictureHost* pHost) : m_pSlot(pSlot), m_pOld(pSlot) { pSlot = pHost; }
    ~CCurrentHost() { m_pSlot = m_pOld; }

private:
    CPictureHost*& m_pSlot;
    CPictureHost* m_pOld;
};

} // namespace

thread_local CPictureHost* CPictureHost::s_pCurrent = nullptr;

CPictureHost::CPictureHost(THostPicture picture) : m_picture(std::move(picture)) {
    const CRect& rc = m_picture.rc;
    SELF_CHECK(invalid_argument, !rc.IsEmpty());
    SELF_CHECK(invalid_argument, rc.left >= -MAX_SIDE && rc.top >= -MAX_SIDE);
    SELF_CHECK(invalid_argument, rc.right <= MAX_SIDE && rc.bottom <= MAX_SIDE);
    SELF_CHECK(invalid_argument, rc.Width() <= MAX_SIDE && rc.Height() <= MAX_SIDE);
    FillDocument();
    FillRecord();
}

ReadChannelDesc* CPictureHost::AddChannel(THostPicture::TPlane& vPlane, int16_t nType, const char* pszName) {
    const CRect& rc = m_picture.rc;
    SELF_CHECK(invalid_argument,
               vPlane.size() == static_cast<size_t>(rc.Width()) * static_cast<size_t>(rc.Height()));
    TChannel& channel = m_deqChannels.emplace_back();
    channel.pHost = this;
    channel.pPlane = &vPlane;
    ReadChannelDesc& desc = channel.desc;
    desc.maxVersion = 1;
    desc.port = &channel;
    desc.writePort = &channel;
    desc.bounds = MakeVRect(rc);
    desc.depth = 8;
    desc.tileSize = {rc.Height(), rc.Width()};
    desc.tileOrigin = {rc.top, rc.left};
    desc.target = desc.shown = nType != 0;
    desc.channelType = nType;
    desc.name = pszName;
    return &desc;
}

void CPictureHost::FillDocument() {
    m_document.imageMode = IMAGE_MODE_RGB;
    m_document.depth = 8;
    m_document.bounds = MakeVRect(m_picture.rc);
    m_document.hResolution = m_document.vResolution = RESOLUTION;
    for (int i = 0; i < 256; ++i)
        m_document.redLUT[i] = m_document.greenLUT[i] = m_document.blueLUT[i] = static_cast<uint8_t>(i);

    ReadChannelDesc* const pRed = AddChannel(m_picture.vRed, 1, "Red");
    ReadChannelDesc* const pGreen = AddChannel(m_picture.vGreen, 2, "Green");
    ReadChannelDesc* const pBlue = AddChannel(m_picture.vBlue, 3, "Blue");
    pRed->next = pGreen;
    pGreen->next = pBlue;
    m_document.targetCompositeChannels = pRed;
    m_document.mergedCompositeChannels = pRed;

    ReadChannelDesc** ppNext = &m_document.alphaChannels;
    for (THostPicture::TPlane& vAlpha : m_picture.vAlphas) {
        *ppNext = AddChannel(vAlpha, 0, "Alpha");
        ppNext = &(*ppNext)->next;
    }
    if (!m_picture.vTransparency.empty())
        m_document.targetTransparency = AddChannel(m_picture.vTransparency, 16, "Transparency");
}

void CPictureHost::FillRecord() {
    m_basicSuite.AcquireSuite = OnAcquireSuite;
    m_basicSuite.ReleaseSuite = ReleaseNothing;
    m_basicSuite.IsEqual = IsEqualText;
    m_basicSuite.AllocateBlock = [](size_t, void**) { return SP_NOT_IMPLEMENTED; };
    m_basicSuite.FreeBlock = [](void*) { return SP_NOT_IMPLEMENTED; };
    m_basicSuite.ReallocateBlock = [](void*, size_t, void**) { return SP_NOT_IMPLEMENTED; };
    m_basicSuite.Undefined = NotImplemented;

    const auto narrow = [](int32_t n) { return static_cast<int16_t>(n); };
    const CRect& rc = m_picture.rc;
    const bool bTransparency = !m_picture.vTransparency.empty();
    m_record.imageSize = m_record.wholeSize = {narrow(rc.Height()), narrow(rc.Width())};
    m_record.planes = bTransparency ? 4 : 3;
    m_record.filterRect = {narrow(rc.top), narrow(rc.left), narrow(rc.bottom), narrow(rc.right)};
    m_record.imageMode = IMAGE_MODE_RGB;
    m_record.imageHRes = m_record.imageVRes = RESOLUTION;
    m_record.hostSig = MakeCode("VlmF");
    m_record.filterCase = bTransparency ? 4 : 1; // editable transparency, or flat; no selection either way
    m_record.inLayerPlanes = m_record.outLayerPlanes = m_record.absLayerPlanes = 3;
    m_record.inTransparencyMask = m_record.outTransparencyMask = m_record.absTransparencyMask = bTransparency;
    m_record.documentInfo = &m_document;
    m_record.sSPBasic = &m_basicSuite;
    m_record.depth = 8;
}

int16_t CPictureHost::Run(PluginMainProc pMain) {
    const CCurrentHost current(s_pCurrent, this);
    int16_t nResult = noErr;
    for (const int16_t nSelector : {filterSelectorParameters, filterSelectorPrepare, filterSelectorStart}) {
        Call(pMain, nSelector, &m_record, nResult);
        if (nResult != noErr) return nResult;
    }
    // A module that processes its pixels in pieces sets these rectangles until it has read all of them.
    while (nResult == noErr && !(IsEmptyRect(m_record.inRect) && IsEmptyRect(m_record.outRect)))
        Call(pMain, filterSelectorContinue, &m_record, nResult);
    int16_t nFinished = noErr;
    Call(pMain, filterSelectorFinish, &m_record, nFinished);
    return nResult != noErr ? nResult : nFinished;
}

void CPictureHost::RunAbout(PluginMainProc pMain) {
    const CCurrentHost current(s_pCurrent, this);
    AboutRecord record{};
    record.sSPBasic = &m_basicSuite;
    int16_t nResult = noErr;
    Call(pMain, filterSelectorAbout, &record, nResult);
}

void CPictureHost::Call(PluginMainProc pMain, int16_t nSelector, void* pRecord, int16_t& nResult) {
    intptr_t nData = 0;
    pMain(nSelector, pRecord, &nData, &nResult);
}

SPErr CPictureHost::AcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite) {
    if (std::strcmp(pszName, CHANNEL_PORTS_SUITE) != 0 || nVersion != CHANNEL_PORTS_VERSION)
        return SP_SUITE_NOT_FOUND;
    *ppSuite = &GetSuite();
    return noErr;
}

SPErr CPictureHost::Read(TChannel& channel, int32_t nLevel, VRect& rc, const PixelMemoryDesc& memory) {
    if (nLevel != 0) return SP_BAD_PARAMETER;
    return Transfer(channel, rc, memory, [](uint8_t& uPixel, uint8_t& uMemory) { uMemory = uPixel; });
}

SPErr CPictureHost::Write(TChannel& channel, VRect& rc, const PixelMemoryDesc& memory) {
    return Transfer(channel, rc, memory, [](uint8_t& uPixel, uint8_t& uMemory) { uPixel = uMemory; });
}

template <class Copy>
SPErr CPictureHost::Transfer(TChannel& channel, VRect& rc, const PixelMemoryDesc& memory, Copy copy) {
    if (!memory.data) return SP_BAD_PARAMETER;
    if (memory.depth != 8) return errUnsupportedDepth;
    if (memory.rowBits % 8 != 0) return errUnsupportedRowBits;
    if (memory.colBits % 8 != 0) return errUnsupportedColBits;
    if (memory.bitOffset % 8 != 0) return errUnsupportedBitOffset;

    const CRect& rcAll = m_picture.rc;
    const CRect rcAsked(rc.left, rc.top, rc.right, rc.bottom);
    const CRect rcIn = rcAsked.Intersect(rcAll);
    if (rcIn.IsEmpty()) return SP_BAD_PARAMETER;
    auto* const pData = static_cast<uint8_t*>(memory.data) + memory.bitOffset / 8;
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y) {
        uint8_t* pMemory = pData + static_cast<ptrdiff_t>(y - rcAsked.top) * (memory.rowBits / 8) +
                           static_cast<ptrdiff_t>(rcIn.left - rcAsked.left) * (memory.colBits / 8);
        uint8_t* pPixel = channel.pPlane->data() + static_cast<ptrdiff_t>(y - rcAll.top) * rcAll.Width() +
                          (rcIn.left - rcAll.left);
        for (int32_t x = rcIn.left; x < rcIn.right; ++x, pMemory += memory.colBits / 8)
            copy(*pPixel++, *pMemory);
    }
    rc = MakeVRect(rcIn);
    return noErr;
}

SPErr CPictureHost::OnAcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite) {
    return s_pCurrent ? s_pCurrent->AcquireSuite(pszName, nVersion, ppSuite) : SP_BAD_PARAMETER;
}

SPErr CPictureHost::OnRead(ChannelPort port, int32_t nLevel, VRect* pBounds, const PixelMemoryDesc* pMemory) {
    auto* const pChannel = static_cast<TChannel*>(port);
    return pChannel->pHost->Read(*pChannel, nLevel, *pBounds, *pMemory);
}

SPErr CPictureHost::OnWrite(ChannelPort port, VRect* pBounds, const PixelMemoryDesc* pMemory) {
    auto* const pChannel = static_cast<TChannel*>(port);
    return pChannel->pHost->Write(*pChannel, *pBounds, *pMemory);
}

const ChannelPortsSuite& CPictureHost::GetSuite() {
    static const ChannelPortsSuite suite = [] {
        ChannelPortsSuite s{};
        for (ChannelPortsSuite::Slot* pSlot : {&s.CountLevels,
                                               &s.GetDepth,
                                               &s.GetDataBounds,
                                               &s.GetWriteLimit,
                                               &s.GetTilingGrid,
                                               &s.GetSupportRect,
                                               &s.GetDependentRect,
                                               &s.CanRead,
                                               &s.CanWrite,
                                               &s.ReadScaledPixels,
                                               &s.FindSourceForScaledRead,
                                               &s.New,
                                               &s.Dispose,
                                               &s.SupportsOperation,
                                               &s.ApplyOperation,
                                               &s.AddOperation,
                                               &s.RemoveOperation,
                                               &s.NewCopyOnWrite,
                                               &s.Freeze,
                                               &s.Restore})
            *pSlot = NotImplemented;
        s.ReadPixelsFromLevel = OnRead;
        s.WritePixelsToBaseLevel = OnWrite;
        return s;
    }();
    return suite;
}
