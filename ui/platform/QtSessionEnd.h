// Handling of the end of the process or of the user's desktop session.
#pragma once

#include "ui/platform/EndSignals.h"

#include <QObject>

/// Active for as long as it lives; an inner object forwards to the outer one. Qt reports the desktop's
/// log-out, CEndSignals what else ends the process.
class CQtSessionEnd : boost::noncopyable {
public:
    /// `fnKeep` saves unsaved work and returns when it is on the disk. Never throws. Also called while a
    /// dialog is open.
    explicit CQtSessionEnd(std::function<void()> fnKeep);

private:
    QObject m_context; ///< its connections are removed with it
    CEndSignals m_signals;
};
