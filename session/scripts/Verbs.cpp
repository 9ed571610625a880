#include "session/scripts/Verbs.h"

namespace {

constexpr TVerb VERBS[] = {
    {"activate", ReadActivate},
    {"answer", ReadAnswer},
    {"cancel-work", ReadCancelWork, EStepKind::Cancels},
    {"clipboard", ReadClipboard},
    {"close", ReadClose},
    {"command", ReadCommand},
    {"dump", ReadDump},
    {"expect", ReadExpect, EStepKind::Expects},
    {"export", ReadExport},
    {"hue", ReadHue},
    {"key", ReadKey},
    {"keys", ReadKeys},
    {"layer", ReadLayer, EStepKind::Plain, true},
    {"level", ReadLevel},
    {"mark", ReadMark},
    {"mouse", ReadMouse, EStepKind::Plain, true},
    {"open", ReadOpen, EStepKind::Plain, true},
    {"packet", ReadPacket},
    {"panel", ReadPanel},
    {"pen", ReadPen, EStepKind::Plain, true},
    {"pointer", ReadPointer},
    {"proximity", ReadProximity},
    {"reply", ReadAnswer, EStepKind::Replies},
    {"rescale", ReadRescale},
    {"resize", ReadResize},
    {"save", ReadSave},
    {"screenshot", ReadScreenshot},
    {"set", ReadSet, EStepKind::Prepares, true},
    {"tablet", ReadTablet, EStepKind::Prepares},
    {"tool", ReadTool, EStepKind::Plain, true},
    {"try", ReadTry},
    {"view", ReadView},
    {"wait", ReadWait},
    {"wheel", ReadWheel},
};

} // namespace

std::span<const TVerb> GetVerbs() { return VERBS; }
