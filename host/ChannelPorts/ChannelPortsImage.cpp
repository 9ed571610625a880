#include "host/ChannelPorts/ChannelPortsImage.h"

using namespace hostabi;

namespace {

VRect MakeRect(const CRect& rc) { return {rc.top, rc.left, rc.bottom, rc.right}; }

PixelMemoryDesc MakeDesc(const TPixelMemory& memory) {
    return {memory.pData, memory.nRowBits, memory.nColBits, memory.nBitOffset, memory.nDepth};
}

} // namespace

bool CChannelPortsImage::CanOpen(const FilterRecord* pRecord) {
    return pRecord && pRecord->sSPBasic && pRecord->documentInfo;
}

CRect CChannelPortsImage::GetRect() {
    if (!m_pRecord) return {};
    const Rect& rc = m_pRecord->filterRect;
    return {rc.left, rc.top, rc.right, rc.bottom};
}

std::vector<THostChannel> CChannelPortsImage::GetChannels() {
    m_vDescs.clear();
    if (!m_pRecord || !m_pRecord->documentInfo) return {};
    const ReadImageDocumentDesc& document = *m_pRecord->documentInfo;
    const auto appendList = [&](const ReadChannelDesc* pDesc) {
        for (; pDesc; pDesc = pDesc->next) m_vDescs.push_back(pDesc);
    };
    appendList(document.targetCompositeChannels);
    appendList(document.alphaChannels);
    // The transparency channel is taken alone: its `next` leads to channels that are not the document's.
    if (document.targetTransparency) m_vDescs.push_back(document.targetTransparency);

    std::vector<THostChannel> vChannels;
    for (size_t i = 0; i < m_vDescs.size(); ++i) vChannels.push_back({m_vDescs[i]->channelType, i});
    return vChannels;
}

bool CChannelPortsImage::Open() {
    if (!CanOpen(m_pRecord)) return false;
    const void* pSuite = nullptr;
    if (m_pRecord->sSPBasic->AcquireSuite(CHANNEL_PORTS_SUITE, CHANNEL_PORTS_VERSION, &pSuite) != noErr)
        return false;
    m_pSuite = static_cast<const ChannelPortsSuite*>(pSuite);
    return m_pSuite != nullptr;
}

void CChannelPortsImage::Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) {
    const ChannelPort port = m_vDescs[channel.uId]->port;
    if (!port) return;
    // The host may overwrite the rectangle, so each call gets a copy of its own.
    VRect bounds = MakeRect(rc);
    const PixelMemoryDesc desc = MakeDesc(memory);
    m_pSuite->ReadPixelsFromLevel(port, 0, &bounds, &desc);
}

void CChannelPortsImage::Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) {
    const ReadChannelDesc& channelDesc = *m_vDescs[channel.uId];
    // Records before version 1 end before the write port.
    if (channelDesc.maxVersion < 1 || !channelDesc.writePort) return;
    VRect bounds = MakeRect(rc);
    const PixelMemoryDesc desc = MakeDesc(memory);
    m_pSuite->WritePixelsToBaseLevel(channelDesc.writePort, &bounds, &desc);
}
