#include "core/PathWidthTool/PathWidthList.h"

#include "core/IniConfig/IniConfig.h"

#include <algorithm>

namespace {

constexpr int32_t MAX_COUNT = 1000; ///< limits a damaged count, which would delay the start

constexpr TPathWidthItem DEFAULT_ITEMS[] = {{WIDTH_POINTS_1, 10}, {WIDTH_POINTS_2, 10}, {WIDTH_POINTS_3, 10},
                                            {WIDTH_POINTS_4, 10}, {WIDTH_MULTIPLY, 15}, {WIDTH_ADD, 5},
                                            {WIDTH_ERASE, 0},     {WIDTH_CUT, 0},       {WIDTH_ALPHA, 5}};

} // namespace

void CPathWidthList::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(L"PathWidthList");
    const int32_t nCount = std::clamp(spSection->GetInt(L"ItemCount", 0), 0, MAX_COUNT);
    m_vItems.clear();
    for (int32_t n = 1; n <= nCount; ++n) {
        const std::wstring strNumber = std::to_wstring(n);
        m_vItems.push_back(Normalized(
            {spSection->GetInt(L"Type" + strNumber, 0), spSection->GetInt(L"Coef" + strNumber, 0)}));
    }
    if (m_vItems.empty()) m_vItems.assign(std::begin(DEFAULT_ITEMS), std::end(DEFAULT_ITEMS));
    m_vRead = m_vItems;
}

void CPathWidthList::Write(CIniConfig& config) {
    if (m_vItems == m_vRead) return;
    std::vector<std::pair<std::wstring, int32_t>> vValues{
        {L"ItemCount", static_cast<int32_t>(m_vItems.size())}};
    for (size_t idx = 0; idx < m_vItems.size(); ++idx) {
        const std::wstring strNumber = std::to_wstring(idx + 1);
        vValues.emplace_back(L"Type" + strNumber, m_vItems[idx].nType);
        vValues.emplace_back(L"Coef" + strNumber, m_vItems[idx].nCoef);
    }
    config.GetSection(L"PathWidthList")->SetInts(vValues);
    m_vRead = m_vItems;
}

void CPathWidthList::Add(const TPathWidthItem& item) {
    if (std::ranges::count(m_vItems, item) != 0) return;
    const auto it =
        std::ranges::find_if(m_vItems.rbegin(), m_vItems.rend(),
                             [&](const TPathWidthItem& other) { return other.nType <= item.nType; });
    m_vItems.insert(it.base(), item);
}

void CPathWidthList::Remove(const TPathWidthItem& item) { std::erase(m_vItems, item); }
