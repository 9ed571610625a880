// A block of this application, alone and as a file, and blocks with shorter headers.
#include "core/ImageFile/DibBlock.h"

#include <filesystem>
#include <fstream>

int main(int nArguments, char** ppszArguments) {
    if (nArguments != 2) return 2;
    const auto write = [&](const char* pszName, const std::string& strBytes) {
        std::ofstream file(std::filesystem::path(ppszArguments[1]) / pszName, std::ios::binary);
        return static_cast<bool>(file << strBytes);
    };
    const std::string strBlock = *CreateDibBlock({5, 3}).spBytes;
    // The first fields are those of the short header; 24 bits without bit fields.
    std::string strShort = strBlock.substr(0, 40) + strBlock.substr(124);
    strShort[0] = 40;
    std::string str24 = strShort;
    str24[14] = 24;
    str24[16] = 0;
    strShort.insert(40, strBlock, 40, 12);
    return write("v5.dib", strBlock) && write("v5.bmp", MakeBmpFileHeader(strBlock) + strBlock) &&
                   write("masks.dib", strShort) && write("24.dib", str24)
               ? 0
               : 1;
}
