#include "app/desktop/Instance.h"

#include "app/desktop/Handover.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QTimer>

#include <memory>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr int PATIENCE_MS = 2000;
constexpr auto RETRY = 20ms; ///< for an instance that has started but does not listen yet

// Reads until the text has arrived; false when other bytes arrive, or none in time.
bool Expect(QLocalSocket& socket, std::string_view strText, const QDeadlineTimer& deadline) {
    while (socket.bytesAvailable() < static_cast<qint64>(strText.size()))
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return false;
    return socket.read(static_cast<qint64>(strText.size())).toStdString() == strText;
}

} // namespace

CInstance::EStart CInstance::Begin(const TPaths& vPaths) {
    if (m_place.pathLock.empty()) return EStart::Alone;
    const QDeadlineTimer deadline(PATIENCE_MS);
    do {
        m_pLock = std::make_unique<CFileLock>(m_place.pathLock, 0ms);
        if (m_pLock->IsLocked()) return EStart::First;
        if (HandOver(vPaths, static_cast<int>(deadline.remainingTime()))) return EStart::HandedOver;
        std::this_thread::sleep_for(RETRY);
    } while (!deadline.hasExpired());
    return EStart::Alone;
}

bool CInstance::HandOver(const TPaths& vPaths, int nMilliseconds) const {
    QLocalSocket socket;
    socket.connectToServer(m_place.strServer);
    const QDeadlineTimer deadline(nMilliseconds);
    // The greeting is sent from its event loop: an instance whose loop is blocked must not get paths.
    if (!socket.waitForConnected(nMilliseconds) || !Expect(socket, HANDOVER_GREETING, deadline)) return false;
    LetComeToFront(socket);
    const std::string strMessage = PackPaths(vPaths);
    socket.write(strMessage.data(), static_cast<qint64>(strMessage.size()));
    return Expect(socket, HANDOVER_THANKS, QDeadlineTimer(PATIENCE_MS));
}

bool CInstance::Listen(std::function<void(const TPaths&)> fnTake) {
    // No instance listens there while this one holds the lock: a socket file is left from a killed one.
    QLocalServer::removeServer(m_place.strServer);
    m_fnTake = std::move(fnTake);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket* pSocket = m_server.nextPendingConnection()) Greet(*pSocket);
    });
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    return m_server.listen(m_place.strServer);
}

void CInstance::Greet(QLocalSocket& socket) {
    const auto spBytes = std::make_shared<std::string>();
    QObject::connect(&socket, &QLocalSocket::readyRead, &socket, [this, &socket, spBytes] {
        *spBytes += socket.readAll().toStdString();
        if (!IsHandoverWhole(*spBytes)) return;
        const auto paths = UnpackPaths(*spBytes);
        if (!paths) return socket.abort();
        socket.write(HANDOVER_THANKS.data(), static_cast<qint64>(HANDOVER_THANKS.size()));
        socket.disconnectFromServer();
        m_fnTake(*paths);
    });
    QObject::connect(&socket, &QLocalSocket::disconnected, &socket, &QObject::deleteLater);
    QTimer::singleShot(PATIENCE_MS, &socket, [&socket] { socket.abort(); });
    socket.write(HANDOVER_GREETING.data(), static_cast<qint64>(HANDOVER_GREETING.size()));
}
