#include "core/IniConfig/IniText.h"

namespace {

std::string Set(std::string strFile, std::string_view strSection, std::string_view strKey,
                std::string_view strValue) {
    SetIniValue(strFile, strSection, strKey, strValue);
    return strFile;
}

std::string Find(std::string_view strFile, std::string_view strSection, std::string_view strKey) {
    return FindIniValue(strFile, strSection, strKey).value_or("(none)");
}

} // namespace

TEST(IniText, ReadsWhatPeopleWriteByHand) {
    const std::string strFile =
        "\xEF\xBB\xBF; settings\r\nstray=0\r\n  [ Global ] ; switches\r\n\tFastScroll \t=  1 \r\n"
        ";MaxHistory=99\r\nmaxHISTORY=25\r\nMaxHistory=50\r\nName=\" a = 'b' \"\r\nHalf=\"a'\r\n"
        "Empty=\r\nno equals sign\r\n[unclosed=1\r\n[Windows\\Main]\nLeft=-5\rTop=6\n"
        "[GLOBAL]\nFastScroll=7\nOther=8\nLast=9";
    const std::array<const char*, 3> VALUES[] = {
        {"Global", "FastScroll", "1"}, {"global", "MaxHistory", "25"}, {"Global", "Name", " a = 'b' "},
        {"Global", "Half", "\"a'"},    {"Global", "Empty", ""},        {"windows\\main", "LEFT", "-5"},
        {"Windows\\Main", "Top", "6"}, {"Windows", "Left", "(none)"}};
    for (const auto& [pszSection, pszKey, pszValue] : VALUES)
        EXPECT_EQ(Find(strFile, pszSection, pszKey), pszValue) << pszKey;
    for (const char* pszKey :
         {"Other", "Last", ";MaxHistory", "stray", "no equals sign", "[unclosed", "Left"})
        EXPECT_EQ(Find(strFile, "Global", pszKey), "(none)") << pszKey;
}

TEST(IniText, MovesNothingButTheValue) {
    const std::string strHead = "\xEF\xBB\xBF; \xFF\xFE\r\n[A]\r\n key  =  ";
    const std::string strMiddle = "  \r\nunknown line\r\n\r\n[B]\nKEY=";
    const std::string strTail = "\n[a]\nkey=3";
    std::string strFile = strHead + "1" + strMiddle + "2" + strTail;
    EXPECT_EQ(Set(strFile, "a", "Key", "10"), strHead + "10" + strMiddle + "2" + strTail);
    EXPECT_EQ(Set(strFile, "B", "key", ""), strHead + "1" + strMiddle + strTail);
    EXPECT_FALSE(SetIniValue(strFile, "A", "KEY", "1")) << "it is there already";
    for (const char* pszKey : {"", " ", "a=b", "a\nb", ";a", "[a"})
        EXPECT_FALSE(SetIniValue(strFile, "A", pszKey, "1")) << "no file can hold " << pszKey;
    EXPECT_FALSE(SetIniValue(strFile, "A]\n[B", "k", "1"));
    EXPECT_EQ(strFile, strHead + "1" + strMiddle + "2" + strTail);
}

TEST(IniText, NewKeysAndSectionsFindTheirPlace) {
    const std::array<const char*, 3> FILES[] = {
        {"", "A", "[A]\nk=2\n"},
        {"\xEF\xBB\xBF", "A", "\xEF\xBB\xBF[A]\nk=2\n"},
        {"[A]\r\na=1\r\n; end\r\n \r\n\r\n[B]\r\n", "A", "[A]\r\na=1\r\n; end\r\nk=2\r\n \r\n\r\n[B]\r\n"},
        {"[A]", "A", "[A]\nk=2\n"},
        {"[A]\nk=\n", "A", "[A]\nk=2\n"},
        {"x=1\n[A]\nb=1", "A", "x=1\n[A]\nb=1\nk=2\n"},
        {"[A]\na=1", "B", "[A]\na=1\n\n[B]\nk=2\n"},
        {"[A]\r\na=1\r\n\r\n", "B", "[A]\r\na=1\r\n\r\n[B]\r\nk=2\r\n"},
        {"[A]\n[B]\n[A]\nk=1\n", "A", "[A]\nk=2\n[B]\n[A]\nk=1\n"}};
    for (const auto& [pszBefore, pszSection, pszAfter] : FILES)
        EXPECT_EQ(Set(pszBefore, pszSection, "k", "2"), pszAfter);
}

TEST(IniText, ValuesComeBack) {
    for (const std::string strValue :
         {" a", "a\t", "\"", "'", "\"a\"", "'a", "a\"", "a;b", "=", "[x]", "", "\xE7\xAD\x86"})
        EXPECT_EQ(Find(Set("[S]\nother=1\n", "S", "k", strValue), "S", "k"), strValue) << strValue;
    EXPECT_EQ(Find(Set("", "S", "k", "a\r\nb\n"), "S", "k"), "a  b ");
    const std::string strLong(5000, 'x');
    EXPECT_EQ(Find(Set("", "S", "k", strLong), "S", "k"), strLong);
}

TEST(IniText, RemovesOneLine) {
    std::string strFile = "[A]\r\na=1\r\nb=2\r\n[B]\r\na=3";
    EXPECT_FALSE(RemoveIniKey(strFile, "A", "c"));
    EXPECT_TRUE(RemoveIniKey(strFile, "A", "A") && RemoveIniKey(strFile, "B", "a"));
    EXPECT_EQ(strFile, "[A]\r\nb=2\r\n[B]\r\n");
}
