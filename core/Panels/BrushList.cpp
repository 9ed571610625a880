#include "core/Panels/BrushList.h"

#include "core/Base/Failure.h"
#include "core/IniConfig/IniConfig.h"
#include "core/RasterStroke/BrushParam.h"

#include <algorithm>

namespace {

constexpr int32_t MAX_COUNT = 1000; ///< limits a damaged count, which would delay the start

} // namespace

void CBrushList::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(L"BrushList");
    const int32_t nCount = std::clamp(spSection->GetInt(L"BrushCount", 0), 0, MAX_COUNT);
    m_vSizes.clear();
    for (int32_t n = 1; n <= nCount; ++n) {
        const int32_t nSize = spSection->GetInt(std::to_wstring(n), 0);
        if (nSize > 0) Add(static_cast<uint32_t>(nSize));
    }
    if (m_vSizes.empty()) m_vSizes = {1, 2, 4, 8, 16};
    m_vRead = m_vSizes;
}

void CBrushList::Write(CIniConfig& config) {
    if (m_vSizes == m_vRead) return;
    std::vector<std::pair<std::wstring, int32_t>> vValues{
        {L"BrushCount", static_cast<int32_t>(m_vSizes.size())}};
    for (const uint32_t uSize : m_vSizes)
        vValues.emplace_back(std::to_wstring(vValues.size()), static_cast<int32_t>(uSize));
    config.GetSection(L"BrushList")->SetInts(vValues);
    m_vRead = m_vSizes;
}

int CBrushList::Find(uint32_t uSize) const {
    const auto it = std::find(m_vSizes.begin(), m_vSizes.end(), uSize);
    return it == m_vSizes.end() ? -1 : static_cast<int>(it - m_vSizes.begin());
}

void CBrushList::Add(uint32_t uSize) {
    uSize = std::clamp(uSize, 1u, MAX_BRUSH_RADIUS);
    const auto it = std::lower_bound(m_vSizes.begin(), m_vSizes.end(), uSize);
    if (it == m_vSizes.end() || *it != uSize) m_vSizes.insert(it, uSize);
}

void CBrushList::Remove(int idx) {
    SELF_CHECK(invalid_argument, idx >= 0 && static_cast<size_t>(idx) < m_vSizes.size());
    m_vSizes.erase(m_vSizes.begin() + idx);
}
