// The picture of a host that implements the published filter interface; all pixels pass through its
// ChannelPorts suite.
#pragma once

#include "host/Abi/FilterRecord.h"
#include "host/HostImage.h"

#include <boost/noncopyable.hpp>

/// Reads filterRect, documentInfo and sSPBasic of the record and writes nothing. The suite is acquired once
/// and never released. A null record, sSPBasic, documentInfo or suite counts as a missing suite.
class CChannelPortsImage : public IHostImage, boost::noncopyable {
public:
    /// True when the record leads to the suite. Checked before anything else is created.
    static bool CanOpen(const hostabi::FilterRecord* pRecord);
    /// `pRecord` may be null and outlives the picture.
    explicit CChannelPortsImage(const hostabi::FilterRecord* pRecord) : m_pRecord(pRecord) {}

    CRect GetRect() override;
    std::vector<THostChannel> GetChannels() override;
    bool Open() override;
    void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override;
    void Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override;

private:
    const hostabi::FilterRecord* m_pRecord;
    const hostabi::ChannelPortsSuite* m_pSuite = nullptr;
    std::vector<const hostabi::ReadChannelDesc*> m_vDescs; ///< by THostChannel::uId
};
