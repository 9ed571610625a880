#include "session/scripts/Script.h"

#include "tests/support/MemoryFiles.h"

namespace {

TEST(Script, RefusesALineWithItsNumberAndReason) {
    CMemoryFiles files;
    const auto errorOf = [&](const wchar_t* pszPath) -> std::string {
        try {
            ReadScript(pszPath, files);
            return "none";
        } catch (const script_error& e) {
            return e.what();
        }
    };
    const std::pair<const char*, const char*> aCases[] = {
        {R"({"wait":)", "no JSON object: byte 9"},
        {R"([1])", "a line is an object with one verb"},
        {R"({"quill":{"x":1}})", R"(unknown verb "quill")"},
        {R"({"wait":1.5})", "wait: must be a whole number from 0 to 3600000"},
        {R"({"view":7})", "view: must be an object"},
        {R"({"key":{"down":17,"up":17}})", R"(key: must have either "down" or "up")"},
        {R"({"keys":17})", "keys: must be a list of virtual key codes"},
        {R"({"packet":{"message":"leave","x":1,"y":1,"pressure":0}})",
         R"(packet.message: must be one of "move", "ldown", "lup", "rdown", "rup", "mdown", "mup")"},
        {R"({"panel":{"id":12815,"control":1,"value":1,"from":0}})", R"(panel: unknown key "from")"},
        {R"({"panel":{"id":12815,"view":1,"message":"ldown","x":1,"y":1}})", R"(panel: "width" is missing)"},
        {R"({"reply":{"box":"maybe"}})", R"(reply.box: must be "ok", "yes", "no" or "cancel")"},
        {R"({"answer":{"file":"a","cancel":true}})",
         R"(answer: must have one of "dialog", "file", "box", "cancel")"},
        {R"({"answer":{"dialog":"C","width":[]}})", "answer.width: must be a text or a whole number"},
        {R"({"set":{"section":"","key":"k","value":1}})", "set.section: must not be empty"},
        {R"({"save":"a.png"})", "save: must be the name of a project file, .vlm"},
        {R"({"export":"a.VLM"})", "export: must be the name of a picture"},
        {R"({"screenshot":"a.jpg"})", "screenshot: must be the name of a .png file"},
        {R"({"expect":{}})", "expect: must be an object of expectations"},
        {R"({"expect":{"layers":[{"children":[{"nam":1}]}]}})",
         R"(expect.layers[0].children[0]: unknown key "nam")"},
        {R"({"expect":{"enabled":{"x1":true}}})", R"(expect.enabled: "x1" names no command)"},
        {R"({"command":"zoom"})", R"(command: "zoom" names no command)"},
        {R"({"expect":{"pixel":{"x":0,"y":0,"rgba":[1]}}})",
         "expect.pixel.rgba: must be a list of four numbers"},
    };
    for (const auto& [pszLine, pszReason] : aCases) {
        files.m_mapFiles[L"a/s"] = "{\"wait\":0}\n\n" + std::string(pszLine) + "\n";
        EXPECT_EQ(errorOf(L"a/s"), std::string("a/s:3: ") + pszReason);
    }
    EXPECT_EQ(errorOf(L"c"), "c: the script cannot be read");
}

} // namespace
