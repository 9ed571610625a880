// A host in memory: presents a picture to any filter module through the real records and suite, with the
// same calls as the paint programs.
#pragma once

#include "core/Base/Geometry.h"
#include "host/Abi/FilterRecord.h"

#include <boost/noncopyable.hpp>

#include <deque>
#include <string>
#include <vector>

/// A picture of 8 bits a channel. Each plane has one byte a pixel, row by row, for the pixels of `rc`.
struct THostPicture {
    using TPlane = std::vector<uint8_t>;

    CRect rc; ///< the picture's position in the document; may start anywhere within 16 bits
    TPlane vRed, vGreen, vBlue;
    TPlane vTransparency;        ///< straight alpha; empty for an opaque picture
    std::vector<TPlane> vAlphas; ///< further channels of the document
};

/// Runs a module over a picture. One thread; only one host at a time may run on a thread. Derived classes
/// may observe or alter every call.
class CPictureHost : boost::noncopyable {
public:
    /// Largest side and position that a host can report, in pixels.
    static constexpr int32_t MAX_SIDE = 32767;

    /// Raises constraint_violation when the rectangle is empty or beyond what 16 bits hold, or a plane has
    /// another size than the rectangle.
    explicit CPictureHost(THostPicture picture);
    virtual ~CPictureHost() = default;

    /// Calls Parameters, Prepare, Start, Continue for as long as the module requests rectangles, and Finish
    /// only if Start returned 0. Returns the first result that is not 0.
    int16_t Run(hostabi::PluginMainProc pMain);
    /// Makes the About call.
    void RunAbout(hostabi::PluginMainProc pMain);

    const THostPicture& GetPicture() const { return m_picture; }

protected:
    /// One channel of the document, in the order red, green, blue, alphas, transparency.
    struct TChannel {
        CPictureHost* pHost = nullptr;
        THostPicture::TPlane* pPlane = nullptr;
        hostabi::ReadChannelDesc desc{};
    };

    /// Every call of the module is made through this function.
    virtual void Call(hostabi::PluginMainProc pMain, int16_t nSelector, void* pRecord, int16_t& nResult);
    /// Called when the module requests a suite.
    virtual hostabi::SPErr AcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite);
    /// Called when the module reads or writes. The rectangle is clipped to the picture.
    virtual hostabi::SPErr Read(TChannel& channel, int32_t nLevel, hostabi::VRect& rc,
                                const hostabi::PixelMemoryDesc& memory);
    virtual hostabi::SPErr Write(TChannel& channel, hostabi::VRect& rc,
                                 const hostabi::PixelMemoryDesc& memory);

    THostPicture m_picture;
    // The records as the module sees them, complete after construction.
    std::deque<TChannel> m_deqChannels;
    hostabi::ReadImageDocumentDesc m_document{};
    hostabi::SPBasicSuite m_basicSuite{};
    hostabi::FilterRecord m_record{};

private:
    static hostabi::SPErr OnAcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite);
    static hostabi::SPErr OnRead(hostabi::ChannelPort port, int32_t nLevel, hostabi::VRect* pBounds,
                                 const hostabi::PixelMemoryDesc* pMemory);
    static hostabi::SPErr OnWrite(hostabi::ChannelPort port, hostabi::VRect* pBounds,
                                  const hostabi::PixelMemoryDesc* pMemory);
    static const hostabi::ChannelPortsSuite& GetSuite();

    hostabi::ReadChannelDesc* AddChannel(THostPicture::TPlane& vPlane, int16_t nType, const char* pszName);
    void FillDocument();
    void FillRecord();
    template <class Copy>
    hostabi::SPErr Transfer(TChannel& channel, hostabi::VRect& rc, const hostabi::PixelMemoryDesc& memory,
                            Copy copy);

    static thread_local CPictureHost* s_pCurrent; ///< the basic suite's calls do not name their host
};
