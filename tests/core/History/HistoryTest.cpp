#include "core/History/History.h"
#include "core/IniConfig/GlobalSwitches.h"

namespace {

constexpr size_t MEGABYTE = 1 << 20;

class CSized : public CHistory {
public:
    CSized(std::wstring strName, size_t nMegabytes)
        : CHistory(std::move(strName)), m_nMegabytes(nMegabytes) {}
    void Undo() override { m_bDone = false; }
    void Redo() override { m_bDone = true; }

protected:
    size_t CountBytes() const override { return m_bDone ? m_nMegabytes * MEGABYTE : 0; }

private:
    size_t m_nMegabytes;
    bool m_bDone = true;
};

class HistoryBudget : public testing::Test {
protected:
    HistoryBudget() { m_history.SetLimits(m_switches); }

    void Do(const wchar_t* pszName, size_t nMegabytes) {
        m_history.Register(boost::make_shared<CSized>(pszName, nMegabytes));
    }
    // The labels of the list from the oldest on, its first line in front.
    std::wstring Labels() const {
        std::wstring str = m_history.GetInitialName();
        for (auto it = m_history.GetUndoList().rbegin(); it != m_history.GetUndoList().rend(); ++it)
            str += L" " + (*it)->GetName();
        return str;
    }

    const TGlobalSwitches m_switches{.m_nHistoryMegabytes = 4};
    CHistoryStream m_history;
};

} // namespace

TEST_F(HistoryBudget, TheOldestGoAndTheNewestStays) {
    for (const wchar_t* pszName : {L"a", L"b", L"c"}) Do(pszName, 1);
    EXPECT_EQ(Labels(), L"<< 初期状態 >> a b c");
    Do(L"d", 2); // just as much as there may be
    EXPECT_EQ(Labels(), L"a b c d");
    Do(L"e", 9);
    EXPECT_EQ(Labels(), L"d e");
    Do(L"f", 0);
    EXPECT_EQ(Labels(), L"e f");
}

TEST_F(HistoryBudget, TheSavedStateIsKnownUntilItIsOutOfReach) {
    Do(L"a", 2);
    m_history.SetModified(false);
    EXPECT_TRUE(m_history.IsSavedState(m_history.GetUndoList().front()));
    Do(L"b", 2);
    Do(L"c", 2); // a goes, and the state behind it is the oldest
    EXPECT_TRUE(m_history.IsSavedState({}));
    Do(L"d", 2);
    EXPECT_FALSE(m_history.IsSavedState({}));
}
