#include "tests/session/ScriptedSession.h"
#include "tests/support/LiveDialog.h"

namespace {

class DialogControls : public testing::Test, protected CScriptedSession {
protected:
    std::string Run(const std::string& strReplies) {
        TScript script = ParseScript(strReplies, "s");
        const auto open = [this](CPlayer&) {
            m_bOk = g_AppModule.GetPlatform().dialogs.Run(nullptr, m_dialog);
        };
        script.vSteps.insert(script.vSteps.begin(), {0, open});
        CSessionPlatform session(m_parts, script);
        m_strRecord.clear();
        CRecorder recorder(session.GetPlatform(), [&](std::string_view strLine) {
            if (strLine.starts_with("{\"reply\"")) m_strRecord += strLine;
            return true;
        });
        PlayOn(recorder.GetPlatform(), false);
        return session.GetFailure();
    }

    CLiveDialog m_dialog;
    bool m_bOk = false;
};

TEST_F(DialogControls, AScriptActsOnThemAndARecordSaysTheSame) {
    const std::string strReplies = R"({"reply":{"control":2,"dialog":"CLiveDialog","value":41}}
{"reply":{"control":3,"dialog":"CLiveDialog","text":"2.2","value":0}}
{"reply":{"dialog":"CLiveDialog","height":20,"message":"ldown","view":4,"width":50,"x":5,"y":6}}
)";
    EXPECT_EQ(Run(strReplies + R"({"reply":{"dialog":"CLiveDialog","channel":1}})"), "");
    EXPECT_TRUE(m_bOk);
    EXPECT_EQ(m_dialog.m_strHeard, " 2=41 3=2.2 4down5,6 1=1 ok");
    EXPECT_EQ(m_dialog.m_szView, (CSize{50, 20})) << "painted in that size first";
    EXPECT_EQ(m_dialog.m_vControls[5].strText, L"41");
    EXPECT_EQ(m_strRecord, strReplies + R"({"reply":{"control":1,"dialog":"CLiveDialog","value":1}}
{"reply":{"dialog":"CLiveDialog"}}
)");
    const std::string strHeard = std::exchange(m_dialog.m_strHeard, {});
    EXPECT_EQ(Run(std::string(m_strRecord)), "");
    EXPECT_EQ(m_dialog.m_strHeard, strHeard);
}

TEST_F(DialogControls, AControlThatFailsIsReportedAndTheDialogStays) {
    EXPECT_EQ(Run(R"~({"reply":{"dialog":"CLiveDialog","control":3,"text":"x","value":0}}
{"reply":{"dialog":"CLiveDialog","low":50}}
{"expect":{"box":"予期せぬエラーが発生しました。\nexception: exception('no number')"}}
)~"),
              "");
    EXPECT_TRUE(m_bOk);
    EXPECT_EQ(m_dialog.m_strHeard, " 3=x 2=50 ok");
    EXPECT_EQ(m_dialog.m_vControls[2].strText, L"1.000");
}

} // namespace
