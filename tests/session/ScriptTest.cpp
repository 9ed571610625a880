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
        {R"({"quill":{"x":1}})", R"(unknown verb "quill")"},
        {R"({"key":{"down":17,"up":17}})", R"(key: must have either "down" or "up")"},
        {R"({"packet":{"message":"leave","x":1,"y":1,"pressure":0}})",
         R"(packet.message: must be one of "move", "ldown", "lup", "rdown", "rup")"},
        {R"({"panel":{"id":12815,"control":1,"value":1,"from":0}})", R"(panel: unknown key "from")"},
        {R"({"panel":{"id":12815,"view":1,"message":"ldown","x":1,"y":1}})", R"(panel: "width" is missing)"},
        {R"({"answer":{"file":"a","cancel":true}})",
         R"(answer: must have one of "dialog", "file", "box", "cancel")"},
        {R"({"save":"a.png"})", "save: must be the name of a project file, .vlm"},
        {R"({"expect":{}})", "expect: must be an object of expectations"},
        {R"({"expect":{"layers":[{"children":[{"nam":1}]}]}})",
         R"(expect.layers[0].children[0]: unknown key "nam")"},
        {R"({"expect":{"enabled":{"x1":true}}})", R"(expect.enabled: "x1" names no command)"},
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
