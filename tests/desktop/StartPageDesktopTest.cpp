#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/RecentPictures.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "session/seam/SessionPanelWindow.h"
#include "session/seam/SessionSnapshots.h"
#include "tests/support/TestPlatform.h"

namespace {

/// One snapshot of an ended session, of a document of 30 by 20 pixels.
class CLeftSnapshots : public CSessionSnapshots {
public:
    explicit CLeftSnapshots(CMemoryFiles& files) : m_files(files) {
        SaveDocument(*CreateCanvas({30, 20}), L"/left.vlm", files);
    }
    std::vector<TLeftSnapshot> FindLeft() override {
        ++m_nReserved;
        return m_bLeft ? std::vector<TLeftSnapshot>{{L"1", {L"", L"下書き", L"12:34"}}}
                       : std::vector<TLeftSnapshot>();
    }
    std::unique_ptr<IFileReader> Open(const std::wstring&) override {
        return std::move(m_files.Open(L"/left.vlm"));
    }
    void Adopt(const std::wstring&, uint32_t) override { m_bLeft = false; }
    void ReleaseLeft() override { m_nReserved = 0; }

    CMemoryFiles& m_files;
    bool m_bLeft = true;
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
    static void Click(int nId, int nRow) { SendMessage({&Page(), EMessage::PanelChange, nId, nRow}); }
    static void Press(const std::wstring& strText) {
        for (const TPanelControl& control : Page().GetControls())
            if (control.strText.starts_with(strText)) return Click(control.nId, 0);
        throw std::runtime_error("no such button");
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
    const auto spLayer = CreateRasterLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spLayer->GetRaster()->GetWritableBlock({0, 0})->Fill(MakeColor(255, 0, 0), 255);
    SaveDocument(*spCanvas, L"/home/線画.vlm", m_outside.m_files);
    Step([] { g_pMainFrame->QueueFile(L"/home/線画.vlm"); });
    Step([] { EXPECT_FALSE(Page().IsShown()); });
    CloseFrame();
    const auto expectRow = [] {
        ASSERT_EQ(Tree(0).vTree.size(), 1u);
        const TTreeRow& row = Tree(0).vTree[0];
        EXPECT_EQ(row.strText + L" " + row.strNote, L"線画.vlm /home");
        ASSERT_TRUE(row.spPicture);
        EXPECT_EQ(row.spPicture->sz, (CSize{96, 48}));
        const auto& v = row.spPicture->vPixels;
        EXPECT_TRUE(v[0] == 0 && v[1] == 0 && v[2] == 255) << "the document was not shown, but is composed";
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
        ASSERT_EQ(Tree(1).vTree.size(), 1u);
        EXPECT_EQ(Tree(1).vTree[0].strText + L" " + Tree(1).vTree[0].strNote, L"下書き 12:34");
        EXPECT_EQ(snapshots.m_nReserved, 0) << "another program may take it meanwhile";
        Click(Tree(1).nId, 0);
    });
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
