// Long work in a session that a script plays: no window, and cancelled only by the script.
#pragma once

#include "core/Platform/Progress.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

class CSessionProgress : public IProgressWindow, boost::noncopyable {
public:
    /// `fnCancel` is asked when work begins that can be cancelled: true when the script cancels it.
    void SetCancel(boost::function<bool()> fnCancel) { m_fnCancel = std::move(fnCancel); }

    bool Begin(const TLongWork& work) override { return !(work.bCancel && m_fnCancel && m_fnCancel()); }
    bool Show(const TProgressState&) override { return true; }
    void End() override {}

private:
    boost::function<bool()> m_fnCancel;
};
