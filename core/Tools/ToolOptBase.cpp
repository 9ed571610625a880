#include "core/Tools/ToolOptBase.h"

#include "core/Base/Failure.h"

#include <algorithm>

int FindOptRow(const std::vector<TOptRow>& vRows, int nValue) {
    for (size_t idx = vRows.size(); idx-- > 0;)
        if (vRows[idx].nValue == nValue) return static_cast<int>(idx);
    return 0;
}

bool CToolOptBase::Has(int nId) const {
    return std::any_of(m_vControls.begin(), m_vControls.end(),
                       [&](const TPanelControl& control) { return control.nId == nId; });
}

TPanelControl& CToolOptBase::Find(int nId) {
    const auto it = std::find_if(m_vControls.begin(), m_vControls.end(),
                                 [&](const TPanelControl& control) { return control.nId == nId; });
    SELF_CHECK(invalid_argument, it != m_vControls.end());
    return *it;
}
