#include "system/files/QuietThread.h"

// There are no signals that a thread could take.
std::thread StartQuietThread(std::function<void()> fn) { return std::thread(std::move(fn)); }
