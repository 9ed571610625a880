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
    {"mouse", ReadMouse},
    {"open", ReadOpen},
    {"packet", ReadPacket},
    {"pen", ReadPen},
    {"pointer", ReadPointer},
    {"proximity", ReadProximity},
    {"save", ReadSave},
    {"screenshot", ReadScreenshot},
    {"set", ReadSet},
    {"tool", ReadTool},
    {"view", ReadView},
    {"wait", ReadWait},
};

} // namespace

std::span<const TVerb> GetVerbs() { return VERBS; }
