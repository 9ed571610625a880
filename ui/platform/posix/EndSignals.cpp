#include "ui/platform/EndSignals.h"

#include "ui/base/QtScopes.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace {

std::atomic<int> g_fdSignal = -1;

// A signal handler may do almost nothing, so it only writes to the pipe.
void NoteSignal(int nSignal) {
    const int nError = errno;
    const auto chSignal = static_cast<char>(nSignal);
    (void)!write(g_fdSignal, &chSignal, 1);
    errno = nError;
}

} // namespace

class CEndSignals::CState : boost::noncopyable {
public:
    explicit CState(std::function<void()> fnKeep) : m_fnKeep(std::move(fnKeep)) {
        if (pipe2(m_aPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
        m_notifier.emplace(m_aPipe[0], QSocketNotifier::Read);
        QObject::connect(&*m_notifier, &QSocketNotifier::activated, &m_context, [this] { OnSignal(); });
        Take();
    }
    ~CState() {
        if (!m_notifier) return;
        GiveBack();
        // A signal that arrived at the very end, when nothing was left to be saved.
        char chSignal = 0;
        if (read(m_aPipe[0], &chSignal, 1) == 1) raise(chSignal);
        m_notifier.reset();
        for (const int fd : m_aPipe) close(fd);
    }

private:
    static constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

    void Take() {
        m_fdBefore = g_fdSignal.exchange(m_aPipe[1]);
        struct sigaction action {};
        action.sa_handler = NoteSignal;
        action.sa_flags = SA_RESTART;
        for (size_t idx = 0; idx < SIGNALS.size(); ++idx) {
            sigaction(SIGNALS[idx], nullptr, &m_aOld[idx]);
            if (m_aOld[idx].sa_handler != SIG_IGN) sigaction(SIGNALS[idx], &action, nullptr);
        }
    }
    void GiveBack() {
        for (size_t idx = 0; idx < SIGNALS.size(); ++idx) sigaction(SIGNALS[idx], &m_aOld[idx], nullptr);
        g_fdSignal = m_fdBefore;
    }
    void OnSignal() {
        if (CWorkScope::IsOpen()) return; // the signal waits until the documents are whole again
        char chSignal = 0;
        if (read(m_aPipe[0], &chSignal, 1) != 1) return;
        m_fnKeep();
        GiveBack();
        raise(chSignal);
        Take(); // the process has survived the signal
    }

    const std::function<void()> m_fnKeep;
    QObject m_context; ///< its connections are removed with it
    std::array<int, 2> m_aPipe{-1, -1};
    std::optional<QSocketNotifier> m_notifier;
    std::array<struct sigaction, SIGNALS.size()> m_aOld{};
    int m_fdBefore = -1; ///< the pipe of an outer object
};

CEndSignals::CEndSignals(std::function<void()> fnKeep)
    : m_pState(qGuiApp ? std::make_unique<CState>(std::move(fnKeep)) : nullptr) {}

CEndSignals::~CEndSignals() = default;
