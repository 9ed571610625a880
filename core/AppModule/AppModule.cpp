#include "core/AppModule/AppModule.h"

#include "core/Base/Failure.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Recovery/Recovery.h"

#include <new>
#include <utility>

CAppModule g_AppModule;

CAppModule::CAppModule() = default;
CAppModule::~CAppModule() = default;

void CAppModule::SetPlatform(const TPlatform* pPlatform) {
    std::unique_ptr<CIniConfig> pSettings;
    std::unique_ptr<CRecovery> pRecovery;
    if (pPlatform) {
        pSettings =
            std::make_unique<CIniConfig>(CIniConfig::FindPath(pPlatform->locations), pPlatform->files);
        pRecovery = std::make_unique<CRecovery>(pPlatform->snapshots, pPlatform->clock, g_Switches);
    }
    // A partly initialised session would count as running and block the next one.
    m_pRecovery = std::move(pRecovery);
    m_pSettings = std::move(pSettings);
    m_pPlatform = pPlatform;
}

const TPlatform& CAppModule::GetPlatform() const {
    SELF_CHECK(defect_logic, m_pPlatform != nullptr);
    return *m_pPlatform;
}

CIniConfig& CAppModule::GetSettings() const {
    SELF_CHECK(defect_logic, m_pSettings != nullptr);
    return *m_pSettings;
}

CRecovery& CAppModule::GetRecovery() const {
    SELF_CHECK(defect_logic, m_pRecovery != nullptr);
    return *m_pRecovery;
}

bool CAppModule::AddMessageLoop(const boost::shared_ptr<CMessageLoop>& spLoop) {
    const std::lock_guard lock(m_mtxLoops);
    try {
        m_mapLoops[std::this_thread::get_id()] = spLoop;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void CAppModule::RemoveMessageLoop() {
    const std::lock_guard lock(m_mtxLoops);
    m_mapLoops.erase(std::this_thread::get_id());
}

boost::shared_ptr<CMessageLoop> CAppModule::GetMessageLoop() const {
    const std::lock_guard lock(m_mtxLoops);
    const auto it = m_mapLoops.find(std::this_thread::get_id());
    return it == m_mapLoops.end() ? boost::shared_ptr<CMessageLoop>() : it->second;
}
