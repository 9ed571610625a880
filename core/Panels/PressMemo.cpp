#include "core/Panels/PressMemo.h"

#include "core/Base/Failure.h"
#include "core/IniConfig/IniConfig.h"

#include <algorithm>

namespace {

constexpr wchar_t NAME_FORMAT[] = L"筆圧設定%1%";
constexpr int32_t MAX_COUNT = 1000; ///< limits a damaged count, which would delay the start
constexpr int32_t PERCENT = 100;

// Calls `fn(key, field of each)` for each value of a memo.
template <class Function, class... Param>
void ForEachValue(Function fn, Param&... param) {
    fn(L"AvailInput", param.AvailInput...);
    fn(L"AvailAlpha", param.AvailAlpha...);
    fn(L"MinRadiusRate", param.MinRadiusRate...);
    fn(L"MinAlphaRate", param.MinAlphaRate...);
    fn(L"PressCurve1x", param.PressCurve1x...);
    fn(L"PressCurve1y", param.PressCurve1y...);
    fn(L"PressCurve2x", param.PressCurve2x...);
    fn(L"PressCurve2y", param.PressCurve2y...);
}

boost::shared_ptr<CIniConfigData> MemoSection(CIniConfigData& section, size_t n) {
    return section.GetSection(L"Memo" + std::to_wstring(n));
}

} // namespace

void CopyPressure(TBrushParam& to, const TBrushParam& from) {
    ForEachValue([](const wchar_t*, auto& fieldTo, const auto& fieldFrom) { fieldTo = fieldFrom; }, to, from);
}

void CPressMemoView::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(L"PressParam");
    const int32_t nCount = std::clamp(spSection->GetInt(L"nMemo", -1), 0, MAX_COUNT);
    vParamsMemo.clear();
    for (size_t n = 1; n <= static_cast<size_t>(nCount); ++n) {
        const auto spMemo = MemoSection(*spSection, n);
        TPressMemo memo;
        memo.strName = spMemo->GetString(L"Name", L"");
        ForEachValue(
            [&](const wchar_t* pszKey, auto& field) {
                const int32_t nValue = spMemo->GetInt(pszKey, static_cast<int32_t>(field));
                field = static_cast<std::remove_reference_t<decltype(field)>>(std::clamp(nValue, 0, PERCENT));
            },
            memo.param);
        vParamsMemo.push_back(memo);
    }
    m_vRead = vParamsMemo;
}

void CPressMemoView::Write(CIniConfig& config) {
    if (vParamsMemo == m_vRead) return;
    const auto spSection = config.GetSection(L"PressParam");
    spSection->SetInt(L"nMemo", static_cast<int32_t>(vParamsMemo.size()));
    for (size_t idx = 0; idx < vParamsMemo.size(); ++idx) {
        std::vector<std::pair<std::wstring, std::wstring>> vValues{{L"Name", vParamsMemo[idx].strName}};
        ForEachValue([&](const wchar_t* pszKey,
                         const auto& field) { vValues.emplace_back(pszKey, std::to_wstring(field)); },
                     vParamsMemo[idx].param);
        MemoSection(*spSection, idx + 1)->SetStrings(vValues);
    }
    m_vRead = vParamsMemo;
}

size_t CPressMemoView::Check(int idxSel) const {
    if (idxSel < 0 || static_cast<size_t>(idxSel) >= vParamsMemo.size())
        ThrowViolation<illegal_data>("0 <= idxSel && idxSel < vParamsMemo.size()");
    return static_cast<size_t>(idxSel);
}

const TPressMemo& CPressMemoView::Get(int idxSel) const { return vParamsMemo[Check(idxSel)]; }

int CPressMemoView::Add(const TBrushParam& param) {
    TPressMemo memo;
    CopyPressure(memo.param, param);
    const auto taken = [&](const TPressMemo& other) { return other.strName == memo.strName; };
    int nNumber = 0;
    do memo.strName = FormatText(NAME_FORMAT, std::to_wstring(++nNumber));
    while (std::any_of(vParamsMemo.begin(), vParamsMemo.end(), taken));
    vParamsMemo.push_back(memo);
    return static_cast<int>(vParamsMemo.size()) - 1;
}

void CPressMemoView::Remove(int idxSel) {
    vParamsMemo.erase(vParamsMemo.begin() + static_cast<ptrdiff_t>(Check(idxSel)));
}

void CPressMemoView::Rename(int idxSel, const std::wstring& strName) {
    const size_t idx = Check(idxSel);
    if (!strName.empty()) vParamsMemo[idx].strName = strName;
}

void CPressMemoView::Move(int idxSel, int idxTo) {
    const auto itFrom = vParamsMemo.begin() + static_cast<ptrdiff_t>(Check(idxSel));
    const auto itTo = vParamsMemo.begin() + static_cast<ptrdiff_t>(Check(idxTo));
    if (itFrom < itTo)
        std::rotate(itFrom, itFrom + 1, itTo + 1);
    else
        std::rotate(itTo, itFrom, itFrom + 1);
}
