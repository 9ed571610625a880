#include "session/Verbs.h"

namespace {

constexpr TVerb VERBS[] = {
    {"answer", ReadAnswer},
    {"close", ReadClose},
    {"command", ReadCommand},
    {"dump", ReadDump},
    {"expect", ReadExpect, true},
    {"export", ReadExport},
    {"key", ReadKey},
    {"layer", ReadLayer},
    {"open", ReadOpen},
    {"save", ReadSave},
    {"screenshot", ReadScreenshot},
    {"set", ReadSet},
    {"view", ReadView},
    {"wait", ReadWait},
};

} // namespace

std::span<const TVerb> GetVerbs() { return VERBS; }
