// Fuzzes the reader of sets of shortcuts: a set that is accepted is formatted and parsed again without a
// change.
#include "core/Base/Failure.h"
#include "core/Commands/Shortcuts.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    CShortcuts shortcuts;
    try {
        shortcuts = CShortcuts::Parse({reinterpret_cast<const char*>(pData), nSize});
    } catch (const deserialize_error&) {
        return 0;
    }
    // Without a command of this version there is nothing to write.
    if (shortcuts == CShortcuts()) return 0;
    // Outside the guard: the reader must accept every file of the writer.
    if (!(CShortcuts::Parse(shortcuts.Format()) == shortcuts)) std::abort();
    return 0;
}
