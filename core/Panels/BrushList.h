// The brush sizes at hand, and where the settings keep them.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <vector>

class CIniConfig;

/// Sizes in half pixels of the radius, 1 to MAX_BRUSH_RADIUS, rising, each once.
class CBrushList : boost::noncopyable {
public:
    /// Takes over section "BrushList"; without sizes there it has 1, 2, 4, 8 and 16.
    void Read(CIniConfig& config);
    /// Writes what has changed since Read.
    void Write(CIniConfig& config);

    const std::vector<uint32_t>& GetSizes() const { return m_vSizes; }
    /// The place of a size, -1 when it is not there.
    int Find(uint32_t uSize) const;
    void Add(uint32_t uSize);
    /// A self-check fails for a place that is none.
    void Remove(int idx);

private:
    std::vector<uint32_t> m_vSizes;
    std::vector<uint32_t> m_vRead;
};
