// The Qt platform of the application: windows, dialogs, keyboard and clock, combined with the given files
// and codecs in one platform record.
#pragma once

#include "core/Platform/Platform.h"
#include "ui/base/QtApplication.h"

#include <boost/noncopyable.hpp>

#include <memory>
#include <string>

class CMessageQueue;
class CQtMainWindow;
class ISnapshotStore;

/// Lives as long as a session, longer than every window; the queue and the given parts outlive it. One
/// thread.
class CQtPlatform : boost::noncopyable {
public:
    /// Becomes the queue's pump. Without a display the platform exists but refuses to create windows.
    CQtPlatform(CMessageQueue& queue, IFileStore& files, ILocations& locations, IModules& modules,
                IImageCodecs& codecs, ISnapshotStore& snapshots);
    ~CQtPlatform();

    const TPlatform& GetPlatform() const;
    IWindowFactory& GetWindows();

    /// Writes a picture of the main window in device pixels as PNG. False when there is no main window or the
    /// file cannot be written.
    bool SaveScreenshot(const std::wstring& strPath);

private:
    struct TParts;
    std::unique_ptr<TParts> m_pParts;
};
