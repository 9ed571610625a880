// Changes whose undo and redo are the same: exchange a saved state with the target's present one.
#pragma once

#include "core/History/History.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <utility>

/// `T` is what was changed, held weakly; `S` the state that it had, a value.
template <class T, class S>
class CSymmetricHistory : public CHistory {
public:
    /// Exchanges the state with the target's; must do nothing for a null target. Never throws.
    using TSwap = void (*)(const boost::shared_ptr<T>& spTarget, S* pState);

    CSymmetricHistory(std::wstring strName, const boost::shared_ptr<T>& spTarget, S state, TSwap fnSwap)
        : CHistory(std::move(strName)), m_wpTarget(spTarget), m_state(std::move(state)), m_fnSwap(fnSwap) {}

    void Undo() override { m_fnSwap(m_wpTarget.lock(), &m_state); }
    void Redo() override { m_fnSwap(m_wpTarget.lock(), &m_state); }

private:
    boost::weak_ptr<T> m_wpTarget;
    S m_state;
    TSwap m_fnSwap;
};

/// Saves a state for the time of an operation: one that leaves before Commit gets the saved state back.
template <class T, class S>
class CSymmetricHistoryHelper : boost::noncopyable {
public:
    using TSwap = typename CSymmetricHistory<T, S>::TSwap;

    CSymmetricHistoryHelper(const boost::shared_ptr<T>& spTarget, S state, TSwap fnSwap)
        : m_spTarget(spTarget), m_state(std::move(state)), m_fnSwap(fnSwap) {}
    virtual ~CSymmetricHistoryHelper() {
        if (m_bArmed) m_fnSwap(m_spTarget, &m_state);
    }
    /// The operation is done: registers its action. One that cannot be registered is taken back.
    void Commit(std::wstring strName, CHistoryStream& history) {
        const auto spHistory = boost::make_shared<CSymmetricHistory<T, S>>(std::move(strName), m_spTarget,
                                                                           std::move(m_state), m_fnSwap);
        m_bArmed = false;
        try {
            history.Register(spHistory);
        } catch (...) {
            spHistory->Undo();
            throw;
        }
    }

private:
    boost::shared_ptr<T> m_spTarget;
    S m_state;
    TSwap m_fnSwap;
    bool m_bArmed = true;
};
