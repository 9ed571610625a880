#include "session/SessionDialogs.h"

#include <gtest/gtest.h>

namespace {

/// Takes only the width "7".
class CPicky : public CDialogModel {
public:
    CPicky() {
        m_vFields.resize(2);
        m_vFields[0].strName = "width";
        m_vFields[1].strName = "color";
        m_vFields[1].kind = TDialogField::EKind::Check;
    }
    const char* GetName() const override { return "CPicky"; }
    std::wstring GetTitle() const override { return L"picky"; }
    std::wstring GetExtraButton() const override { return L"more"; }
    void OnExtra() override { ++m_nExtra; }
    bool OnOk(IWindow*) override { return m_vFields[0].strText == L"7"; }

    int m_nExtra = 0;
};

class SessionDialogs : public testing::Test {
protected:
    void Answer(TAnswer answer, int nLine = 1) {
        answer.nLine = nLine;
        m_dialogs.Push(answer);
    }
    void AnswerBox(EBoxAnswer box) { Answer({.kind = TAnswer::EKind::Box, .box = box}); }
    EBoxAnswer Ask(EBoxKind kind = EBoxKind::YesNoCancelWarning) {
        return m_dialogs.Show(nullptr, L"?", L"t", kind);
    }
    TAnswer ForPicky(const wchar_t* pszWidth) const {
        return {.kind = TAnswer::EKind::Dialog,
                .strDialog = "CPicky",
                .mapFields = {{"width", std::wstring(pszWidth)}}};
    }

    CSessionLog m_log{"s"};
    CSessionDialogs m_dialogs{m_log};
    CPicky m_picky;
};

TEST_F(SessionDialogs, AnswersComeInTheirOrderWhateverOpens) {
    AnswerBox(EBoxAnswer::No);
    Answer({.kind = TAnswer::EKind::File, .strPath = L"a/b.c/page"});
    TAnswer picky = ForPicky(L"7");
    picky.mapFields["color"] = true;
    picky.bExtra = true;
    Answer(picky);
    AnswerBox(EBoxAnswer::Ok);
    Answer({});
    EXPECT_EQ(Ask(), EBoxAnswer::No);
    EXPECT_EQ(m_dialogs.Ask(nullptr, {true, L"", L"vlm", {}}), L"a/b.c/page.vlm");
    EXPECT_TRUE(m_dialogs.Run(nullptr, m_picky));
    EXPECT_TRUE(m_picky.m_vFields[1].bChecked);
    EXPECT_EQ(m_picky.m_nExtra, 1);
    EXPECT_EQ(Ask(EBoxKind::Plain), EBoxAnswer::Ok);
    EXPECT_EQ(Ask(), EBoxAnswer::Cancel);
    EXPECT_EQ(m_log.GetFailure(), "");
    EXPECT_EQ(m_log.GetShown().size(), 5u);
    EXPECT_EQ(m_log.GetShown()[2].strTitle, L"CPicky");
}

TEST_F(SessionDialogs, WhatOpensUnansweredIsCancelledAndTold) {
    m_log.Enter(4);
    EXPECT_EQ(Ask(), EBoxAnswer::Cancel);
    EXPECT_EQ(m_log.GetFailure(), "s:4: the box \"?\" opened, but no answer was queued");
    // From then on the session unwinds.
    EXPECT_EQ(Ask(), EBoxAnswer::No);
    EXPECT_EQ(m_dialogs.Ask(nullptr, {}), L"");
    EXPECT_FALSE(m_dialogs.Run(nullptr, m_picky));
    EXPECT_EQ(m_log.GetFailure(), "s:4: the box \"?\" opened, but no answer was queued");
}

TEST_F(SessionDialogs, AnAnswerOfSomethingElseIsAFailure) {
    const auto failureOf = [](const TAnswer& answer, auto open) {
        CSessionLog log("s");
        CSessionDialogs dialogs(log);
        dialogs.Push(answer);
        open(dialogs);
        EXPECT_EQ(dialogs.GetCount(), 0u);
        return log.GetFailure();
    };
    const auto runPicky = [](CSessionDialogs& dialogs) {
        CPicky picky;
        EXPECT_FALSE(dialogs.Run(nullptr, picky));
    };
    const auto box = [](EBoxKind kind) {
        return [kind](CSessionDialogs& dialogs) { dialogs.Show(nullptr, L"?", L"", kind); };
    };
    const TAnswer yes{.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Yes, .nLine = 2};
    EXPECT_EQ(failureOf(yes, runPicky), "s:0: CPicky opened, but the answer of line 2 is for a box");
    EXPECT_EQ(failureOf(yes, box(EBoxKind::Plain)), "s:0: the box \"?\" does not offer the answer of line 2");
    EXPECT_EQ(failureOf({.kind = TAnswer::EKind::Dialog, .strDialog = "CNewDialog", .nLine = 3}, runPicky),
              "s:0: CPicky opened, but the answer of line 3 is for CNewDialog");
    TAnswer wrong = ForPicky(L"7");
    wrong.mapFields["color"] = std::wstring(L"1");
    EXPECT_EQ(failureOf(wrong, runPicky),
              "s:0: CPicky has no such field as \"color\" in the answer of line 0");
}

TEST_F(SessionDialogs, ARefusedDialogTakesItsNextAnswerOrIsCancelled) {
    Answer(ForPicky(L"6"), 1);
    Answer(ForPicky(L"7"), 2);
    EXPECT_TRUE(m_dialogs.Run(nullptr, m_picky));
    Answer(ForPicky(L"6"), 3);
    EXPECT_FALSE(m_dialogs.Run(nullptr, m_picky));
    EXPECT_EQ(m_log.GetFailure(),
              "s:0: CPicky refused the answer of line 3 and stays open, but no answer was queued");
}

TEST_F(SessionDialogs, AnErrorBoxIsTheCauseOfWhatFailsAfterIt) {
    m_log.Enter(1);
    EXPECT_EQ(Ask(EBoxKind::Error), EBoxAnswer::Ok);
    m_log.Enter(2);
    m_log.Fail("late");
    EXPECT_EQ(m_log.GetFailure(), "s:1: error box: ?");
}

} // namespace
