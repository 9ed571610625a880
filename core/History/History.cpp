#include "core/History/History.h"

#include "core/IniConfig/GlobalSwitches.h"

void CHistoryStream::Register(const boost::shared_ptr<CHistory>& spHistory) {
    if (!spHistory) return;
    // What needs memory comes first.
    const auto nMost = static_cast<size_t>(g_Switches.m_nMaxHistory);
    std::wstring strInitial;
    const bool bDrops = m_deqUndo.size() + 1 > nMost;
    if (bDrops) strInitial = (nMost == 0 ? spHistory : m_deqUndo[nMost - 1])->GetName();
    m_deqUndo.push_front(spHistory);
    m_deqRedo.clear();
    if (bDrops) m_strInitial.swap(strInitial);
    while (m_deqUndo.size() > nMost) m_deqUndo.pop_back();
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
    m_deqRedo.push_front(spHistory);
    try {
        spHistory->Undo();
    } catch (...) {
        m_deqRedo.pop_front();
        throw;
    }
    m_deqUndo.pop_front();
    SetModified(true);
}

void CHistoryStream::Redo() {
    if (m_deqRedo.empty()) return;
    const boost::shared_ptr<CHistory> spHistory = m_deqRedo.front();
    m_deqUndo.push_front(spHistory);
    try {
        spHistory->Redo();
    } catch (...) {
        m_deqUndo.pop_front();
        throw;
    }
    m_deqRedo.pop_front();
    SetModified(true);
}

void CHistoryStream::SetModified(bool bModified) {
    m_bModified = bModified;
    if (bModified)
        ++m_uChanges;
    else
        m_wpSaved = m_deqUndo.empty() ? boost::shared_ptr<CHistory>() : m_deqUndo.front();
}

boost::shared_ptr<CHistory> CHistoryStream::GetFoldable() const {
    if (m_deqUndo.empty() || CanRedo()) return {};
    const boost::shared_ptr<CHistory>& spNewest = m_deqUndo.front();
    return spNewest == m_wpSaved.lock() ? boost::shared_ptr<CHistory>() : spNewest;
}

void CHistoryStream::Clear() {
    m_deqUndo.clear();
    m_deqRedo.clear();
}
