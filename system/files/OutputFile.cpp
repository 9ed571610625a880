#include "system/files/OutputFile.h"

#include "system/files/FilePath.h"
#include "system/files/FileStore.h"
#include "system/files/OpenFile.h"

namespace {

bool WriteOver(const std::filesystem::path& path, std::string_view strBytes) {
    COpenFile file(path, COpenFile::EAccess::InPlace);
    if (!file.IsOpen() || !file.SetSize(0)) return false;
    if (file.WriteAt(0, strBytes)) return true;
    // Nothing is better than a part; that this fails too cannot be helped.
    file.SetSize(0);
    return false;
}

} // namespace

CFileOutcome WriteOutput(const std::filesystem::path& path, std::string_view strBytes) {
    CFileStore files;
    const CFileOutcome outcome = files.Replace(TextOf(path), strBytes);
    return outcome || WriteOver(path, strBytes) ? CFileOutcome() : outcome;
}
