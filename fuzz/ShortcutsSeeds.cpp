// The built-in shortcuts.
#include "core/Base/Resource.h"

#include <filesystem>
#include <fstream>

int main(int nArguments, char** ppszArguments) {
    if (nArguments != 2) return 2;
    std::ofstream file(std::filesystem::path(ppszArguments[1]) / "built-in.keys", std::ios::binary);
    return file << FindResource("accelerators.tsv") ? 0 : 1;
}
