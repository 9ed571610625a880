// Whole sessions in the desktop delivery, where documents are made, opened and saved.
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

namespace {

class ScriptedDesktop : public testing::Test {
protected:
    std::string Play(const std::string& strScript) { return m_session.Play(strScript, {}); }
    bool HasFile(const wchar_t* pszPath) const { return m_session.m_files.m_mapFiles.count(pszPath) != 0; }

    CScriptedSession m_session;
};

TEST_F(ScriptedDesktop, ANewDocumentIsAskedForByItsDialog) {
    EXPECT_EQ(Play(R"(
{"expect":{"frames":0,"enabled":{"57600":true,"57604":false}}}
{"answer":{"dialog":"CNewDialog","width":"12001"}}
{"answer":{"box":"ok"}}
{"answer":{"dialog":"CNewDialog","width":300,"height":20,"color":false}}
{"command":57600}
{"expect":{"box":"ピクセルサイズは 1～12000 に限定されています。"}}
{"expect":{"frames":1,"size":{"width":300,"height":20},"color":false,"modified":false,"path":""}}
{"answer":{"cancel":true}}
{"command":57600}
{"expect":{"frames":1}}
)"),
              "");
    EXPECT_EQ(Play("{\"answer\":{\"dialog\":\"CNewDialog\",\"width\":0}}\n{\"answer\":{\"box\":\"ok\"}}\n{"
                   "\"command\":57600}"),
              "s:3: CNewDialog refused the answer of line 1 and stays open, but no answer was queued");
}

TEST_F(ScriptedDesktop, SavedAndExportedDocumentsComeBack) {
    EXPECT_EQ(Play(R"(
{"answer":{"dialog":"CNewDialog","width":100,"height":97}}
{"command":57600}
{"layer":{"name":"線画","opacity":90}}
{"export":"page.png"}
{"expect":{"modified":true,"title":"名称未設定"}}
{"save":"page.vlm"}
{"expect":{"modified":false,"title":"page.vlm","path":"page.vlm"}}
{"close":"frame"}
{"expect":{"frames":0}}
{"open":"page.png"}
{"expect":{"size":{"width":100,"height":97},"title":"page.png","layers":[{"opacity":255}]}}
{"open":"page.vlm"}
{"expect":{"frames":2,"layers":[{"name":"線画","opacity":90}],"modified":false}}
{"open":"none.vlm"}
{"expect":{"frames":2,"box":"ファイルを開けませんでした。\nFile: 'none.vlm'"}}
)"),
              "");
    EXPECT_TRUE(HasFile(L"page.vlm") && HasFile(L"page.png"));
}

TEST_F(ScriptedDesktop, TheScriptAnswersThePromptsOnTheWayOut) {
    const std::string strMake = R"(
{"answer":{"dialog":"CNewDialog","width":10,"height":10}}
{"command":57600}
{"layer":{"opacity":90}}
)";
    EXPECT_EQ(Play(strMake), "");
    ASSERT_EQ(m_session.m_vShown.size(), 2u);
    EXPECT_FALSE(HasFile(L"kept.vlm"));
    EXPECT_EQ(Play(strMake + "{\"answer\":{\"box\":\"yes\"}}\n{\"answer\":{\"file\":\"kept\"}}"), "");
    EXPECT_TRUE(HasFile(L"kept.vlm"));
    m_session.m_files.m_bReadOnly = true;
    EXPECT_EQ(Play(strMake + "{\"save\":\"lost.vlm\"}\n{\"wait\":1}").substr(0, 16), "s:5: error box: ");
}

} // namespace
