// Fuzzes the reader of strokes from the clipboard: accepted strokes have all forms, and survive being written
// and read again.
#include "core/Base/Failure.h"
#include "core/PathSelect/StrokeForms.h"

#include <boost/make_shared.hpp>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    TCopiedStrokes strokes;
    try {
        strokes = ReadStrokes(boost::make_shared<std::string>(reinterpret_cast<const char*>(pData), nSize));
    } catch (const deserialize_error&) {
        return 0;
    }
    const TStrokeBytes spBytes = WriteStrokes(strokes);
    if (*WriteStrokes(ReadStrokes(spBytes)) != *spBytes) std::abort();
    // A large canvas would take its time, and nothing else than a small one.
    strokes.szCanvas = {64, 64};
    MakeStrokeForms(strokes);
    return 0;
}
