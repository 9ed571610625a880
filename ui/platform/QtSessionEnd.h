// Handling of the end of the process or of the user's desktop session.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <boost/noncopyable.hpp>

#include <array>
#include <functional>
#include <optional>

#include <signal.h>

/// Active for as long as it lives; an inner object forwards to the outer one. Qt reports the desktop's
/// log-out. A terminating signal (SIGTERM, SIGINT, SIGHUP, unless ignored) is forwarded to Qt's events and
/// then raised again for the previous handler, a host's included, which usually ends the process.
class CQtSessionEnd : boost::noncopyable {
public:
    /// `fnKeep` saves unsaved work and returns when it is on the disk. Never throws. Also called while a
    /// dialog is open.
    explicit CQtSessionEnd(std::function<void()> fnKeep);
    ~CQtSessionEnd();

private:
    static constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

    void Take();
    void GiveBack();
    void OnSignal();

    const std::function<void()> m_fnKeep;
    QObject m_context; ///< its connections are removed with it
    std::array<int, 2> m_aPipe{-1, -1};
    std::optional<QSocketNotifier> m_notifier;
    std::array<struct sigaction, SIGNALS.size()> m_aOld{};
    int m_fdBefore = -1; ///< the pipe of an outer object
};
