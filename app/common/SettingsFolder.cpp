#include "app/common/SettingsFolder.h"

#include "app/common/RemoveFolder.h"
#include "system/environment/Locations.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"
#include "system/files/PrivateFolder.h"

CSettingsFolder::CSettingsFolder() : m_pathFolder(MakeTempFolder("vellumcraft-")) {
    SetVariable(CLocations::APP_DATA_VARIABLE, Utf8Of(m_pathFolder));
}

CSettingsFolder::~CSettingsFolder() { RemoveFolder(m_pathFolder); }
