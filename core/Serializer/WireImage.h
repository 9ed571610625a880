// The bytes that a tree of readers works on: in memory, in a file, or in chunks just built.
#pragma once

#include <boost/noncopyable.hpp>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

/// Bytes of a payload that stay with their owner until they are written, such as a tile's pixels: a chunk
/// refers to them without a copy. To change them, replace the owner by a copy first.
class IWirePart {
public:
    virtual ~IWirePart() = default;
    virtual size_t GetWireSize() const = 0;
    /// Writes all bytes to `pTo`.
    virtual void WriteWire(uint8_t* pTo) const = 0;
};

/// An image read through a window that moves to the position needed.
class CWireImage : boost::noncopyable {
public:
    virtual ~CWireImage() = default;

    uint64_t GetSize() const { return m_uSize; }
    /// `nLength` bytes from `uPos` on, which must lie in the image; valid until the next call.
    const uint8_t* Fetch(uint64_t uPos, size_t nLength) {
        if (uPos < m_uFirst || uPos + nLength > m_uFirst + m_nWindow) MoveWindow(uPos, nLength);
        return m_pWindow + (uPos - m_uFirst);
    }
    /// The part that is exactly these bytes, null where there is none.
    virtual const IWirePart* FindPart(uint64_t, size_t) const { return nullptr; }
    /// True when tiles stay in the image until they are asked for (`CRasterBuffer::LoadBlock`).
    virtual bool LeavesTiles() const { return false; }
    /// Counts memory that the image allocates without containing its bytes; raises deserialize_error when
    /// the total exceeds the limit.
    void Claim(uint64_t uBytes);

    /// A chunk that is attached to the one whose payload begins at `uOwner`.
    struct TAttached {
        uint32_t uOwner;
        uint32_t uAt; ///< where it begins

        friend auto operator<=>(const TAttached&, const TAttached&) = default;
    };
    void SetAttached(std::vector<TAttached> vAttached);
    /// The attached chunks of an owner, in the image's order.
    std::span<const TAttached> AttachedTo(uint32_t uOwner) const;

protected:
    /// `uClaimable` is the limit of all claims.
    explicit CWireImage(uint64_t uSize, uint64_t uClaimable = std::numeric_limits<uint64_t>::max())
        : m_uSize(uSize), m_uClaimable(uClaimable) {}
    /// Moves the window to the bytes by SetWindow.
    virtual void MoveWindow(uint64_t uPos, size_t nLength) = 0;
    void SetWindow(uint64_t uFirst, const uint8_t* pBytes, size_t nLength) {
        m_uFirst = uFirst;
        m_pWindow = pBytes;
        m_nWindow = nLength;
    }

private:
    const uint64_t m_uSize;
    std::vector<TAttached> m_vAttached; ///< sorted
    uint64_t m_uClaimable;
    uint64_t m_uFirst = 0;
    const uint8_t* m_pWindow = nullptr;
    size_t m_nWindow = 0;
};

/// The claim limit of an untrusted image: enough for thousands of empty layers on the largest canvas that
/// the user can make, and more with the file's size.
constexpr uint64_t ForeignClaim(uint64_t uFileSize) { return (uint64_t{256} << 20) + 16 * uFileSize; }
