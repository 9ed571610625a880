// Whether the desktop prefers dark windows, asked of its settings portal.
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class QDBusMessage;

class CDesktopScheme : public QObject {
    Q_OBJECT
public:
    /// Asks without waiting; `fnChanged` is called when the answer or a change arrives. Without a portal it
    /// never is.
    CDesktopScheme(const QDBusConnection& bus, std::function<void()> fnChanged);
    /// True for dark, false for light, nullopt without a preference.
    std::optional<bool> IsDark() const { return m_bDark; }

private slots:
    void OnSetting(const QDBusMessage& message);

private:
    void Take(QVariant value);

    std::function<void()> m_fnChanged;
    std::optional<bool> m_bDark;
};
