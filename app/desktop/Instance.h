// One running instance per user: a later start finds it and passes its files to it.
#pragma once

#include "app/desktop/InstancePlace.h"
#include "system/files/FileLock.h"

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
        Alone,      ///< another one is running but does not answer
    };

    /// `folder` is the user's own, as FindInstanceFolder returns it, empty for none: then every instance runs
    /// alone.
    explicit CInstance(const std::filesystem::path& folder) : m_place(FindInstancePlace(folder)) {}

    /// Becomes the first instance, or sends the paths to the running one; gives up after two seconds. An
    /// instance that does not answer has not received the paths.
    EStart Begin(const TPaths& vPaths);

    /// Accepts messages from now on, after Begin returned First; `fnTake` is called from Qt's event loop.
    /// False when no socket can be created.
    bool Listen(std::function<void(const TPaths&)> fnTake);

private:
    bool HandOver(const TPaths& vPaths, int nMilliseconds) const;
    void Greet(QLocalSocket& socket);

    const TInstancePlace m_place;
    std::unique_ptr<CFileLock> m_pLock; ///< held by the first instance; released when it is killed
    std::function<void(const TPaths&)> m_fnTake;
    QLocalServer m_server;
};
