#include "core/IniConfig/IniText.h"

#include <gtest/gtest.h>

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
    const std::string strFile = "\xEF\xBB\xBF; settings\r\n"
                                "stray=0\r\n"
                                "  [ Global ] ; switches\r\n"
                                "\tFastScroll \t=  1 \r\n"
                                ";MaxHistory=99\r\n"
                                "maxHISTORY=25\r\n"
                                "MaxHistory=50\r\n"
                                "Name=\" a = 'b' \"\r\n"
                                "Half=\"a'\r\n"
                                "Empty=\r\n"
                                "no equals sign\r\n"
                                "[unclosed=1\r\n"
                                "[Windows\\Main]\n"
                                "Left=-5\r"
                                "Top=6\n"
                                "[GLOBAL]\n"
                                "FastScroll=7\nOther=8\nLast=9";
    EXPECT_EQ(Find(strFile, "Global", "FastScroll"), "1");
    EXPECT_EQ(Find(strFile, "global", "MaxHistory"), "25");
    EXPECT_EQ(Find(strFile, "Global", "Name"), " a = 'b' ");
    EXPECT_EQ(Find(strFile, "Global", "Half"), "\"a'");
    EXPECT_EQ(Find(strFile, "Global", "Empty"), "");
    EXPECT_EQ(Find(strFile, "windows\\main", "LEFT"), "-5");
    EXPECT_EQ(Find(strFile, "Windows\\Main", "Top"), "6");
    for (const char* pszKey :
         {"Other", "Last", ";MaxHistory", "stray", "no equals sign", "[unclosed", "Left"})
        EXPECT_EQ(Find(strFile, "Global", pszKey), "(none)") << pszKey;
    EXPECT_EQ(Find(strFile, "Windows", "Left"), "(none)");
    EXPECT_EQ(Find("", "Global", "Left"), "(none)");
}

TEST(IniText, MovesNothingButTheValue) {
    const std::string strFile =
        "\xEF\xBB\xBF; \xFF\xFE\r\n[A]\r\n key  =  1  \r\nunknown line\r\n\r\n[B]\nKEY=2\n[a]\nkey=3";
    EXPECT_EQ(Set(strFile, "a", "Key", "10"),
              "\xEF\xBB\xBF; \xFF\xFE\r\n[A]\r\n key  =  10  \r\nunknown line\r\n\r\n[B]\nKEY=2\n[a]\nkey=3");
    EXPECT_EQ(Set(strFile, "B", "key", ""),
              "\xEF\xBB\xBF; \xFF\xFE\r\n[A]\r\n key  =  1  \r\nunknown line\r\n\r\n[B]\nKEY=\n[a]\nkey=3");
    EXPECT_EQ(Set("[A]\nk=\n", "A", "k", "v"), "[A]\nk=v\n");
    std::string strSame = strFile;
    EXPECT_FALSE(SetIniValue(strSame, "A", "KEY", "1"));
    EXPECT_EQ(strSame, strFile);
}

TEST(IniText, NewKeysAndSectionsFindTheirPlace) {
    EXPECT_EQ(Set("", "A", "k", "1"), "[A]\nk=1\n");
    EXPECT_EQ(Set("\xEF\xBB\xBF", "A", "k", "1"), "\xEF\xBB\xBF[A]\nk=1\n");
    EXPECT_EQ(Set("[A]\r\na=1\r\n; end\r\n \r\n\r\n[B]\r\n", "A", "k", "2"),
              "[A]\r\na=1\r\n; end\r\nk=2\r\n \r\n\r\n[B]\r\n");
    EXPECT_EQ(Set("[A]", "A", "k", "1"), "[A]\nk=1\n");
    EXPECT_EQ(Set("x=1\n[A]\nb=1", "A", "k", "1"), "x=1\n[A]\nb=1\nk=1\n");
    EXPECT_EQ(Set("[A]\na=1", "B", "k", "1"), "[A]\na=1\n\n[B]\nk=1\n");
    EXPECT_EQ(Set("[A]\r\na=1\r\n\r\n", "B", "k", "1"), "[A]\r\na=1\r\n\r\n[B]\r\nk=1\r\n");
    EXPECT_EQ(Set("[A]\n[B]\n[A]\nk=1\n", "A", "k", "2"), "[A]\nk=2\n[B]\n[A]\nk=1\n");
}

TEST(IniText, ValuesComeBack) {
    for (const std::string strValue :
         {" a", "a\t", "\"", "'", "\"a\"", "'a", "a\"", "a;b", "=", "[x]", "", "\xE7\xAD\x86"})
        EXPECT_EQ(Find(Set("[S]\nother=1\n", "S", "k", strValue), "S", "k"), strValue) << strValue;
    EXPECT_EQ(Find(Set("", "S", "k", "a\r\nb\n"), "S", "k"), "a  b ");
    const std::string strLong(5000, 'x');
    EXPECT_EQ(Find(Set("", "S", "k", strLong), "S", "k"), strLong);
}

TEST(IniText, NamesThatNoFileCanHoldChangeNothing) {
    std::string strFile = "[A]\n";
    for (const char* pszKey : {"", " ", "a=b", "a\nb", ";a", "[a"})
        EXPECT_FALSE(SetIniValue(strFile, "A", pszKey, "1")) << pszKey;
    EXPECT_FALSE(SetIniValue(strFile, "A]\n[B", "k", "1"));
    EXPECT_EQ(strFile, "[A]\n");
}

TEST(IniText, RemovesOneLine) {
    std::string strFile = "[A]\r\na=1\r\nb=2\r\n[B]\r\na=3";
    EXPECT_FALSE(RemoveIniKey(strFile, "A", "c"));
    EXPECT_TRUE(RemoveIniKey(strFile, "A", "A"));
    EXPECT_TRUE(RemoveIniKey(strFile, "B", "a"));
    EXPECT_EQ(strFile, "[A]\r\nb=2\r\n[B]\r\n");
}
