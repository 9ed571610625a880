#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/SvgShape.h"
#include "core/ImageFile/SvgText.h"
#include "system/pictures/ImageCodecs.h"
#include "system/pictures/Pictures.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

class SvgFile : public testing::Test {
protected:
    template <class Layer>
    boost::shared_ptr<Layer> Add(CLayerBuffer& parent, boost::shared_ptr<Layer> spLayer,
                                 const std::wstring& strName, bool bVisible = true, uint8_t uOpacity = 255) {
        spLayer->InitState(strName, bVisible, uOpacity);
        parent.AddLayer(spLayer, -1, false);
        return spLayer;
    }
    CLayerBuffer& Root() { return m_spCanvas->GetRoot(); }
    // The text inside the root element. Embedded pictures become <x>, and are decoded into m_vPictures.
    std::string Export() {
        ExportImage(*m_spCanvas, L"page.SVG", m_files, m_codecs);
        std::string strText = m_files.m_mapFiles[L"page.SVG"];
        EXPECT_TRUE(strText.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
        EXPECT_THAT(strText, testing::HasSubstr(" width=\"40\" height=\"30\" viewBox=\"0 0 40 30\">\n"));
        for (size_t n; (n = strText.find("data:")) != std::string::npos;) {
            const size_t nEnd = strText.find('"', n);
            m_vPictures.push_back(m_codecs.LoadResource(ReadPictureText(strText.substr(n, nEnd - n))));
            strText.replace(n, nEnd - n, "<x>");
        }
        return strText.substr(strText.find("\">\n") + 3);
    }
    // B, G, R, A of an embedded picture's pixel.
    uint32_t PixelOf(size_t nPicture, CPoint pt) {
        TLockedBits bits;
        uint32_t uPixel = 0;
        EXPECT_TRUE(m_vPictures.at(nPicture)->LockBits(CRect(pt, {1, 1}), ELockMode::Read, bits));
        std::memcpy(&uPixel, bits.pData, sizeof uPixel);
        m_vPictures[nPicture]->UnlockBits();
        return uPixel;
    }

    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({40, 30});
    std::vector<TLoadedPicture> m_vPictures;
};

TPolyBezier Square(int32_t nFrom, int32_t nTo, bool bBack = false) {
    TOutlinePoints v{
        {{nFrom, nFrom}, {}, {}}, {{nTo, nFrom}, {}, {}}, {{nTo, nTo}, {}, {}}, {{nFrom, nTo}, {}, {}}};
    if (bBack) std::reverse(v.begin(), v.end());
    return CloseOutline(v);
}

} // namespace

TEST_F(SvgFile, LayersAreGroupsAndPathsTheirOutlines) {
    const auto spShapes = Add(Root(), CreateVectorLayer(m_spCanvas), L"線<&\x01\n\">", true, 128);
    spShapes->SetLayerColor(MakeColor(0xAB, 1, 0xF0));
    spShapes->InsertPath(MakeRectPath({-1, 2, 3, 4}));
    const auto spSet = Add(Root(), CreateLayerSet(m_spCanvas), L"set", false, 7);
    const auto spInner = Add(*spSet, CreateLayerSet(m_spCanvas), L"");
    const auto spLine = boost::make_shared<COpenPathObject>();
    for (const CPoint pt : {CPoint{1, 90}, {90, 90}}) AddAnchor(spLine->GetStream(), pt);
    for (const bool b : {true, false}) spLine->GetStream().SetTerm(CreateOpenPathTerm(TERM_FLAT, b));
    spLine->Update();
    Add(*spInner, CreateVectorLayer(m_spCanvas), L"in it", false, 1)->InsertPath(spLine);
    const std::string strText = Export();
    const std::string strGroup = "<g id=\"layer";
    const std::string strLabel = "\" inkscape:groupmode=\"layer\" inkscape:label=\"";
    EXPECT_EQ(
        strText,
        strGroup + "1" + strLabel +
            "線&lt;&amp;&quot;&gt;\" opacity=\"0.502\">\n<path fill=\"#ab01f0\" "
            "d=\"M-1 2C-1 2 3 2 3 2 3 2 3 4 3 4 3 4 -1 4 -1 4 -1 4 -1 2 -1 2Z\"/>\n</g>\n" +
            strGroup + "2" + strLabel + "set\" style=\"display:none\">\n" + strGroup + "3" + strLabel +
            "\">\n" + strGroup + "4" + strLabel + "in it\" opacity=\"0.004\" style=\"display:none\">\n" +
            "<path fill=\"#ffffff\" d=\"M1.875 10.25C1.875 10.25 5.75 10.25 5.75 10.25 5.75 10.25 "
            "9.5 10.25 9.5 10.25 9.5 10.25 11.25 10.25 11.25 10.25 11.25 "
            "10.25 11.25 12.25 11.25 12.25 11.25 12.25 9.5 12.25 9.5 "
            "12.25 9.5 12.25 5.75 12.25 5.75 12.25 5.75 12.25 1.875 12.25 "
            "1.875 12.25 1.875 12.25 0.125 12.25 0.125 12.25 0.125 12.25 "
            "0.125 10.25 0.125 10.25 0.125 10.25 1.875 10.25 1.875 10.25Z\"/>\n</g>\n</g>\n</g>\n</svg>\n");
}

