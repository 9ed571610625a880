#include "session/recorder/RecordProgress.h"

#include "session/recorder/Record.h"

#include <nlohmann/json.hpp>

bool CRecordProgress::Note(bool bGoesOn) {
    if (!bGoesOn) m_record.Write("cancel-work", true);
    return bGoesOn;
}
