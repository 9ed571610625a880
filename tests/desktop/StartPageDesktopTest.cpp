#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/RecentPictures.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "session/seam/SessionPanelWindow.h"
#include "session/seam/SessionSnapshots.h"
#include "tests/support/TestPlatform.h"

namespace {

/// Two snapshots of ended sessions, the second one of a document of 30 by 20 pixels.
class CLeftSnapshots : public CSessionSnapshots {
public:
    explicit CLeftSnapshots(CMemoryFiles& files) : m_files(files) {
        SaveDocument(*CreateCanvas({30, 20}), L"/left.vlm", files);
    }
    std::vector<TLeftSnapshot> FindLeft() override {
        ++m_nReserved;
        std::vector<TLeftSnapshot> vLeft;
        if (m_bDamaged) vLeft.push_back({L"0", {L"", L"", L"10:00"}});
        if (m_bLeft) vLeft.push_back({L"1", {L"", L"下書き", L"12:34"}});
        return vLeft;
    }
    std::unique_ptr<IFileReader> Open(const std::wstring& strName) override {
        if (strName == L"0") throw deserialize_error();
        return std::move(m_files.Open(L"/left.vlm"));
    }
    std::wstring SetAside(const std::wstring&) override { return m_bDamaged = false, L"/aside"; }
    void Adopt(const std::wstring&, uint32_t) override { m_bLeft = false; }
    void ReleaseLeft() override { m_nReserved = 0; }

    CMemoryFiles& m_files;
    bool m_bLeft = true, m_bDamaged = true;
    int m_nReserved = 0;
};

class StartPageDesktop : public testing::Test {
protected:
    static CSessionPanelWindow& Page() {
        return dynamic_cast<CSessionPanelWindow&>(*g_pMainFrame->GetStartPage().GetWindow());
    }
    static const TPanelControl& Tree(size_t n) {
        size_t nFound = 0;
        for (const TPanelControl& control : Page().GetControls())
            if (control.kind == TPanelControl::EKind::Tree && nFound++ == n) return control;
        throw std::runtime_error("no such tree");
    }
    static std::wstring Rows(size_t n) {
        std::wstring str;
        for (const TTreeRow& row : Tree(n).vTree) str += row.strText + L" " + row.strNote + L"|";
        return str;
    }
    static void Click(int nId, int nRow) { SendMessage({&Page(), EMessage::PanelChange, nId, nRow}); }
    static void Press(const std::wstring& strText) {
        for (const TPanelControl& control : Page().GetControls())
            if (control.strText.starts_with(strText)) return Click(control.nId, 0);
        ADD_FAILURE() << "no such button";
    }
    static CCanvasBuffer& Canvas() { return *g_wpActiveFrame.lock()->GetCanvas(); }
    void Step(const std::function<void()>& fn) {
        m_outside.AddStep([fn](CPlayer&) { fn(); });
    }
    void CloseFrame() {
        Step([] { SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::Close}); });
    }
    void Play() {
        m_outside.Play([] {});
    }

    CTestPlatform m_outside;
};

} // namespace

TEST_F(StartPageDesktop, MakesDocumentsOfCommonSizesWhileNoneIsOpen) {
    Step([] {
        EXPECT_TRUE(Page().IsShown());
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_NEW_LAST));
        Press(L"A4 350dpi");
    });
    Step([] {
        EXPECT_FALSE(Page().IsShown());
        EXPECT_EQ(Canvas().GetSize(), (CSize{2894, 4093}));
        EXPECT_TRUE(Canvas().GetActiveLayer());
    });
    CloseFrame();
    Step([] {
        EXPECT_TRUE(Page().IsShown());
        Press(L"フルHD");
    });
    CloseFrame();
    Step([] { Press(L"前回と同じ\n1920 × 1080"); });
    Step([] { EXPECT_EQ(Canvas().GetSize(), (CSize{1920, 1080})); });
    Play();
}