TEST_F(SvgFile, AStrokeHasItsMeanOpacity) {
    const auto spLayer = Add(Root(), CreateVectorLayer(m_spCanvas), L"a");
    spLayer->InsertPath(MakeLevelStroke(2));
    const std::string strPlain = Export();
    for (const auto& [t, uAlpha] : {std::pair{0u, 60u}, {0x10000, 144}}) {
        const auto spLine = boost::dynamic_pointer_cast<COpenPathObject>(spLayer->GetPaths().front());
        spLine->GetStream().AddAlphaPoint(t)->SetAlpha(CDualValue<uint32_t>(uAlpha));
        spLine->Update();
    }
    std::string strExpected = strPlain;
    strExpected.insert(strExpected.find("<path"), "<g opacity=\"0.4\">\n");
    strExpected.insert(strExpected.find("</g>"), "</g>\n");
    EXPECT_EQ(Export(), strExpected);
}

TEST_F(SvgFile, ChildrenOfALayerAreClippedToItsCoverage) {
    const auto spBase = Add(Root(), CreateRasterLayer(m_spCanvas), L"base");
    for (const auto& [pt, uAlpha] : {std::pair{CPoint{5, 6}, 128}, {CPoint{8, 9}, 255}}) {
        auto& tile = static_cast<CColorRasterBlockBuffer&>(*spBase->GetRaster()->GetWritableBlock(pt));
        const size_t n = static_cast<size_t>(pt.y * tile.GetSize().cx + pt.x);
        tile.Pixels().pR[n] = 200;
        tile.Pixels().pA[n] = static_cast<uint8_t>(uAlpha);
    }
    const auto spClipped = Add(*spBase, CreateVectorLayer(m_spCanvas), L"clipped");
    spClipped->SetLayerColor(MakeColor(0, 0, 255));
    spClipped->InsertPath(MakeRectPath({0, 0, 9, 9}));
    Add(*spClipped, CreateRasterLayer(m_spCanvas), L"empty");
    const auto strHead = [](int n, const char* pszName) {
        return "<g id=\"layer" + std::to_string(n) + "\" inkscape:groupmode=\"layer\" inkscape:label=\"" +
               pszName + "\">\n";
    };
    const std::string strImage =
        "<image x=\"5\" y=\"6\" width=\"4\" height=\"4\" preserveAspectRatio=\"none\" "
        "image-rendering=\"optimizeSpeed\" xlink:href=\"<x>\"/>\n";
    const auto strMask = [](const char* psz, const std::string& strShape, const std::string& strGround) {
        const std::string strName = psz;
        return "<mask id=\"" + strName +
               "\" maskUnits=\"userSpaceOnUse\" x=\"0\" y=\"0\" width=\"40\" height=\"30\">\n" + strShape +
               "</mask>\n<g mask=\"url(#" + strName + ")\">\n" + strGround;
    };
    EXPECT_EQ(
        Export(),
        strHead(1, "base") + strMask("shape1", strImage, strImage) + strHead(2, "clipped") +
            strMask("shape2",
                    "<path fill=\"#ffffff\" d=\"M0 0C0 0 9 0 9 0 9 0 9 9 9 9 9 9 0 9 0 9 0 9 0 0 0 0Z\"/>\n",
                    "<rect width=\"40\" height=\"30\" fill=\"#0000ff\"/>\n") +
            strHead(3, "empty") + "</g>\n</g>\n</g>\n</g>\n</g>\n</svg>\n");
    EXPECT_EQ(PixelOf(0, {0, 0}), 0x80FFFFFFu);
    EXPECT_EQ(PixelOf(0, {1, 0}) >> 24, 0u);
    EXPECT_EQ(PixelOf(1, {0, 0}), 0xFFC80000u);
    spBase->RemoveLayer(spBase->GetChildren().front(), false);
    EXPECT_EQ(Export(), strHead(1, "base") + strImage + "</g>\n</svg>\n");
    EXPECT_EQ(PixelOf(2, {0, 0}), 0x80C80000u);
}

TEST_F(SvgFile, AGreyDocumentIsGrey) {
    m_spCanvas = CreateCanvas({40, 30}, false);
    const auto spLayer = Add(Root(), CreateVectorLayer(m_spCanvas), L"");
    spLayer->SetLayerColor(MakeColor(255, 0, 0));
    spLayer->InsertPath(MakeRectPath({1, 2, 3, 4}));
    EXPECT_THAT(Export(), testing::HasSubstr("fill=\"#4c4c4c\""));
}

TEST(SvgShape, OutlinesThatWouldMakeHolesAreSeparate) {
    const auto count = [](const std::vector<TPolyBezier>& vOutlines) {
        std::string str;
        for (const TSvgShape& shape : GroupOutlines(vOutlines, {40, 30}))
            str += std::to_string(shape.size()) + ' ';
        return str;
    };
    EXPECT_EQ(count({Square(8, 80), Square(40, 120)}), "2 ");
    EXPECT_EQ(count({Square(8, 80), Square(40, 120, true)}), "1 1 ");
    EXPECT_EQ(count({Square(8, 80), Square(40, 120, true), Square(60, 160, true)}), "1 2 ");
    EXPECT_EQ(count({Square(8, 80), Square(16, 40, true)}), "1 ") << "it adds nothing";
    EXPECT_EQ(count({Square(8, 80), Square(320, 400, true)}), "2 ") << "beyond the canvas";
    EXPECT_EQ(count({{{8, 8}}, Square(8, 80)}), "1 ") << "a point fills nothing";
}

TEST(SvgText, NumbersAndBytes) {
    std::string str;
    for (const int64_t n : {0, 125, -500, 1000, -12340, 1001}) AppendThousandths(str, n), str += ' ';
    for (const char* psz : {"", "f", "fo", "foo", "\xFF\xFE?b"}) AppendBase64(str, psz), str += ' ';
    EXPECT_EQ(str, "0 0.125 -0.5 1 -12.34 1.001  Zg== Zm8= Zm9v //4/Yg== ");
}
