#include "core/History/History.h"

#include "core/IniConfig/GlobalSwitches.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace {

class CJoinedHistory : public CHistory {
public:
    CJoinedHistory(const boost::shared_ptr<CHistory>& spFirst, const boost::shared_ptr<CHistory>& spSecond)
        : CHistory(spSecond->GetName()), m_spFirst(spFirst), m_spSecond(spSecond) {}

    void Undo() override {
        m_spSecond->Undo();
        try {
            m_spFirst->Undo();
        } catch (...) {
            m_spSecond->Redo();
            throw;
        }
    }
    void Redo() override {
        m_spFirst->Redo();
        try {
            m_spSecond->Redo();
        } catch (...) {
            m_spFirst->Undo();
            throw;
        }
    }

protected:
    size_t CountBytes() const override {
        for (const auto& sp : {m_spFirst, m_spSecond}) sp->Measure();
        return m_spFirst->GetBytes() + m_spSecond->GetBytes();
    }

private:
    boost::shared_ptr<CHistory> m_spFirst;
    boost::shared_ptr<CHistory> m_spSecond;
};

} // namespace

boost::shared_ptr<CHistory> JoinHistories(const boost::shared_ptr<CHistory>& spFirst,
                                          const boost::shared_ptr<CHistory>& spSecond) {
    return boost::make_shared<CJoinedHistory>(spFirst, spSecond);
}

void CHistoryStream::Register(const boost::shared_ptr<CHistory>& spAction) {
    if (!spAction) return;
    // Allocations come first.
    boost::shared_ptr<CHistory> spHistory = spAction;
    if (m_spPrepended) spHistory = JoinHistories(m_spPrepended, spAction);
    spHistory->Measure();
    const size_t nKept = CountKept(*spHistory);
    std::wstring strInitial = nKept < m_deqUndo.size() ? m_deqUndo[nKept]->GetName() : m_strInitial;
    m_deqUndo.push_front(spHistory);
    m_spPrepended.reset();
    m_deqRedo.clear();
    m_strInitial.swap(strInitial);
    // The state after an action that is dropped becomes the oldest one.
    if (m_deqUndo.size() > nKept + 1) m_bSavedInitial = m_wpSaved.lock() == m_deqUndo[nKept + 1];
    while (m_deqUndo.size() > nKept + 1) m_deqUndo.pop_back();
    SetModified(true);
}

boost::shared_ptr<CHistory> CHistoryStream::TakePrepended() { return std::exchange(m_spPrepended, {}); }

size_t CHistoryStream::CountKept(const CHistory& historyNew) const {
    const TGlobalSwitches switches = m_pSwitches ? *m_pSwitches : TGlobalSwitches();
    const auto nMost = static_cast<size_t>(std::max(switches.m_nMaxHistory, 1)) - 1;
    const uint64_t uBudget = static_cast<uint64_t>(switches.m_nHistoryMegabytes) << 20;
    uint64_t uBytes = historyNew.GetBytes();
    size_t nKept = 0;
    for (; nKept < std::min(nMost, m_deqUndo.size()); ++nKept) {
        uBytes += m_deqUndo[nKept]->GetBytes();
        if (uBytes > uBudget) break;
    }
    return nKept;
}

void CHistoryStream::Undo() {
    if (m_fnCancel) {
        // While a tool has an unfinished operation, undo cancels it. The handler may replace itself.
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
    spHistory->Measure();
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
    spHistory->Measure();
    SetModified(true);
}

void CHistoryStream::GoTo(const boost::shared_ptr<CHistory>& spNewest) {
    if (m_fnCancel) return;
    const bool bDone = !spNewest || std::ranges::find(m_deqUndo, spNewest) != m_deqUndo.end();
    if (!bDone && std::ranges::find(m_deqRedo, spNewest) == m_deqRedo.end()) return;
    const auto isThere = [&] { return m_deqUndo.empty() ? !spNewest : m_deqUndo.front() == spNewest; };
    while (!isThere())
        if (bDone)
            Undo();
        else
            Redo();
}

void CHistoryStream::SetModified(bool bModified) {
    m_bModified = bModified;
    if (bModified)
        ++m_uChanges;
    else
        m_wpSaved = m_deqUndo.empty() ? boost::shared_ptr<CHistory>() : m_deqUndo.front();
    if (!bModified) m_bSavedInitial = m_deqUndo.empty();
}

bool CHistoryStream::IsSavedState(const boost::shared_ptr<CHistory>& spNewest) const {
    return spNewest ? spNewest == m_wpSaved.lock() : m_bSavedInitial;
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
