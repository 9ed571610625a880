// Fuzzes the reader of brush files: presets that are accepted are formatted and parsed again without a
// change.
#include "core/Base/Failure.h"
#include "core/Panels/BrushPresets.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    TPresetsOfTools presets;
    try {
        presets = ParsePresets({reinterpret_cast<const char*>(pData), nSize});
    } catch (const deserialize_error&) {
        return 0;
    }
    // Outside the guard: the reader must accept every file of the writer.
    if (ParsePresets(FormatPresets(presets)) != presets) std::abort();
    return 0;
}
