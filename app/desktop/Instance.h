// One running instance a user: a later start finds it and hands its files over.
#pragma once

#include "system/FileLock.h"

#include <QLocalServer>

#include <boost/noncopyable.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class CInstance : boost::noncopyable {
public:
    using TPaths = std::vector<std::string>;
    enum class EStart {
        First,      ///< this instance may listen
        HandedOver, ///< another one has the files
        Alone,      ///< another one is there but does not answer
    };

    /// `strFolder` is the user's own for sockets, empty for none: then everyone is alone.
    explicit CInstance(const std::string& strFolder);

    /// Becomes the first instance, or hands the paths to the one that is; gives up after two seconds. An
    /// instance that does not answer has not got the paths.
    EStart Begin(const TPaths& vPaths);

    /// Takes messages from now on, after Begin has answered First; `fnTake` is called from Qt's event loop.
    /// False when there can be no socket.
    bool Listen(std::function<void(const TPaths&)> fnTake);

private:
    bool HandOver(const TPaths& vPaths, int nMilliseconds) const;
    void Greet(QLocalSocket& socket);

    std::string m_strSocket;
    std::unique_ptr<CFileLock> m_pLock; ///< held by the first instance; a killed one loses it
    std::function<void(const TPaths&)> m_fnTake;
    QLocalServer m_server;
};
