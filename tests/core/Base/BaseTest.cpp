#include "core/Base/Color.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"

TEST(Failure, EveryClassHasItsText) {
    EXPECT_EQ(DescribeException(std::bad_alloc()), L"メモリが足りません。\nexception: bad_alloc");
    EXPECT_EQ(DescribeException(internal_error(L"ある")), L"内部エラー\nexception: internal_error('ある')");
    EXPECT_EQ(DescribeException(refused_error(L"大きい。")), L"大きい。");
    EXPECT_EQ(DescribeException(std::runtime_error("disk")),
              L"予期せぬエラーが発生しました。\nexception: exception('disk')");
}

TEST(Text, RoundTripsAndSurvivesIllFormedBytes) {
    const std::wstring str = L"線画 é \U0001F58B end";
    EXPECT_EQ(FromUtf8(ToUtf8(str)), str);
    EXPECT_EQ(FromUtf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(FromUtf8("\xE3\x81"), L"\uFFFD\uFFFD"); // cut off
    EXPECT_EQ(FromUtf8("\xC0\x80"), L"\uFFFD\uFFFD"); // overlong
    EXPECT_EQ(FromUtf8("\xED\xA0\x80").size(), 3u);   // surrogate
    EXPECT_EQ(ToUtf8(std::wstring(1, wchar_t(0xD800))), "\xEF\xBF\xBD");
}

TEST(Text, Names) {
    EXPECT_TRUE(EqualNoCase(L".VLM", L".vlm"));
    EXPECT_FALSE(EqualNoCase(L".vlm", L".vl"));
    EXPECT_EQ(ExtensionOf(L"/a.b/絵.tar.PNG"), L".PNG");
    EXPECT_EQ(ExtensionOf(L"/a.b/絵"), L"");
    EXPECT_EQ(FileNameOf(L"C:\\a\\絵.png"), L"絵.png");
    EXPECT_EQ(FileNameOf(L"/a.b/"), L"");
}

TEST(Color, ANeutralColourKeepsItsLevel) {
    for (int n = 0; n < 256; ++n) {
        const auto u = static_cast<uint8_t>(n);
        EXPECT_EQ(GreyOf(u, u, u), u);
    }
    EXPECT_EQ(GreyOf(255, 0, 0), 76);
    EXPECT_EQ(GreyOf(0, 255, 0), 149);
    EXPECT_EQ(GreyOf(0, 0, 255), 29);
}
