// Writes the seed corpus of the reader of copied strokes into a folder.
#include "core/PathSelect/StrokeForms.h"
#include "tests/support/Paths.h"

#include <filesystem>
#include <fstream>

int main(int nArguments, char** ppszArguments) {
    if (nArguments != 2) return 2;
    std::mt19937 random(1);
    TCopiedStrokes strokes{{150, 97}, 0x0000FF, {MakeStroke()}};
    for (int n = 0; n < 4; ++n) {
        std::ofstream file(std::filesystem::path(ppszArguments[1]) / ("seed" + std::to_string(n)),
                           std::ios::binary);
        if (!(file << *WriteStrokes(strokes))) return 1;
        strokes.vPaths.push_back(MakeRandomPath(strokes.szCanvas, random));
    }
    return 0;
}
