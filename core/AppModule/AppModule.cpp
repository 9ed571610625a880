#include "core/AppModule/AppModule.h"

#include "core/Base/Failure.h"
#include "core/IniConfig/IniConfig.h"

#include <new>

CAppModule g_AppModule;

CAppModule::CAppModule() = default;
CAppModule::~CAppModule() = default;

void CAppModule::SetPlatform(const TPlatform* pPlatform) {
    m_pSettings.reset();
    m_pPlatform = pPlatform;
    if (pPlatform)
        m_pSettings =
            std::make_unique<CIniConfig>(CIniConfig::FindPath(pPlatform->locations), pPlatform->files);
}

const TPlatform& CAppModule::GetPlatform() const {
    SELF_CHECK(defect_logic, m_pPlatform != nullptr);
    return *m_pPlatform;
}

CIniConfig& CAppModule::GetSettings() const {
    SELF_CHECK(defect_logic, m_pSettings != nullptr);
    return *m_pSettings;
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