TEST_F(StartPageDesktop, ShowsRecentDocumentsWithPictures) {
    const auto spCanvas = CreateCanvas({96, 48});
    SaveDocument(*spCanvas, L"/home/線画.vlm", m_outside.m_files);
    Step([] { g_pMainFrame->QueueFile(L"/home/線画.vlm"); });
    Step([] { EXPECT_FALSE(Page().IsShown()); });
    CloseFrame();
    const auto expectRow = [] {
        EXPECT_EQ(Rows(0), L"線画.vlm /home|");
        if (Rows(0).empty()) return;
        const TTreeRow& row = Tree(0).vTree[0];
        ASSERT_TRUE(row.spPicture);
        EXPECT_EQ(row.spPicture->sz, (CSize{96, 48}));
    };
    Step(expectRow);
    Play();
    Step([=] {
        expectRow();
        Click(Tree(0).nId, 0);
    });
    Step([] { EXPECT_EQ(Canvas().GetPath(), L"/home/線画.vlm"); });
    CloseFrame();
    Step([&] {
        m_outside.m_files.m_mapFiles.erase(L"/home/線画.vlm");
        Click(Tree(0).nId, 0);
    });
    m_outside.AddStep([](CPlayer&) { EXPECT_TRUE(Tree(0).vTree.empty()) << "it is not there any more"; },
                      EStepKind::Expects);
    Play();
    EXPECT_EQ(m_outside.m_vShown.size(), 1u);
}

TEST_F(StartPageDesktop, OpensWorkThatWasNotSaved) {
    CLeftSnapshots snapshots(m_outside.m_files);
    m_outside.m_pSnapshots = &snapshots;
    Step([&] {
        EXPECT_EQ(Rows(1), L"名称未設定 10:00|下書き 12:34|");
        EXPECT_EQ(snapshots.m_nReserved, 0) << "another program may take it meanwhile";
        Click(Tree(1).nId, 0);
    });
    m_outside.AddStep(
        [](CPlayer&) {
            EXPECT_EQ(Rows(1), L"下書き 12:34|") << "the damaged one is set aside";
            Click(Tree(1).nId, 0);
        },
        EStepKind::Expects);
    Step([&] {
        EXPECT_EQ(Canvas().GetSize(), (CSize{30, 20}));
        EXPECT_TRUE(Canvas().GetHistory().IsModified());
        EXPECT_EQ(snapshots.m_nReserved, 0);
    });
    m_outside.AddStep([](CPlayer& player) {
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::No});
        SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::Close});
    });
    Step([] { EXPECT_FALSE(Tree(1).bVisible); });
    Play();
}

TEST(RecentPicturesDesktop, ADocumentThatWasNotShownIsComposed) {
    CMemoryFiles files;
    const auto spCanvas = CreateCanvas({192, 48});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spLayer->GetRaster()->GetWritableBlock({96, 0})->Fill(MakeColor(255, 0, 0), 255);
    SaveDocument(*spCanvas, L"/a.vlm", files);
    CRecentPictures(files, L"/pictures").Keep(*spCanvas);
    const auto spPicture = CRecentPictures(files, L"/pictures").Find(L"/a.vlm");
    ASSERT_TRUE(spPicture && spPicture->sz == (CSize{192, 48}));
    EXPECT_EQ(std::vector<uint8_t>(&spPicture->vPixels[95 * 4], &spPicture->vPixels[97 * 4]),
              (std::vector<uint8_t>{255, 255, 255, 255, 0, 0, 255, 255}));
}

TEST(RecentPicturesDesktop, ADamagedFileKeepsThePicturesBeforeTheDamage) {
    const auto spPicture = boost::make_shared<TPicture>(TPicture{{2, 1}, {1, 2, 3, 255, '\n', '\t', 6, 255}});
    const std::string strBytes = FormatRecentPictures({{L"/あ\u00a0b", spPicture}, {L"/c", spPicture}});
    for (size_t nLength = 0; nLength <= strBytes.size(); ++nLength) {
        const auto deq = ParseRecentPictures(std::string_view(strBytes).substr(0, nLength));
        ASSERT_EQ(deq.size(), nLength == strBytes.size() ? 2u : nLength >= strBytes.find("/c") ? 1u : 0u);
        for (const TRecentPicture& recent : deq) EXPECT_EQ(recent.spPicture->vPixels, spPicture->vPixels);
        EXPECT_TRUE(deq.empty() || deq[0].strPath == L"/あ\u00a0b");
    }
    for (const char* psz : {"a\t0\t1\n", "a\t1025\t1\n", "a\t-1\t-1\n", "a\t2\n12345678"})
        EXPECT_TRUE(ParseRecentPictures(psz + std::string(9, 'x')).empty()) << psz;
}
