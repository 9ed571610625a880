// The place at which a start of the program finds the running instance.
#pragma once

#include <QString>

#include <filesystem>

class ILocations;
class QLocalSocket;

struct TInstancePlace {
    std::filesystem::path pathLock; ///< the file that the instance's lock belongs to; empty for none
    QString strServer;              ///< name of the local server
};

/// The folder for the lock, which belongs to the user: on Windows that of the settings, else that of the
/// user's session. Empty when there is none.
std::filesystem::path FindInstanceFolder(ILocations& locations);

/// The place in this folder. On Windows each session of the user has its own, whose windows the others do not
/// see.
TInstancePlace FindInstancePlace(const std::filesystem::path& folder);

/// Allows the instance at the other end of a connection to come to the front, where the system asks for that.
void LetComeToFront(const QLocalSocket& socket);
