#include "tests/ui/UiTest.h"

#include "app/desktop/Handover.h"
#include "app/desktop/Instance.h"
#include "session/scripts/Script.h"
#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <QLocalSocket>

#include <future>
#include <thread>

namespace {

using TPaths = CInstance::TPaths;
using EStart = CInstance::EStart;

class Instance : public testing::Test {
protected:
    void Listen() {
        ASSERT_EQ(m_first.Begin({}), EStart::First);
        ASSERT_TRUE(m_first.Listen([this](const TPaths& vPaths) { m_vTaken.push_back(vPaths); }));
    }
    EStart StartAnother(const TPaths& vPaths) {
        auto result =
            std::async(std::launch::async, [&] { return CInstance(m_folder.GetPath()).Begin(vPaths); });
        while (result.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready) QTest::qWait(1);
        return result.get();
    }

    CTempFolder m_folder;
    const QString m_strServer = FindInstancePlace(m_folder.GetPath()).strServer;
    const std::string m_strRoot = Utf8Of(m_folder.GetPath().root_path());
    CInstance m_first{m_folder.GetPath()};
    std::vector<TPaths> m_vTaken;
};

} // namespace

TEST_F(Instance, PathsArriveByteByByteAndNonsenseDoesNot) {
    Listen();
    const TPaths vPaths =
        WithActivation({m_strRoot + "絵/a b\n1.vlm", m_strRoot + "\xFF.png", "new"}, "token");
    EXPECT_EQ(vPaths.front(), "activation token");
    const std::string strGood = PackPaths({m_strRoot + "a"});
    for (const std::string& strBad :
         {std::string("00000003a\0b", 11), std::string("zzzzzzzz/a"), std::string("ffffffff"),
          std::string("00000003/ab"), PackPaths({"relative"}), PackPaths({m_strRoot + "a", "activation b"}),
          strGood + "x", PackPaths({""})}) {
        QLocalSocket socket;
        socket.connectToServer(m_strServer);
        ASSERT_TRUE(socket.waitForConnected(1000));
        socket.write(QByteArray::fromStdString(strBad));
        EXPECT_TRUE(QTest::qWaitFor([&] { return socket.state() == QLocalSocket::UnconnectedState; }, 1000))
            << strBad;
    }
    EXPECT_EQ(StartAnother(vPaths), EStart::HandedOver);
    EXPECT_EQ(StartAnother({}), EStart::HandedOver);
    EXPECT_EQ(StartAnother(TPaths(20000, m_strRoot + "a")), EStart::HandedOver);
    EXPECT_EQ(m_vTaken, (std::vector<TPaths>{vPaths, {}, TPaths(20000, m_strRoot + "a")}));
}

TEST_F(Instance, EachFolderHasItsOwn) {
    Listen();
    const CTempFolder other;
    EXPECT_EQ(CInstance(other.GetPath()).Begin({}), EStart::First);
    EXPECT_NE(FindInstancePlace(other.GetPath()).strServer, m_strServer);
    const std::filesystem::path same(m_folder.GetPath().generic_string());
    EXPECT_EQ(FindInstancePlace(same).strServer, m_strServer) << "with other separators";
    EXPECT_EQ(CInstance({}).Begin({}), EStart::Alone) << "no folder";
}

TEST_F(Instance, OfManyStartsAtOneMomentOneIsTheFirst) {
    std::vector<std::thread> vThreads;
    std::atomic<int> nFirst = 0, nHanded = 0;
    for (int n = 0; n < 6; ++n)
        vThreads.emplace_back([&] {
            CInstance instance(m_folder.GetPath());
            const EStart start = instance.Begin({m_strRoot + "a"});
            if (start == EStart::HandedOver) ++nHanded;
            if (start != EStart::First) return;
            ++nFirst;
            QEventLoop loop;
            instance.Listen([](const TPaths&) {});
            for (QDeadlineTimer end(10000); nHanded < 5 && !end.hasExpired();)
                loop.processEvents(QEventLoop::AllEvents, 10);
        });
    for (std::thread& thread : vThreads) thread.join();
    EXPECT_TRUE(nFirst == 1 && nHanded == 5) << nFirst << " " << nHanded;
}

TEST_F(Instance, TheRealProgramFollowsAKilledOneWhoseRecordIsWhole) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString strFolder = QString::fromStdString(Utf8Of(m_folder.GetPath()));
    for (const char* psz : {"XDG_RUNTIME_DIR", CLocations::APP_DATA_VARIABLE, "XDG_DATA_HOME"})
        environment.insert(psz, strFolder);
    QImage(20, 10, QImage::Format_RGB32).save(strFolder + "/page.png");
    const auto start = [&](QProcess& process, const QStringList& lstArguments) {
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(strFolder);
        process.start(VELLUM_DESKTOP, lstArguments);
    };
    const auto isListening = [&] {
        // The folder of the user's session, or that of the settings.
        for (const auto& folder : {m_folder.GetPath(), m_folder.File("Vellumcraft")}) {
            QLocalSocket socket;
            socket.connectToServer(FindInstancePlace(folder).strServer);
            if (socket.waitForConnected(1000)) return socket.waitForReadyRead(2000);
        }
        return false;
    };
    const auto readRecord = [&] { return CFileStore().Read(TextOf(m_folder.File("record"))).value_or(""); };
    const auto hasOpened = [&] { return readRecord().find("file-new") != std::string::npos; };
    for (int nRound = 0; nRound < 2; ++nRound) {
        QProcess first, second, recorded; // the first one is killed
        start(first, {});
        ASSERT_TRUE(QTest::qWaitFor(isListening, 20000)) << nRound;
        start(second, {"none.vlm"});
        EXPECT_TRUE(second.waitForFinished(20000) && second.exitCode() == 0);
        start(recorded, {"--record", "record", "--new", "page.png"});
        EXPECT_TRUE(QTest::qWaitFor(hasOpened, 20000));
        for (QProcess* pProcess : {&first, &recorded}) pProcess->kill(), pProcess->waitForFinished();
        const std::string strRecord = readRecord();
        EXPECT_LT(strRecord.find("page.png\"}\n"), strRecord.find("file-new")) << strRecord;
        EXPECT_TRUE(strRecord.ends_with("}\n")) << strRecord;
        std::filesystem::remove(m_folder.File("record"));
    }
}
