#include "system/files/QuietThread.h"

#include <boost/noncopyable.hpp>

#include <csignal>

namespace {

// A new thread inherits the mask.
class CSignalsBlocked : boost::noncopyable {
public:
    CSignalsBlocked() {
        sigset_t setAll;
        sigfillset(&setAll);
        pthread_sigmask(SIG_SETMASK, &setAll, &m_setOld);
    }
    ~CSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_setOld, nullptr); }

private:
    sigset_t m_setOld;
};

} // namespace

std::thread StartQuietThread(std::function<void()> fn) {
    const CSignalsBlocked blocked;
    return std::thread(std::move(fn));
}
