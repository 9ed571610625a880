// The switches that apply to every document: read when the module is loaded, written when it is unloaded.
#pragma once

#include <cstdint>

class CIniConfig;

struct TGlobalSwitches {
    uint8_t m_bShowOutline = 1;
    uint8_t m_bShowAllCtl = 1;
    uint8_t m_nPredStroke = 1; ///< predicted stroke: 0 none, 1 weak, 2 medium, 3 strong
    uint8_t m_bFastScroll = 0;
    uint8_t m_bEnableSSE2 = 1;
    int32_t m_nMaxHistory = 10;         ///< maximum of undo steps, at least 1
    int32_t m_nHistoryMegabytes = 2048; ///< megabytes of undo steps, at least 1; the newest always stays
    int32_t m_nAutoSave = 60;           ///< seconds between snapshots for recovery, 0: none; at most a day

    /// Reads section "Global"; missing keys take their defaults. m_nPredStroke is limited to 0..3,
    /// m_nMaxHistory and m_nHistoryMegabytes to 1 and more, m_nAutoSave to 0..86400.
    void Load(CIniConfig& config);
    /// Writes every switch to section "Global".
    void Save(CIniConfig& config) const;
};

extern TGlobalSwitches g_Switches;
