#include "core/ConfigDialog/MemoryPage.h"

#include "core/Base/Failure.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Platform.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

namespace {

/// A number of the switches that the user types.
struct TField {
    int nId;
    const char* pszName;
    const wchar_t* pszKey;
    const wchar_t* pszLabel;
    const wchar_t* pszUnit;
    int32_t TGlobalSwitches::*pValue;
    int32_t nMin, nMax;
};

constexpr TField FIELDS[] = {
    {1, "maxHistory", L"MaxHistory", L"取り消しの回数", L"回まで", &TGlobalSwitches::m_nMaxHistory, 1, 1000},
    {3, "historyMegabytes", L"HistoryMegabytes", L"取り消しに使うメモリ", L"MB まで",
     &TGlobalSwitches::m_nHistoryMegabytes, 1, 1000000},
    {5, "autoSave", L"AutoSaveSeconds", L"自動保存の間隔", L"秒（0 で自動保存しない）",
     &TGlobalSwitches::m_nAutoSave, 0, 86400},
};

constexpr int FIELD_SAMPLES = 8;
constexpr wchar_t SECTION[] = L"Global";
constexpr wchar_t SAMPLES[] = L"SaveInkSamples";

} // namespace

std::vector<TPanelControl> CMemoryPage::MakeControls() {
    using enum TPanelControl::EKind;
    std::vector<TPanelControl> vControls{
        {.kind = Page, .strText = L"メモリと自動保存", .strName = "Page_EnvMemory"}};
    for (const TField& field : FIELDS) {
        vControls.push_back({.kind = Number,
                             .nId = field.nId,
                             .strLabel = field.pszLabel,
                             .strText = std::to_wstring(GetOutside().switches.*field.pValue),
                             .nMin = field.nMin,
                             .nMax = field.nMax,
                             .strName = field.pszName});
        vControls.push_back(
            {.kind = Label, .nId = field.nId + 1, .strText = field.pszUnit, .bSameLine = true});
    }
    vControls.push_back({.kind = Label,
                         .nId = 7,
                         .strText = L"自動保存した絵は、異常終了のあと次に起動したときに復元できます。"});
    vControls.push_back({.kind = Check,
                         .nId = FIELD_SAMPLES,
                         .strText = L"ペンの線をあとから補正できるように保存する",
                         .nValue = GetOutside().settings.GetSection(SECTION)->GetInt(SAMPLES, 1) != 0,
                         .strName = "saveInkSamples"});
    return vControls;
}

bool CMemoryPage::Check() {
    for (const TField& field : FIELDS) {
        TPanelControl& control = Find(field.nId);
        int32_t nValue = 0;
        if (boost::conversion::try_lexical_convert(control.strText, nValue) && nValue >= field.nMin &&
            nValue <= field.nMax)
            continue;
        GetOutside().platform.boxes.Show(
            GetOutside().pOwner,
            FormatText(L"「%1%」は %2%～%3% に限定されています。",
                       {field.pszLabel, std::to_wstring(field.nMin), std::to_wstring(field.nMax)}),
            L"Vellumcraft", EBoxKind::Plain);
        control.strText = std::to_wstring(GetOutside().switches.*field.pValue);
        return false;
    }
    return true;
}

void CMemoryPage::Apply() {
    std::vector<std::pair<std::wstring, int32_t>> vValues;
    for (const TField& field : FIELDS) {
        int32_t& nValue = GetOutside().switches.*field.pValue;
        boost::conversion::try_lexical_convert(Find(field.nId).strText, nValue);
        vValues.emplace_back(field.pszKey, nValue);
    }
    vValues.emplace_back(SAMPLES, Find(FIELD_SAMPLES).nValue ? 1 : 0);
    // The switches are written when the program ends; these hold after a crash, too.
    GetOutside().settings.GetSection(SECTION)->SetInts(vValues);
}
