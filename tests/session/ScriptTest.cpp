#include "session/Script.h"

#include "tests/support/MemoryFiles.h"

#include <gtest/gtest.h>

namespace {

std::string ErrorOf(const std::string& strScript) {
    try {
        ParseScript(strScript, "s");
        return "none";
    } catch (const script_error& e) {
        return e.what();
    }
}

TEST(Script, SkipsWhatIsNoStepAndCountsItsLines) {
    const TScript script =
        ParseScript("\xEF\xBB\xBF# begin\r\n\r\n{\"wait\":1}\r\n  \t\n  # more\n{\"wait\":2}", "s");
    ASSERT_EQ(script.vSteps.size(), 2u);
    EXPECT_EQ(script.vSteps[0].nLine, 3);
    EXPECT_EQ(script.vSteps[1].nLine, 6);
    EXPECT_TRUE(ParseScript("", "s").vSteps.empty());
}

TEST(Script, RefusesALineWithItsNumberAndReason) {
    const struct {
        const char* pszLine;
        const char* pszReason;
    } aCases[] = {
        {"{\"wait\":", "no JSON object: byte 9"},
        {"{\"wait\":1} {}", "no JSON object: byte 12"},
        {"[1]", "a line is an object with one verb"},
        {"{}", "a line is an object with one verb"},
        {"{\"wait\":1,\"save\":\"a.vlm\"}", "a line is an object with one verb"},
        {"{\"pen\":{\"x\":1}}", "unknown verb \"pen\""},
        {"{\"wait\":-1}", "wait: must be a whole number from 0 to 3600000"},
        {"{\"wait\":1.5}", "wait: must be a whole number from 0 to 3600000"},
        {"{\"wait\":18446744073709551615}", "wait: must be a whole number from 0 to 3600000"},
        {"{\"view\":{\"width\":5}}", "view: \"height\" is missing"},
        {"{\"view\":{\"width\":5,\"height\":5,\"depth\":5}}", "view: unknown key \"depth\""},
        {"{\"view\":7}", "view: must be an object"},
        {"{\"close\":\"all\"}", "close: must be \"frame\" or \"main\""},
        {"{\"key\":{\"down\":17,\"up\":17}}", "key: must have either \"down\" or \"up\""},
        {"{\"answer\":{\"box\":\"maybe\"}}", "answer.box: must be \"ok\", \"yes\", \"no\" or \"cancel\""},
        {"{\"answer\":{\"file\":\"a\",\"cancel\":true}}",
         "answer: must have one of \"dialog\", \"file\", \"box\", \"cancel\""},
        {"{\"answer\":{\"dialog\":\"CNewDialog\",\"width\":[]}}",
         "answer.width: must be a text or a whole number"},
        {"{\"set\":{\"section\":\"\",\"key\":\"k\",\"value\":1}}", "set.section: must not be empty"},
        {"{\"save\":\"a.png\"}", "save: must be the name of a project file, .vlm"},
        {"{\"export\":\"a.VLM\"}", "export: must be the name of a picture"},
        {"{\"screenshot\":\"a.jpg\"}", "screenshot: must be the name of a .png file"},
        {"{\"layer\":{\"select\":[0,\"a\"]}}", "layer.select: must be a whole number from 0 to 65535"},
        {"{\"layer\":{\"colour\":1}}", "layer: unknown key \"colour\""},
        {"{\"expect\":{}}", "expect: must be an object of expectations"},
        {"{\"expect\":{\"sise\":1}}", "expect: unknown key \"sise\""},
        {"{\"expect\":{\"view\":{\"zoom\":\"1\"}}}",
         "expect.view.zoom: must be a whole number from -2147483648 to 2147483647"},
        {"{\"expect\":{\"layers\":[{\"children\":[{\"nam\":1}]}]}}",
         "expect.layers[0].children[0]: unknown key \"nam\""},
        {"{\"expect\":{\"enabled\":{\"x1\":true}}}", "expect.enabled: \"x1\" is no command id"},
        {"{\"expect\":{\"pixel\":{\"x\":0,\"y\":0,\"rgba\":[1,2,3]}}}",
         "expect.pixel.rgba: must be a list of four numbers"},
    };
    for (const auto& test : aCases)
        EXPECT_EQ(ErrorOf("{\"wait\":0}\n\n" + std::string(test.pszLine) + "\n"),
                  std::string("s:3: ") + test.pszReason);
    EXPECT_EQ(ErrorOf("{\"open\":\"\xFF\"}").substr(0, 21), "s:1: no JSON object: ");
}

TEST(Script, NamesAFileThatCannotBeRead) {
    CMemoryFiles files;
    files.m_mapFiles[L"a/b.jsonl"] = "\n{\"now\":1}";
    const auto errorOf = [&](const std::wstring& strPath) -> std::string {
        try {
            ReadScript(strPath, files);
            return "none";
        } catch (const script_error& e) {
            return e.what();
        }
    };
    EXPECT_EQ(errorOf(L"c.jsonl"), "c.jsonl: the script cannot be read");
    EXPECT_EQ(errorOf(L"a/b.jsonl"), "a/b.jsonl:2: unknown verb \"now\"");
}

} // namespace
