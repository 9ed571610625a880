#include "system/environment/Locations.h"
#include "system/environment/Modules.h"
#include "system/files/SnapshotFiles.h"
#include "system/files/SnapshotStore.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <thread>

namespace {

namespace fs = std::filesystem;

constexpr int DIED = 9;

// Sessions whose settings and documents are in one folder.
class CRecoverySessions {
public:
    explicit CRecoverySessions(fs::path path) : m_pathFolder(std::move(path)) {}

    // The first step is followed by as many lines that cancel long work.
    std::string Play(const std::vector<TAction>& vSteps, size_t nCancels = 0) {
        TScript script{"s", {}};
        for (const TAction& fn : vSteps) script.vSteps.push_back({1, fn});
        script.vSteps.insert(script.vSteps.begin() + 1, nCancels, {1, {}, EStepKind::Cancels});
        CSnapshotStore snapshots(m_locations);
        TSessionParts parts{m_store, m_locations, m_places, m_codecs};
        parts.pSnapshots = &snapshots;
        CSessionPlatform session(parts, script);
        CScriptedSession::PlayOn(session.GetPlatform(), false);
        const auto& vShown = session.GetLog().GetShown();
        m_strFirstBox = vShown.empty() ? L"" : vShown[0].strText;
        return session.GetFailure();
    }
    // Works on three documents until the process ends at once, and none of its objects does anything any
    // more.
    void PlayAndDie() {
        // The clock runs faster than the disk: wait for each document's snapshot.
        const auto settle = [](CPlayer& player) {
            while (player.GetStage().platform.snapshots.IsBusy())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            player.Wait(1000);
        };
        Play({[this](CPlayer&) {
                  for (int n = 0; n < 3; ++n) g_pMainFrame->OpenFrame(CreateCanvasFrame(MakeDocument(n)));
              },
              [](CPlayer& player) { player.Wait(62000); }, settle, settle, settle,
              [](CPlayer&) { std::_Exit(DIED); }});
    }
    std::wstring FileOf(int n) const { return TextOf(m_pathFolder / (std::to_string(n) + ".vlm")); }
    boost::shared_ptr<CCanvasBuffer> MakeDocument(int n) const {
        std::mt19937 random(static_cast<uint32_t>(n));
        const auto spCanvas = CreateCanvas({250 + n, 130}, n != 1);
        FillRandomTree(spCanvas, 6, random);
        spCanvas->SetTitle(L"絵" + std::to_wstring(n));
        spCanvas->SetPath(FileOf(n));
        spCanvas->GetHistory().SetModified(true);
        return spCanvas;
    }

    const fs::path m_pathFolder;
    CFileStore m_store;
    CLocations m_locations;
    CNoPlaces m_places;
    CImageCodecs m_codecs{m_store};
    std::wstring m_strFirstBox;
};

class RecoveryDesktop : public testing::Test, protected CTestSettings, protected CRecoverySessions {
protected:
    RecoveryDesktop() : CRecoverySessions(GetPath()) {}

    void LetAnotherDie() {
        std::string strSaid;
        ASSERT_EQ(RunInFolder(GetPath(), Utf8Of(CModules::FindOwnFile()), "--die", strSaid), DIED) << strSaid;
    }
    static TAction Offer(EBoxAnswer answer) {
        return [answer](CPlayer& player) {
            player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = answer});
            g_pMainFrame->QueueRecovery();
        };
    }
    ptrdiff_t CountFiles() const {
        return std::ranges::distance(fs::directory_iterator(File("Vellumcraft/Recovery")));
    }
};

} // namespace

// Another process of this program, with settings inside the folder of the test that starts it.
void PlayAndDie() {
    const fs::path path = PathOf(GetVariable(CLocations::APP_DATA_VARIABLE)).parent_path();
    SetVariable(CLocations::APP_DATA_VARIABLE, Utf8Of(path));
    CRecoverySessions(path).PlayAndDie();
}

TEST_F(RecoveryDesktop, AKilledSessionComesBackToThePixel) {
    LetAnotherDie();
    std::ofstream(File("2.vlm")) << "the user's own file";
    const auto compare = [this](CPlayer&) {
        ASSERT_EQ(g_lstCanvasFrame.size(), 3u);
        int n = 0;
        for (const auto& spFrame : g_lstCanvasFrame) {
            CCanvasBuffer& canvas = *spFrame->GetCanvas();
            EXPECT_EQ(canvas.Serialize().GetPayload(), MakeDocument(n)->Serialize().GetPayload()) << n;
            EXPECT_TRUE(canvas.GetHistory().IsModified());
            EXPECT_EQ(canvas.GetPath(), n == 2 ? FileOf(n) : L"") << "no file: saving asks for a name";
            ++n;
        }
        // Another program that starts now must not find a snapshot.
        EXPECT_TRUE(CSnapshotStore(m_locations).FindLeft().empty());
    };
    EXPECT_EQ(Play({Offer(EBoxAnswer::Cancel)}), "") << "kept for later";
    EXPECT_TRUE(m_strFirstBox.starts_with(L"前回の作業が保存されずに終了しました。復元しますか？\n\n絵0"));
    const auto none = [](CPlayer&) { EXPECT_TRUE(g_lstCanvasFrame.empty()); };
    EXPECT_EQ(Play({Offer(EBoxAnswer::Yes), none}, 3), "") << "cancelled is kept for later too";
    EXPECT_EQ(Play({Offer(EBoxAnswer::Yes), compare}), ""); // closed with No at each prompt
    EXPECT_EQ(m_store.Read(FileOf(2)), "the user's own file");
    EXPECT_EQ(CountFiles(), 0);
}

