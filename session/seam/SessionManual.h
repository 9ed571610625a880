// The manual in a session that a script plays: no window, only what was asked for.
#pragma once

#include "core/Platform/Manual.h"

#include <boost/noncopyable.hpp>

class CSessionManual : public IManual, boost::noncopyable {
public:
    bool Show(IWindow&, const TManualSetup& setup) override {
        if (!m_bOpen) m_setup = setup;
        return m_bOpen = true;
    }
    void Close() override {
        if (m_bOpen && m_setup.fnKeep) m_setup.fnKeep(m_setup.look);
        m_bOpen = false;
        m_setup = {};
    }

    bool IsOpen() const { return m_bOpen; }
    /// The setup of the open window; a changed look is the one that its user leaves.
    TManualSetup& GetSetup() { return m_setup; }

private:
    TManualSetup m_setup;
    bool m_bOpen = false;
};
