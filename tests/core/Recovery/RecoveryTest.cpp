#include "core/Recovery/Recovery.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "session/seam/SessionSnapshots.h"
#include "session/seam/VirtualClock.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

struct CLeavingSnapshots : CSessionSnapshots {
    void Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) override {
        ++m_nWrites;
        if (m_bFails) throw std::bad_alloc();
        CSessionSnapshots::Write(uKey, std::move(fnFill), note);
    }
    std::unique_ptr<IFileReader> Open(const std::wstring& strName) override {
        return std::unique_ptr<IFileReader>(m_files.Open(strName));
    }
    int m_nWrites = 0;
    bool m_bFails = false;
    CMemoryFiles m_files;
};

class Recovery : public testing::Test {
protected:
    void Change() { m_spCanvas->GetHistory().SetModified(true); }
    // Idle work every 100 ms; returns how many snapshots there are then.
    size_t Wait(uint32_t uMilliseconds, bool bWorking = false) {
        for (uint32_t u = 0; u < uMilliseconds; u += 100) {
            m_clock.Advance(100);
            if (bWorking) Change();
            m_recovery.Watch(m_spCanvas);
        }
        return m_store.GetKept().size();
    }

    CLeavingSnapshots m_store;
    CVirtualClock m_clock;
    TGlobalSwitches m_switches;
    CRecovery m_recovery{m_store, m_clock, m_switches};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({100, 100});
};

} // namespace

TEST_F(Recovery, AChangeIsKeptAfterAMinuteUntilItIsSaved) {
    EXPECT_EQ(Wait(200000), 0u);
    Change();
    EXPECT_EQ(Wait(60000), 0u);
    EXPECT_EQ(Wait(200), 1u);
    const auto countBytes = [&] { return m_store.GetKept().begin()->second.strBytes.size(); };
    const size_t nBytes = countBytes();
    m_spCanvas->GetRoot().AddLayer(CreateRasterLayer(m_spCanvas), -1);
    EXPECT_EQ((Wait(59000), countBytes()), nBytes) << "at most one a minute";
    EXPECT_GT((Wait(2000), countBytes()), nBytes);
    m_spCanvas->GetHistory().SetModified(false);
    EXPECT_EQ(Wait(100), 0u);
    Change();
    m_store.m_bFails = true;
    EXPECT_THROW(Wait(62000), std::bad_alloc);
    m_store.m_bFails = false;
    Change();
    EXPECT_EQ(Wait(300000), 0u) << "given up";
    m_recovery.Forget(*m_spCanvas);
    EXPECT_EQ(Wait(62000), 1u) << "modified again";
    m_recovery.Forget(*m_spCanvas);
    m_switches.m_nAutoSave = 0;
    Change();
    EXPECT_EQ(Wait(300000), 0u) << "turned off";
}

TEST_F(Recovery, WhatIsToBeKeptNowIsKeptNow) {
    m_switches.m_nAutoSave = 0;
    Change();
    EXPECT_TRUE(m_recovery.Keep(m_spCanvas));
    ASSERT_EQ(m_store.GetKept().size(), 1u);
    const auto bytes = [&] { return m_store.GetKept().begin()->second.strBytes; };
    const std::string strFirst = bytes();
    EXPECT_TRUE(m_recovery.Keep(m_spCanvas));
    EXPECT_EQ(m_store.m_nWrites, 1) << "it is there";
    m_spCanvas->GetRoot().AddLayer(CreateRasterLayer(m_spCanvas), -1);
    EXPECT_TRUE(m_recovery.Keep(m_spCanvas));
    EXPECT_TRUE(m_store.GetKept().size() == 1 && bytes().size() > strFirst.size())
        << "in place of the older one";
    m_recovery.Forget(*m_spCanvas);
    EXPECT_TRUE(m_store.GetKept().empty());
    EXPECT_TRUE(m_recovery.Keep(m_spCanvas) && m_store.GetKept().size() == 1);
}

TEST_F(Recovery, WhatAddsNoUndoStepIsKeptToo) {
    const auto spLayer = CreateRasterLayer(m_spCanvas);
    m_spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spLayer->SetOpacity(200, true);
    const auto save = [&] {
        m_spCanvas->GetHistory().SetModified(false);
        return Wait(100);
    };
    EXPECT_EQ((Wait(61000), save()), 0u);
    spLayer->SetOpacity(100, true);
    EXPECT_EQ(Wait(61000), 1u);
    EXPECT_EQ(save(), 0u);
    spLayer->SetVisible(false, true);
    EXPECT_EQ(Wait(61000), 1u);
}

TEST_F(Recovery, WorkIsNotInterruptedButNotWaitedForWithoutEnd) {
    const auto spHolder = m_spCanvas;
    const auto reuse = [&] { m_spCanvas.reset(spHolder.get(), [](CCanvasBuffer*) {}); };
    reuse();
    EXPECT_EQ(Wait(110000, true), 0u);
    EXPECT_EQ(Wait(1100), 1u) << "a pause";
    m_recovery.Forget(*m_spCanvas);
    EXPECT_EQ(Wait(119000, true), 0u);
    EXPECT_EQ(Wait(2000, true), 1u);
    reuse(); // an exception ended the document, and another one lives at its address: what it left stays
    Change();
    m_spCanvas->GetHistory().SetCancelHandler([] { return true; });
    EXPECT_EQ(Wait(300000), 1u) << "half an operation";
    m_spCanvas->GetHistory().SetCancelHandler({});
    EXPECT_EQ(Wait(100), 2u);
}

TEST_F(Recovery, WhatIsRestoredIsModifiedUnderItsNamesAndWrittenOnlyOnceChanged) {
    SaveDocument(*m_spCanvas, L"left", m_store.m_files);
    for (const bool bHasFile : {false, true}) {
        m_spCanvas = m_recovery.Restore({L"left", {L"/a.vlm", L"題", {}}, bHasFile});
        EXPECT_EQ(m_spCanvas->GetPath(), bHasFile ? L"/a.vlm" : L"");
        EXPECT_EQ(m_spCanvas->GetTitle(), L"題");
        EXPECT_TRUE(m_spCanvas->GetHistory().IsModified());
        EXPECT_EQ(Wait(62000), bHasFile);
        Change();
        EXPECT_EQ(Wait(62000), bHasFile + 1u);
    }
}
