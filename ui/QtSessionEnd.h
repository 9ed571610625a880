// The process or the user's desktop session is being ended.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <boost/noncopyable.hpp>

#include <array>
#include <functional>
#include <optional>

#include <signal.h>

/// Hears of it for as long as it lives; an inner one hands on to the one around it. The desktop's log-out is
/// told by Qt. A signal that ends programs (SIGTERM, SIGINT, SIGHUP; one that is ignored stays so) is taken
/// to Qt's events and then raised anew for whoever had it before, a host included: as a rule that ends the
/// process.
class CQtSessionEnd : boost::noncopyable {
public:
    /// `fnKeep` keeps what is unsaved and returns when it is on the disk. Never throws. Also called while a
    /// dialog is open.
    explicit CQtSessionEnd(std::function<void()> fnKeep);
    ~CQtSessionEnd();

private:
    static constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

    void Take();
    void GiveBack();
    void OnSignal();

    const std::function<void()> m_fnKeep;
    QObject m_context; ///< its connections end with it
    std::array<int, 2> m_aPipe{-1, -1};
    std::optional<QSocketNotifier> m_notifier;
    std::array<struct sigaction, SIGNALS.size()> m_aOld{};
    int m_fdBefore = -1; ///< an outer one's pipe
};
