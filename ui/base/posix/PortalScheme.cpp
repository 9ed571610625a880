#include "ui/base/posix/PortalScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace {

constexpr char SERVICE[] = "org.freedesktop.portal.Desktop";
constexpr char OBJECT[] = "/org/freedesktop/portal/desktop";
constexpr char INTERFACE[] = "org.freedesktop.portal.Settings";
constexpr char GROUP[] = "org.freedesktop.appearance";
constexpr char KEY[] = "color-scheme";
constexpr uint PREFERS_DARK = 1;
constexpr uint PREFERS_LIGHT = 2;

/// The desktop's bus; a connection that is not open when the process belongs to no desktop's session.
QDBusConnection FindDesktopBus() {
    // Without an address Qt would start a bus of its own.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return QDBusConnection(QString());
    return QDBusConnection::sessionBus();
}

} // namespace

std::unique_ptr<IDesktopScheme> WatchDesktopScheme(std::function<void()> fnChanged) {
    return std::make_unique<CPortalScheme>(FindDesktopBus(), std::move(fnChanged));
}

CPortalScheme::CPortalScheme(const QDBusConnection& bus, std::function<void()> fnChanged)
    : m_fnChanged(std::move(fnChanged)) {
    if (!bus.isConnected()) return;
    QDBusConnection(bus).connect(QString(), QLatin1String(OBJECT), QLatin1String(INTERFACE),
                                 QStringLiteral("SettingChanged"), this, SLOT(OnSetting(QDBusMessage)));
    QDBusMessage ask = QDBusMessage::createMethodCall(QLatin1String(SERVICE), QLatin1String(OBJECT),
                                                      QLatin1String(INTERFACE), QStringLiteral("Read"));
    ask << QString::fromLatin1(GROUP) << QString::fromLatin1(KEY);
    auto* pWatcher = new QDBusPendingCallWatcher(bus.asyncCall(ask), this);
    connect(pWatcher, &QDBusPendingCallWatcher::finished, this, [this, pWatcher] {
        pWatcher->deleteLater();
        const QDBusMessage reply = pWatcher->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            Take(reply.arguments().front());
    });
}

void CPortalScheme::OnSetting(const QDBusMessage& message) {
    const QVariantList lst = message.arguments();
    if (lst.size() == 3 && lst[0] == QLatin1String(GROUP) && lst[1] == QLatin1String(KEY)) Take(lst[2]);
}

void CPortalScheme::Take(QVariant value) {
    // The portal answers with a variant inside of another.
    while (value.userType() == qMetaTypeId<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    const uint uScheme = value.toUInt();
    std::optional<bool> bDark;
    if (uScheme == PREFERS_DARK || uScheme == PREFERS_LIGHT) bDark = uScheme == PREFERS_DARK;
    if (std::exchange(m_bDark, bDark) != bDark) m_fnChanged();
}
