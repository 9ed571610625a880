#include "app/session/Interrupt.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t g_bInterrupted = 0;

} // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int) { g_bInterrupted = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool IsInterrupted() { return g_bInterrupted != 0; }
