// Actions whose undo and redo are the same: they exchange a saved state with the target's present one.
#pragma once

#include "core/History/History.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <utility>

/// `T` is the changed object, held weakly; `S` its saved state, a value.
template <class T, class S>
class CSymmetricHistory : public CHistory {
public:
    /// Exchanges the state with the target's; must ignore a null target. On an exception nothing is
    /// exchanged; one that a CSymmetricHistoryHelper calls never throws.
    using TSwap = void (*)(const boost::shared_ptr<T>& spTarget, S* pState);
    /// Memory of the state that is not shared with the target; 0 for a null target. Never throws.
    using TCount = size_t (*)(const boost::shared_ptr<T>& spTarget, const S& state);
    /// The operations on a state.
    struct TFunctions {
        TSwap fnSwap;
        TCount fnCount;
    };

    CSymmetricHistory(std::wstring strName, const boost::shared_ptr<T>& spTarget, S state,
                      TFunctions functions)
        : CHistory(std::move(strName)), m_wpTarget(spTarget), m_state(std::move(state)),
          m_functions(functions) {}

    void Undo() override { m_functions.fnSwap(m_wpTarget.lock(), &m_state); }
    void Redo() override { m_functions.fnSwap(m_wpTarget.lock(), &m_state); }

protected:
    size_t CountBytes() const override { return m_functions.fnCount(m_wpTarget.lock(), m_state); }

private:
    boost::weak_ptr<T> m_wpTarget;
    S m_state;
    TFunctions m_functions;
};

/// Saves a state for the duration of an operation. Without Commit the destructor restores it.
template <class T, class S>
class CSymmetricHistoryHelper : boost::noncopyable {
public:
    using TFunctions = typename CSymmetricHistory<T, S>::TFunctions;

    CSymmetricHistoryHelper(const boost::shared_ptr<T>& spTarget, S state, TFunctions functions)
        : m_spTarget(spTarget), m_state(std::move(state)), m_functions(functions) {}
    virtual ~CSymmetricHistoryHelper() {
        if (m_bArmed) m_functions.fnSwap(m_spTarget, &m_state);
    }
    /// Ends the operation and registers its action; if that fails, the operation is reverted.
    void Commit(std::wstring strName, CHistoryStream& history) {
        const auto spHistory = boost::make_shared<CSymmetricHistory<T, S>>(std::move(strName), m_spTarget,
                                                                           std::move(m_state), m_functions);
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
    TFunctions m_functions;
    bool m_bArmed = true;
};
