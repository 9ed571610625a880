#include "ui/platform/QtSessionEnd.h"

#include "ui/base/QtScopes.h"

#include <QGuiApplication>

CQtSessionEnd::CQtSessionEnd(std::function<void()> fnKeep) : m_signals(fnKeep) {
    if (qGuiApp)
        QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, &m_context,
                         [fnKeep = std::move(fnKeep)] {
                             if (!CWorkScope::IsOpen()) fnKeep();
                         });
}
