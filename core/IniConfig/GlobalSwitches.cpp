#include "core/IniConfig/GlobalSwitches.h"

#include "core/IniConfig/IniConfig.h"

#include <algorithm>

TGlobalSwitches g_Switches;

namespace {

constexpr wchar_t SECTION[] = L"Global";
constexpr int32_t SECONDS_A_DAY = 86400;

} // namespace

void TGlobalSwitches::Load(CIniConfig& config) {
    const TGlobalSwitches defaults;
    const auto spSection = config.GetSection(SECTION);
    const auto readFlag = [&](const wchar_t* pszKey, uint8_t bDefault) {
        return static_cast<uint8_t>(spSection->GetInt(pszKey, bDefault) != 0);
    };
    m_bShowOutline = readFlag(L"ShowOutline", defaults.m_bShowOutline);
    m_bShowAllCtl = readFlag(L"ShowAllCtl", defaults.m_bShowAllCtl);
    m_nPredStroke =
        static_cast<uint8_t>(std::clamp(spSection->GetInt(L"PredStroke", defaults.m_nPredStroke), 0, 3));
    m_bFastScroll = readFlag(L"FastScroll", defaults.m_bFastScroll);
    m_bEnableSSE2 = readFlag(L"EnableSSE2", defaults.m_bEnableSSE2);
    m_nMaxHistory = std::max(spSection->GetInt(L"MaxHistory", defaults.m_nMaxHistory), 1);
    m_nHistoryMegabytes = std::max(spSection->GetInt(L"HistoryMegabytes", defaults.m_nHistoryMegabytes), 1);
    m_nAutoSave = std::clamp(spSection->GetInt(L"AutoSaveSeconds", defaults.m_nAutoSave), 0, SECONDS_A_DAY);
}

void TGlobalSwitches::Save(CIniConfig& config) const {
    const auto spSection = config.GetSection(SECTION);
    spSection->SetInt(L"ShowOutline", m_bShowOutline);
    spSection->SetInt(L"ShowAllCtl", m_bShowAllCtl);
    spSection->SetInt(L"PredStroke", m_nPredStroke);
    spSection->SetInt(L"FastScroll", m_bFastScroll);
    spSection->SetInt(L"EnableSSE2", m_bEnableSSE2);
    spSection->SetInt(L"MaxHistory", m_nMaxHistory);
    spSection->SetInt(L"HistoryMegabytes", m_nHistoryMegabytes);
    spSection->SetInt(L"AutoSaveSeconds", m_nAutoSave);
}
