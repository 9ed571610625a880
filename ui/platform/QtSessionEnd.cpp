#include "ui/platform/QtSessionEnd.h"

#include "ui/base/QtScopes.h"

#include <QGuiApplication>

#include <atomic>
#include <cerrno>

#include <fcntl.h>
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

CQtSessionEnd::CQtSessionEnd(std::function<void()> fnKeep) : m_fnKeep(std::move(fnKeep)) {
    if (qGuiApp)
        QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, &m_context, [this] {
            if (!CWorkScope::IsOpen()) m_fnKeep();
        });
    if (!qGuiApp || pipe2(m_aPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    m_notifier.emplace(m_aPipe[0], QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &m_context, [this] { OnSignal(); });
    Take();
}

CQtSessionEnd::~CQtSessionEnd() {
    if (!m_notifier) return;
    GiveBack();
    // A signal that arrived at the very end, when nothing was left to be saved.
    char chSignal = 0;
    if (read(m_aPipe[0], &chSignal, 1) == 1) raise(chSignal);
    m_notifier.reset();
    for (const int fd : m_aPipe) close(fd);
}

void CQtSessionEnd::Take() {
    m_fdBefore = g_fdSignal.exchange(m_aPipe[1]);
    struct sigaction action {};
    action.sa_handler = NoteSignal;
    action.sa_flags = SA_RESTART;
    for (size_t idx = 0; idx < SIGNALS.size(); ++idx) {
        sigaction(SIGNALS[idx], nullptr, &m_aOld[idx]);
        if (m_aOld[idx].sa_handler != SIG_IGN) sigaction(SIGNALS[idx], &action, nullptr);
    }
}

void CQtSessionEnd::GiveBack() {
    for (size_t idx = 0; idx < SIGNALS.size(); ++idx) sigaction(SIGNALS[idx], &m_aOld[idx], nullptr);
    g_fdSignal = m_fdBefore;
}

void CQtSessionEnd::OnSignal() {
    if (CWorkScope::IsOpen()) return; // the signal waits until the documents are whole again
    char chSignal = 0;
    if (read(m_aPipe[0], &chSignal, 1) != 1) return;
    m_fnKeep();
    GiveBack();
    raise(chSignal);
    Take(); // the process has survived the signal
}
