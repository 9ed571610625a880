#include "core/ImageFile/DibBlock.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "ui/platform/Clipboard.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>

#include <windows.h>

namespace {

TDibBytes MakeBlock() {
    const TDibBlock block = CreateDibBlock({2, 2});
    TLockedBits bits;
    block.spPixels->LockBits({0, 0, 2, 2}, ELockMode::Write, bits);
    const uint8_t aRows[2][8] = {{0, 100, 200, 255, 255, 0, 255, 85}, {3, 2, 1, 254, 9, 8, 7, 0}};
    for (ptrdiff_t y = 0; y < 2; ++y) std::memcpy(bits.pData + y * bits.nStride, aRows[y], 8);
    block.spPixels->UnlockBits();
    return block.spBytes;
}

/// A block, also of a picture, for comparison; empty for none.
std::string BytesOf(const TDibBytes& spBlock) { return spBlock ? *spBlock : ""; }
std::string BytesOf(const TLoadedPicture& picture) {
    return BytesOf(picture ? MakeDibBlock(*picture) : nullptr);
}

/// Another program, with a window of its own.
class COtherProgram {
public:
    ~COtherProgram() { DestroyWindow(m_hWnd); }
    /// The desktop itself also opens the clipboard when it changes.
    bool Open() const {
        int nTries = 100;
        while (!OpenClipboard(m_hWnd) && --nTries > 0) Sleep(10);
        return nTries > 0;
    }
    void Put(const std::vector<std::pair<UINT, std::string>>& vForms, bool bReplace = true) const {
        ASSERT_TRUE(Open() && (!bReplace || EmptyClipboard()));
        for (const auto& [uFormat, strBytes] : vForms) {
            const HGLOBAL hMemory = GlobalAlloc(GMEM_MOVEABLE, strBytes.size());
            std::memcpy(GlobalLock(hMemory), strBytes.data(), strBytes.size());
            GlobalUnlock(hMemory);
            EXPECT_TRUE(SetClipboardData(uFormat, hMemory));
        }
        CloseClipboard();
    }
    std::string Read(UINT uFormat) const {
        EXPECT_TRUE(Open());
        const HGLOBAL hMemory = GetClipboardData(uFormat);
        std::string strBytes;
        if (hMemory) strBytes.assign(static_cast<const char*>(GlobalLock(hMemory)), GlobalSize(hMemory));
        if (hMemory) GlobalUnlock(hMemory);
        CloseClipboard();
        return strBytes;
    }

private:
    const HWND m_hWnd =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

class CClipboardTest : public testing::Test {
protected:
    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
    std::unique_ptr<IClipboard> m_pClipboard = MakeClipboard(m_codecs);
    const COtherProgram m_other;
    const UINT m_uPng = RegisterClipboardFormatW(L"PNG");
    const TDibBytes m_spBlock = MakeBlock();
};

} // namespace

TEST_F(CClipboardTest, ACopiedBlockReachesOtherProgramsWithItsSoftEdges) {
    m_pClipboard->SetBlock(m_spBlock);
    const uint32_t uCopied = m_pClipboard->GetChangeCount();
    EXPECT_EQ(m_other.Read(CF_DIBV5), *m_spBlock);
    EXPECT_EQ(BytesOf(m_codecs.LoadResource(m_other.Read(m_uPng))), *m_spBlock);
    m_other.Put({{RegisterClipboardFormatW(L"Link"), "l"}}, false);
    EXPECT_EQ(m_pClipboard->GetChangeCount(), uCopied) << "another form of the same content";
    EXPECT_EQ(m_pClipboard->GetBlock(), m_spBlock) << "not a copy";

    m_pClipboard->SetBlock(boost::make_shared<std::string>("no block"));
    EXPECT_NE(m_pClipboard->GetChangeCount(), uCopied);
    EXPECT_TRUE(IsClipboardFormatAvailable(m_uPng)) << "made before a program asks for it";
    EXPECT_EQ(m_other.Read(m_uPng), "");
}

TEST_F(CClipboardTest, CopiedStrokesReachOtherProgramsAsCurvesAndPixels) {
    const std::string strStrokes("strokes", 8); // with a zero
    m_pClipboard->SetStrokes({boost::make_shared<std::string>(strStrokes), "<svg/>", m_spBlock});
    EXPECT_TRUE(m_pClipboard->HasStrokes());
    EXPECT_EQ(BytesOf(m_pClipboard->GetStrokes()).substr(0, strStrokes.size()), strStrokes);
    EXPECT_EQ(m_other.Read(RegisterClipboardFormatW(L"image/svg+xml")).substr(0, 6), "<svg/>");
    EXPECT_EQ(m_other.Read(CF_DIBV5), *m_spBlock);
    EXPECT_EQ(m_pClipboard->GetBlock(), m_spBlock);
    m_pClipboard->SetStrokes({boost::make_shared<std::string>(strStrokes), "<svg/>", nullptr});
    EXPECT_TRUE(m_pClipboard->HasStrokes() && !m_pClipboard->HasPicture());
    m_pClipboard->SetBlock(m_spBlock);
    EXPECT_FALSE(m_pClipboard->HasStrokes() || m_pClipboard->GetStrokes());
}

TEST_F(CClipboardTest, ACopiedBlockStaysAfterTheSession) {
    m_pClipboard->SetBlock(m_spBlock);
    m_pClipboard.reset();
    EXPECT_EQ(GetClipboardOwner(), nullptr);
    EXPECT_EQ(m_other.Read(CF_DIBV5), *m_spBlock);
    EXPECT_EQ(BytesOf(m_codecs.LoadResource(m_other.Read(m_uPng))), *m_spBlock);
    m_pClipboard = MakeClipboard(m_codecs);
    EXPECT_EQ(BytesOf(m_pClipboard->GetBlock()), *m_spBlock);
}

TEST_F(CClipboardTest, APictureIsTakenInTheFormThatKeepsMost) {
    TDibBytes spCopied = boost::make_shared<std::string>(*m_spBlock);
    const boost::weak_ptr<const std::string> wpCopied = spCopied;
    m_pClipboard->SetBlock(std::exchange(spCopied, nullptr));
    const uint32_t uCopied = m_pClipboard->GetChangeCount();
    // A header of 40 bytes: 2 x 2 pixels of 24 bits, the lower row first, each row filled up to four bytes.
    std::string strDib = {40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 24};
    strDib.resize(40);
    strDib += {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};
    m_other.Put({{CF_DIB, strDib}});
    EXPECT_TRUE(wpCopied.expired()) << "memory that nobody can paste any more";
    EXPECT_NE(m_pClipboard->GetChangeCount(), uCopied);
    EXPECT_TRUE(m_pClipboard->HasPicture());
    EXPECT_EQ(BytesOf(m_pClipboard->GetPicture()),
              m_spBlock->substr(0, 124) + "\x1\x2\x3\xFF\x4\x5\x6\xFF\x7\x8\x9\xFF\xA\xB\xC\xFF");
    EXPECT_EQ(BytesOf(m_pClipboard->GetBlock()), BytesOf(m_pClipboard->GetPicture()));

    const std::string strPng = *m_codecs.EncodePng(*ReadDibBlock(m_spBlock));
    for (const auto& vForms : {std::vector<std::pair<UINT, std::string>>{{CF_DIB, strDib}, {m_uPng, strPng}},
                               {{CF_DIB, strDib}, {CF_DIBV5, *m_spBlock}},
                               {{m_uPng, "damaged"}, {CF_DIBV5, *m_spBlock}}}) {
        m_other.Put(vForms);
        EXPECT_EQ(BytesOf(m_pClipboard->GetPicture()), *m_spBlock);
    }
    m_other.Put({{m_uPng, strPng.substr(0, strPng.size() / 2)}});
    EXPECT_TRUE(m_pClipboard->HasPicture());
    EXPECT_EQ(m_pClipboard->GetPicture().failure, EFileFailure::DamagedPicture);
    EXPECT_FALSE(m_pClipboard->GetBlock());
}

TEST_F(CClipboardTest, TextAndPicturesReplaceOneAnother) {
    m_pClipboard->SetBlock(m_spBlock);
    m_pClipboard->SetText(L"絵𠮷");
    EXPECT_EQ(m_other.Read(CF_UNICODETEXT), std::string("\x75\x7D\x42\xD8\xB7\xDF\0\0", 8));
    EXPECT_FALSE(m_pClipboard->HasPicture());
    EXPECT_FALSE(m_pClipboard->GetBlock());
    EXPECT_EQ(m_pClipboard->GetPicture().failure, EFileFailure::Missing);
    EXPECT_TRUE(m_pClipboard->SetPicture(*ReadDibBlock(m_spBlock)));
    EXPECT_EQ(m_other.Read(CF_UNICODETEXT), "");
    EXPECT_EQ(BytesOf(m_pClipboard->GetBlock()), *m_spBlock);
}

TEST_F(CClipboardTest, AClipboardThatAnotherProgramHoldsIsWaitedForAMoment) {
    m_pClipboard->SetText(L"文");
    ASSERT_TRUE(m_other.Open());
    EXPECT_THROW(m_pClipboard->SetBlock(m_spBlock), std::runtime_error);
    EXPECT_FALSE(m_pClipboard->SetPicture(*ReadDibBlock(m_spBlock)));
    CloseClipboard();
    EXPECT_NE(m_other.Read(CF_UNICODETEXT), "") << "the content stays";
    m_pClipboard->SetBlock(m_spBlock);
    std::promise<void> held;
    const auto end = std::async(std::launch::async, [&] {
        const COtherProgram other;
        EXPECT_TRUE(other.Open());
        held.set_value();
        EXPECT_TRUE(GetClipboardData(m_uPng)) << "made while its maker waits for the clipboard";
        Sleep(50);
        CloseClipboard();
    });
    held.get_future().wait();
    EXPECT_NO_THROW(m_pClipboard->SetBlock(m_spBlock));
    MSG msg;
    while (end.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
        PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE);
    ASSERT_TRUE(m_other.Open());
    EXPECT_EQ(BytesOf(m_pClipboard->GetPicture()), *m_spBlock) << "its own block needs no clipboard";
    CloseClipboard();
}
