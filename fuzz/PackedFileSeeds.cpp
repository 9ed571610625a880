// Packed files of zero, one and several blocks.
#include "system/files/PackedFile.h"

#include <filesystem>
#include <fstream>

int main(int nArguments, char** ppszArguments) {
    if (nArguments != 2) return 2;
    bool bOk = true;
    for (const size_t nLength : {size_t{0}, size_t{9}, size_t{1} << 20, (size_t{2} << 20) + 5}) {
        std::string strBytes(nLength, 'a');
        for (size_t i = 0; i < nLength; i += 1000) strBytes[i] = static_cast<char>(i / 1000);
        std::ofstream file(std::filesystem::path(ppszArguments[1]) / (std::to_string(nLength) + ".vlm"),
                           std::ios::binary);
        bOk = WritePacked([&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); },
                          [&](std::string_view str) { return bool(file << str); }) &&
              bOk;
    }
    return bOk ? 0 : 1;
}
