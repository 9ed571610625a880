// A cache of finished stamps by key and size.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

/// Cleared when it would exceed its capacity: a stroke of changing pressure at a large radius would fill
/// the memory, and a recomputed stamp is identical.
class CStampCache : boost::noncopyable {
public:
    static constexpr size_t CAPACITY = size_t{48} << 20; ///< values

    /// The stamp, null when there is none. Valid until the next Make.
    const uint16_t* Find(int64_t nKey, uint32_t uHalfSize) const {
        const auto it = m_mapStamps.find({nKey, uHalfSize});
        return it == m_mapStamps.end() ? nullptr : it->second.get();
    }
    /// Creates a stamp of `nLength` values, which `fn(values)` fills. When `fn` throws, the stamp is
    /// removed.
    template <class Function>
    const uint16_t* Make(int64_t nKey, uint32_t uHalfSize, size_t nLength, Function fn) {
        std::unique_ptr<uint16_t[]> upStamp(new uint16_t[nLength]);
        fn(upStamp.get());
        if (m_nValues + nLength > CAPACITY) Clear();
        auto& upKept = m_mapStamps[{nKey, uHalfSize}];
        upKept.swap(upStamp);
        m_nValues += nLength;
        return upKept.get();
    }
    void Clear() {
        m_mapStamps.clear();
        m_nValues = 0;
    }

private:
    using TKey = std::pair<int64_t, uint32_t>;
    struct THash {
        size_t operator()(const TKey& key) const {
            return static_cast<size_t>(static_cast<uint64_t>(key.first) * 0x9E3779B97F4A7C15u) + key.second;
        }
    };

    std::unordered_map<TKey, std::unique_ptr<uint16_t[]>, THash> m_mapStamps;
    size_t m_nValues = 0;
};
