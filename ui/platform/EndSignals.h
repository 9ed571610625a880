// Signals that end the process.
#pragma once

#include <boost/noncopyable.hpp>

#include <functional>
#include <memory>

/// A terminating signal (SIGTERM, SIGINT, SIGHUP, unless ignored) is forwarded to Qt's events and then raised
/// again for the previous handler, a host's included, which usually ends the process. Windows has no such
/// signals.
class CEndSignals : boost::noncopyable {
public:
    /// `fnKeep` is called before the signal is raised again.
    explicit CEndSignals(std::function<void()> fnKeep);
    ~CEndSignals();

private:
    class CState;
    std::unique_ptr<CState> m_pState; ///< null where nothing is watched
};
