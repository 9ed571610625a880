// Finished stamps by their key.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

/// Forgets everything when it would grow beyond its capacity: a stroke of changing pressure at a large radius
/// would fill the memory, and a stamp made anew is the same.
class CStampCache : boost::noncopyable {
public:
    static constexpr size_t CAPACITY = size_t{48} << 20; ///< values

    /// The stamp, null when there is none. Valid until the next Insert.
    const uint16_t* Find(int64_t nKey) const {
        const auto it = m_mapStamps.find(nKey);
        return it == m_mapStamps.end() ? nullptr : it->second.get();
    }
    /// Memory for a new stamp of `nLength` values, not set.
    uint16_t* Insert(int64_t nKey, size_t nLength) {
        if (m_nValues + nLength > CAPACITY) Clear();
        auto& spStamp = m_mapStamps[nKey];
        spStamp.reset(new uint16_t[nLength]);
        m_nValues += nLength;
        return spStamp.get();
    }
    void Clear() {
        m_mapStamps.clear();
        m_nValues = 0;
    }

private:
    std::unordered_map<int64_t, std::unique_ptr<uint16_t[]>> m_mapStamps;
    size_t m_nValues = 0;
};
