#include "core/Base/Color.h"
#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Base/Text.h"

#include <gtest/gtest.h>

#include <new>
#include <set>

namespace {

std::wstring TextOf(void (*fn)()) {
    try {
        fn();
    } catch (const std::exception& e) {
        return DescribeException(e);
    }
    return L"nothing thrown";
}

} // namespace

TEST(Failure, EveryClassHasItsText) {
    EXPECT_EQ(TextOf([] { throw std::bad_alloc(); }), L"メモリが足りません。\nexception: bad_alloc");
    const std::wstring strCheck = L"自己診断違反が発生しました。\nType: ",
                       strFalse = L"\nExpression: false\nFile: :0\n";
    EXPECT_EQ(TextOf([] { SELF_CHECK(defect_logic, false); }), strCheck + L"DEFECT_LOGIC" + strFalse);
    EXPECT_EQ(TextOf([] { SELF_CHECK(invalid_argument, false); }),
              strCheck + strFalse); // has no word of its own
    EXPECT_EQ(TextOf([] { throw internal_error(L"100%1% ある"); }),
              L"内部エラー\nexception: internal_error('100%1% ある')");
    EXPECT_EQ(TextOf([] { throw refused_error(L"大きすぎます。"); }), L"大きすぎます。");
    EXPECT_EQ(TextOf([] { throw std::runtime_error("\xE3\x81\x82 disk"); }),
              L"予期せぬエラーが発生しました。\nexception: exception('あ disk')");
}

TEST(Failure, EveryFileFailureSaysWhatToDo) {
    std::set<std::wstring> setTexts;
    const int nLast = static_cast<int>(EFileFailure::NoCodec);
    for (int n = 0; n <= nLast; ++n) {
        const std::wstring strText = AdviceFor(static_cast<EFileFailure>(n));
        EXPECT_TRUE(strText.ends_with(L"ください。")) << n;
        EXPECT_TRUE(setTexts.insert(strText).second) << n << " has no row of its own";
    }
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

TEST(Resource, AnUnknownNameGivesNothing) { EXPECT_TRUE(FindResource("no such file").empty()); }
