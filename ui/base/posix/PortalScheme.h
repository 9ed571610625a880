// The preference for dark windows, asked of the desktop's settings portal.
#pragma once

#include "ui/base/DesktopScheme.h"

#include <QDBusConnection>
#include <QObject>

class QDBusMessage;

class CPortalScheme : public QObject, public IDesktopScheme {
    Q_OBJECT
public:
    /// Asks without waiting; `fnChanged` is called when the answer or a change arrives. Without a portal it
    /// never is.
    CPortalScheme(const QDBusConnection& bus, std::function<void()> fnChanged);
    std::optional<bool> IsDark() const override { return m_bDark; }

private slots:
    void OnSetting(const QDBusMessage& message);

private:
    void Take(QVariant value);

    std::function<void()> m_fnChanged;
    std::optional<bool> m_bDark;
};