TEST_F(RecoveryDesktop, YesAtTheEndIsNoLoss) {
    // The user closes a new document with Yes, but no file can be saved. Returns the session's failure.
    const auto leave = [this](const TAnswer& answer, size_t nOpen) {
        return Play({[&](CPlayer& player) {
            g_pMainFrame->OpenFrame(CreateCanvasFrame(MakeDocument(0)));
            g_lstCanvasFrame.back()->GetCanvas()->SetPath({});
            player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Yes});
            player.GetStage().dialogs.Push(answer);
            SendMessage({g_lstCanvasFrame.back()->GetWindow(), EMessage::Close});
            EXPECT_EQ(g_lstCanvasFrame.size(), nOpen);
        }});
    };
    const auto file = [this](const char* pszName) {
        return TAnswer{.kind = TAnswer::EKind::File, .strPath = TextOf(File(pszName))};
    };
    const auto compare = [this](CPlayer&) {
        ASSERT_EQ(g_lstCanvasFrame.size(), 1u);
        EXPECT_EQ(g_lstCanvasFrame.front()->GetCanvas()->Serialize().GetPayload(),
                  MakeDocument(0)->Serialize().GetPayload());
    };
    for (const TAnswer& answer : {TAnswer{}, file("picture.png"), file("none/0.vlm")}) {
        const bool bFails = answer.strPath.ends_with(L"0.vlm");
        EXPECT_EQ(leave(answer, 0).empty(), !bFails) << "a save that fails is told";
        EXPECT_EQ(Play({Offer(EBoxAnswer::Yes), compare}), "");
        EXPECT_EQ(CountFiles(), 0);
    }
    EXPECT_TRUE(fs::exists(File("picture.png")));
    fs::remove(File("Vellumcraft/Recovery"));
    std::ofstream(File("Vellumcraft/Recovery")) << "in the way";
    EXPECT_NE(leave({}, 1).find("復元用のデータを保存できませんでした。"), std::string::npos);
}

TEST_F(RecoveryDesktop, APictureWhoseWritingBrokeOffIsFinishedOnRequest) {
    const std::wstring strPath = TextOf(File("絵.png"));
    for (const EBoxAnswer answer : {EBoxAnswer::Cancel, EBoxAnswer::Yes}) {
        m_store.Replace(strPath, "half");
        const std::string strName = Utf8Of(File("Vellumcraft/Recovery/0123456789abcdef-1"));
        fs::create_directories(File("Vellumcraft/Recovery"));
        m_store.Replace(FromUtf8(strName + ".ini"), SnapshotFiles::NoteText({strPath, L"絵.png", {}}, true));
        m_store.Replace(FromUtf8(strName + ".vlm"), "whole");
        EXPECT_EQ(Play({Offer(answer), [](CPlayer&) { EXPECT_TRUE(g_lstCanvasFrame.empty()); }}), "");
        EXPECT_NE(m_strFirstBox.find(L"絵.png"), std::wstring::npos);
        EXPECT_EQ(m_store.Read(strPath), answer == EBoxAnswer::Yes ? "whole" : "half");
        EXPECT_EQ(CountFiles(), answer == EBoxAnswer::Yes ? 0 : 2);
    }
}

TEST_F(RecoveryDesktop, ADamagedOneIsToldAndDoesNotStandInTheWay) {
    LetAnotherDie();
    for (const auto& entry : fs::directory_iterator(File("Vellumcraft/Recovery")))
        if (Utf8Of(entry.path()).ends_with("-2.vlm")) fs::resize_file(entry.path(), 1000);
    const std::string strFailure =
        Play({Offer(EBoxAnswer::Yes), [](CPlayer&) { EXPECT_EQ(g_lstCanvasFrame.size(), 2u); }});
    EXPECT_NE(strFailure.find("破損しています。"), std::string::npos) << strFailure;
    EXPECT_NE(strFailure.find("-2.vlm.damaged"), std::string::npos) << strFailure;
    EXPECT_EQ(CountFiles(), 2);
    LetAnotherDie();
    EXPECT_EQ(Play({Offer(EBoxAnswer::No), [](CPlayer&) { EXPECT_TRUE(g_lstCanvasFrame.empty()); }}), "");
    EXPECT_EQ(CountFiles(), 2);
}
