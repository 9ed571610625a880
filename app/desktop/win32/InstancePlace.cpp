#include "app/desktop/InstancePlace.h"

#include "core/IniConfig/IniConfig.h"
#include "system/files/FilePath.h"

#include <QCryptographicHash>
#include <QLocalSocket>

#include <windows.h>

namespace fs = std::filesystem;

fs::path FindInstanceFolder(ILocations& locations) {
    return PathOf(CIniConfig::FindPath(locations)).parent_path();
}

// All names of pipes are in one folder of the system; the path makes them different for each user.
TInstancePlace FindInstancePlace(const fs::path& folder) {
    if (folder.empty()) return {};
    DWORD uSession = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &uSession);
    fs::path path = folder / (L"instance-" + std::to_wstring(uSession));
    path.make_preferred(); // one name, whichever separators the folder was given with
    const QByteArray bytesHash =
        QCryptographicHash::hash(QByteArray::fromStdString(Utf8Of(path)), QCryptographicHash::Sha256);
    return {path, QStringLiteral("vellumcraft-") + QString::fromLatin1(bytesHash.toHex())};
}

void LetComeToFront(const QLocalSocket& socket) {
    ULONG uProcess = 0;
    const auto hPipe = reinterpret_cast<HANDLE>(socket.socketDescriptor());
    AllowSetForegroundWindow(GetNamedPipeServerProcessId(hPipe, &uProcess) ? uProcess : ASFW_ANY);
}
