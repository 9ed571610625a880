// All platform services in one record, made by the executable and passed to the application when a session
// starts. References to them stay valid while the session runs.
#pragma once

class IMessageQueue;
class IWindowFactory;
class IMessageBoxes;
class IFileDialogs;
class IDialogs;
class IFileStore;
class ILocations;
class IModules;
class IImageCodecs;
class IClock;
class IKeyState;
class IClipboard;
class IPen;
class ISnapshotStore;
class IProgressWindow;
class IManual;
class IRecentFiles;

struct TPlatform {
    IMessageQueue& queue;
    IWindowFactory& windows;
    IMessageBoxes& boxes;
    IFileDialogs& fileDialogs;
    IDialogs& dialogs;
    IFileStore& files;
    ILocations& locations;
    IModules& modules;
    IImageCodecs& codecs;
    IClock& clock;
    IKeyState& keys;
    IClipboard& clipboard;
    ISnapshotStore& snapshots;
    IPen& pen;
    IProgressWindow& progress;
    IManual& manual;
    IRecentFiles& recent;
};
