// The list of brush sizes and its settings.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <vector>

class CIniConfig;

/// Brush sizes in half pixels, 1 to MAX_BRUSH_RADIUS, ascending and unique.
class CBrushList : boost::noncopyable {
public:
    /// Reads section "BrushList"; without sizes there the list is 1, 2, 4, 8 and 16.
    void Read(CIniConfig& config);
    /// Writes what has changed since Read.
    void Write(CIniConfig& config);

    const std::vector<uint32_t>& GetSizes() const { return m_vSizes; }
    /// The index of a size, -1 when it is missing.
    int Find(uint32_t uSize) const;
    void Add(uint32_t uSize);
    /// A self-check fails for an invalid index.
    void Remove(int idx);

private:
    std::vector<uint32_t> m_vSizes;
    std::vector<uint32_t> m_vRead;
};
