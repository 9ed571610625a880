#include "app/desktop/InstancePlace.h"

#include "system/files/FilePath.h"

#include <QStandardPaths>

namespace fs = std::filesystem;

fs::path FindInstanceFolder(ILocations&) {
    return PathOf(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation).toStdString());
}

TInstancePlace FindInstancePlace(const fs::path& folder) {
    if (folder.empty()) return {};
    const fs::path path = folder / "vellumcraft.socket";
    return {path, QString::fromStdString(path.native())};
}

// A token does that (ACTIVATION).
void LetComeToFront(const QLocalSocket&) {}
