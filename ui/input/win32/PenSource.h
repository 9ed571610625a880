// Which reports count of a pen that two interfaces report.
#pragma once

/// The tablet's driver and the system may report the same pen, or each a pen of its own. The driver comes
/// first as long as it reports anything while the system does.
class CPenSource {
public:
    /// Reports of the system without one of the driver, after which the pen is another one.
    static constexpr int PATIENCE = 16;

    void OnDriver() {
        m_nSilent = 0;
        m_bDriver = true;
    }
    /// True when the system's report must be ignored.
    bool OnSystem() {
        if (m_bDriver && ++m_nSilent > PATIENCE) m_bDriver = false;
        return m_bDriver;
    }
    bool IsDriver() const { return m_bDriver; }

private:
    int m_nSilent = 0;
    bool m_bDriver = false;
};
