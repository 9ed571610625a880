#include "tests/ui/UiTest.h"

#include "ui/base/SvgIcon.h"
#include "ui/base/Theme.h"
#include "ui/base/posix/PortalScheme.h"

#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace {

/// The desktop's settings portal, at the other end of a connection without a bus.
class CPortal : public QDBusVirtualObject {
public:
    CPortal() {
        m_server.setAnonymousAuthenticationAllowed(true);
        connect(&m_server, &QDBusServer::newConnection, this, [this](const QDBusConnection& connection) {
            m_connection = connection;
            m_connection.registerVirtualObject(PATH, this);
        });
    }
    QDBusConnection Connect() { return QDBusConnection::connectToPeer(m_server.address(), "portal"); }
    void Change(uint uScheme, const char* pszKey = "color-scheme") {
        QDBusMessage signal = QDBusMessage::createSignal(PATH, SETTINGS, "SettingChanged");
        m_connection.send(signal << "org.freedesktop.appearance" << pszKey << Wrap(uScheme));
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        return message.interface() == SETTINGS && message.arguments() == ASKED &&
               connection.send(message.createReply(Wrap(Wrap(1u))));
    }

private:
    static QVariant Wrap(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }
    inline static const QString PATH = "/org/freedesktop/portal/desktop",
                                SETTINGS = "org.freedesktop.portal.Settings";
    inline static const QVariantList ASKED{"org.freedesktop.appearance", "color-scheme"};
    QDBusServer m_server;
    QDBusConnection m_connection{""};
};

bool IsDark() { return IsDarkPalette(QApplication::palette()); }

} // namespace

TEST(QtTheme, FollowsTheDesktopUntilOneIsChosen) {
    const QPalette before = QApplication::palette();
    ASSERT_FALSE(IsDark());
    CPortal portal;
    CQtTheme theme([&](std::function<void()> fnChanged) {
        return std::make_unique<CPortalScheme>(portal.Connect(), std::move(fnChanged));
    });
    EXPECT_TRUE(QTest::qWaitFor(IsDark));
    const auto becomesLight = [] { return QTest::qWaitFor([] { return !IsDark(); }); };
    portal.Change(2);
    EXPECT_TRUE(becomesLight());
    portal.Change(1);
    EXPECT_TRUE(QTest::qWaitFor(IsDark));
    portal.Change(2, "contrast");
    QTest::qWait(50);
    EXPECT_TRUE(IsDark()) << "another setting";
    portal.Change(0); // no preference
    EXPECT_TRUE(becomesLight());
    theme.Choose(ETheme::Dark);
    EXPECT_TRUE(IsDark());
    const QColor color = LoadLineIcon("icons/title-min.svg").pixmap(20, 20).toImage().pixelColor(10, 17);
    EXPECT_GT(color.lightness(), 200) << "icons are readable";
    portal.Change(1);
    portal.Change(2);
    QTest::qWait(50);
    EXPECT_TRUE(IsDark());
    theme.Choose(ETheme::System);
    EXPECT_EQ(QApplication::palette(), before);
}
