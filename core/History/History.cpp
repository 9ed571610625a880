#include "core/History/History.h"

#include "core/IniConfig/GlobalSwitches.h"

void CHistoryStream::Register(const boost::shared_ptr<CHistory>& spHistory) {
    if (!spHistory) return;
    m_deqRedo.clear();
    m_deqUndo.push_front(spHistory);
    while (m_deqUndo.size() > static_cast<size_t>(g_Switches.m_nMaxHistory)) {
        m_strInitial = m_deqUndo.back()->GetName();
        m_deqUndo.pop_back();
    }
    SetModified(true);
}

void CHistoryStream::Undo() {
    if (m_fnCancel) {
        // While a tool holds an unfinished operation, undo means cancelling it. The handler may replace
        // itself.
        const boost::function<bool()> fnCancel = m_fnCancel;
        if (!fnCancel()) m_fnCancel.clear();
        return;
    }
    if (m_deqUndo.empty()) return;
    const boost::shared_ptr<CHistory> spHistory = m_deqUndo.front();
    spHistory->Undo();
    m_deqUndo.pop_front();
    m_deqRedo.push_front(spHistory);
    SetModified(true);
}

void CHistoryStream::Redo() {
    if (m_deqRedo.empty()) return;
    const boost::shared_ptr<CHistory> spHistory = m_deqRedo.front();
    spHistory->Redo();
    m_deqRedo.pop_front();
    m_deqUndo.push_front(spHistory);
    SetModified(true);
}

void CHistoryStream::Clear() {
    m_deqUndo.clear();
    m_deqRedo.clear();
}
