#include "core/ImageDialogs/RescaleDialog.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/NotedBoxes.h"

namespace {

class RescaleDialog : public testing::Test {
protected:
    enum EField { WIDTH = 711, HEIGHT, WIDTH_PERCENT, HEIGHT_PERCENT, KEEP };

    void Type(EField field, const wchar_t* psz) {
        m_dialog.OnControlMessage({nullptr, EMessage::PanelChange, field, 0, psz});
    }
    std::wstring Shown() const {
        std::wstring str;
        for (const TPanelControl& control : m_dialog.GetControls())
            if (control.nId >= WIDTH && control.nId <= HEIGHT_PERCENT) str += control.strText + L"|";
        return str + m_dialog.GetControls().back().strText;
    }

    CNotedBoxes m_boxes;
    CRescaleDialog m_dialog{m_boxes, {800, 600}};
};

} // namespace

TEST_F(RescaleDialog, EveryFieldFollowsTheTypedOne) {
    EXPECT_EQ(Shown(), L"800|100|600|100|800 × 600 px");
    Type(WIDTH, L"１０００");
    EXPECT_EQ(Shown(), L"１０００|125|750|125|1000 × 750 px");
    Type(HEIGHT, L"1");
    EXPECT_EQ(Shown(), L"1|0.17|1|0.17|1 × 1 px") << "four thirds of a pixel";
    Type(HEIGHT, L"201");
    EXPECT_EQ(Shown(), L"268|33.5|201|33.5|268 × 201 px");
    Type(WIDTH, L"55 ％");
    EXPECT_EQ(Shown(), L"55 ％|55|330|55|440 × 330 px");
    Type(HEIGHT_PERCENT, L"33.33");
    EXPECT_EQ(Shown(), L"267|33.33|200|33.33|267 × 200 px");
    Type(WIDTH_PERCENT, L"0.01%");
    EXPECT_EQ(Shown(), L"1|0.01%|1|0.01|1 × 1 px");
    m_dialog.OnControlMessage({nullptr, EMessage::PanelChange, KEEP, 0});
    Type(HEIGHT, L"900");
    EXPECT_EQ(Shown(), L"1|0.13|900|150|1 × 900 px");
    Type(WIDTH_PERCENT, L"");
    EXPECT_EQ(Shown(), L"||900|150|－");
    Type(WIDTH, L"400");
    EXPECT_EQ(Shown(), L"400|50|900|150|400 × 900 px");
    m_dialog.OnControlMessage({nullptr, EMessage::PanelChange, KEEP, 1});
    EXPECT_EQ(Shown(), L"400|50|300|50|400 × 300 px");
    EXPECT_TRUE(m_dialog.OnOk(nullptr));
    EXPECT_EQ(m_dialog.GetSize(), (CSize{400, 300}));
}

TEST_F(RescaleDialog, RefusesWhatIsNoSizeOfACanvas) {
    const std::wstring strNumber = L"数字を入力してください。Vellumcraft",
                       strLimits = L"ピクセルサイズは 1～12000 に限定されています。Vellumcraft";
    for (const auto& [field, psz, strWanted] : {std::tuple(WIDTH, L"x", strNumber),
                                                {HEIGHT, L"10.5", strNumber},
                                                {HEIGHT_PERCENT, L"-", strNumber},
                                                {WIDTH, L"%", strNumber},
                                                {WIDTH, L"0", strLimits},
                                                {HEIGHT, L"-600", strLimits},
                                                {WIDTH_PERCENT, L"-50", strLimits},
                                                {WIDTH, L"12001", strLimits},
                                                {WIDTH, L"9999999999999%", strLimits},
                                                {WIDTH, L"12000", std::wstring()}}) {
        Type(field, psz);
        m_boxes.m_str.clear();
        EXPECT_EQ(m_dialog.OnOk(nullptr), strWanted.empty());
        EXPECT_EQ(m_boxes.m_str, strWanted) << ToUtf8(psz);
    }
    Type(HEIGHT, L"9001");
    EXPECT_FALSE(m_dialog.OnOk(nullptr)) << "the width would be 12001";
}

TEST(RescaleCommand, AScriptGivesASizeInPercentAndUndoComesBack) {
    CScriptedSession session;
    const auto rescale = [](const TWords& more) {
        return ScriptLine("command", "image-resolution") +
               ScriptLine("reply", {{"dialog", "CRescaleDialog"}}, more);
    };
    EXPECT_EQ(session.Play(rescale({{"width", "300%"}, {"mode", 0}}) + LEAVE_UNSAVED), "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{600, 450}));
    EXPECT_TRUE(session.InkAt({5, 8}) == 255 && session.InkAt({6, 8}) == 0);
    EXPECT_EQ(session.Play(rescale({{"width", 12}, {"height", 9}, {"keep", false}}) +
                           ScriptLine("command", "edit-undo") + rescale({{"width", 200}}) + LEAVE_UNSAVED),
              "");
    EXPECT_EQ(session.m_spCanvas->GetSize(), (CSize{200, 150}));
    EXPECT_EQ(session.InkAt({1, 2}), 255);
    EXPECT_TRUE(session.m_spCanvas->GetHistory().CanRedo()) << "the same size, no step";
}
