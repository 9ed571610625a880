#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/PsdBytes.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

using namespace std::string_literals;

struct TPsdLayer {
    uint8_t At(size_t nChannel, size_t n) const { return static_cast<uint8_t>(channels[nChannel].at(n)); }

    size_t nWidth, nHeight;
    uint32_t uOpacity, uClipped, uFlags, uSection = 0;
    std::string strName;
    std::u16string strTitle;
    std::string channels[4]; ///< A, R, G, B
};

class CPsdReader {
public:
    explicit CPsdReader(const std::string& strFile) : m_strFile(strFile) {
        EXPECT_EQ(Text(14), "8BPS\0\1\0\0\0\0\0\0\0\3"s);
        m_nPixels = size_t{Number(4)} * Number(4);
        EXPECT_EQ(Text(12), "\0\x08\0\3\0\0\0\0\0\0\0\0"s);
        ReadBlock([&] {
            ReadBlock([&] { ReadLayers(); });
            EXPECT_EQ(Number(4), 0u);
        });
        EXPECT_EQ(Number(2), 0u);
        m_strPicture = Text(m_nPixels * 3);
        EXPECT_EQ(m_nPos, m_strFile.size());
    }

    size_t m_nPixels;
    std::vector<TPsdLayer> m_vLayers;
    std::string m_strPicture;

private:
    std::string Text(size_t nBytes) { return m_strFile.substr((m_nPos += nBytes) - nBytes, nBytes); }
    uint32_t Number(size_t nBytes) {
        uint32_t u = 0;
        for (const char ch : Text(nBytes)) u = u << 8 | static_cast<uint8_t>(ch);
        return u;
    }
    // A length and what it counts: what `fn` reads and zeros up to a multiple of four.
    template <class Function>
    void ReadBlock(Function fn) {
        const size_t nLength = Number(4), nEnd = m_nPos + nLength;
        EXPECT_EQ(nLength % 2, 0u);
        if (nLength) fn();
        EXPECT_EQ(Text(nEnd - m_nPos), std::string("\0\0\0", (nEnd - m_nPos) % 4));
    }
    void ReadLayers() {
        m_vLayers.resize(Number(2));
        std::vector<size_t> vLengths;
        for (TPsdLayer& layer : m_vLayers) {
            EXPECT_EQ(Text(8), std::string(8, '\0'));
            layer.nHeight = Number(4);
            layer.nWidth = Number(4);
            for (const uint32_t uExpected : {0x4FFFFu, 0u, 1u, 2u}) {
                EXPECT_EQ(Number(uExpected > 2 ? 4 : 2), uExpected);
                vLengths.push_back(Number(4));
            }
            EXPECT_EQ(Text(8), "8BIMnorm");
            for (uint32_t* pu : {&layer.uOpacity, &layer.uClipped, &layer.uFlags}) *pu = Number(1);
            Text(1);
            ReadBlock([&] {
                EXPECT_EQ(Number(4) + Number(4), 0u);
                layer.strName = Text(Number(1));
                Text(3 - layer.strName.size() % 4);
                EXPECT_EQ(Text(8), "8BIMluni");
                ReadBlock([&] {
                    for (uint32_t u = Number(4); u > 0; --u)
                        layer.strTitle += static_cast<char16_t>(Number(2));
                });
                if (layer.nWidth) return;
                EXPECT_EQ(Text(12), "8BIMlsct\0\0\0\x0C"s);
                layer.uSection = Number(4);
                EXPECT_EQ(Text(8), "8BIMpass");
            });
        }
        for (size_t n = 0; n < vLengths.size(); ++n) {
            const size_t nEnd = m_nPos + vLengths[n];
            ReadChannel(m_vLayers[n / 4], m_vLayers[n / 4].channels[n % 4]);
            EXPECT_EQ(m_nPos, nEnd);
        }
    }
    void ReadChannel(const TPsdLayer& layer, std::string& str) {
        EXPECT_EQ(Number(2), layer.nHeight ? 1u : 0u);
        std::vector<size_t> vRows(layer.nHeight);
        for (size_t& nRow : vRows) nRow = Number(2);
        for (const size_t nRow : vRows) {
            for (const size_t nEnd = m_nPos + nRow; m_nPos < nEnd;) {
                const uint32_t u = Number(1);
                EXPECT_TRUE(u < 127 || u > 128);
                str += u < 128 ? Text(u + 1) : std::string(257 - u, Text(1)[0]);
            }
            EXPECT_EQ(str.size() % layer.nWidth, 0u);
        }
    }

    const std::string m_strFile;
    size_t m_nPos = 0;
};

double DifferenceIn(const CPsdReader& psd) {
    const std::vector<TPsdLayer>& v = psd.m_vLayers;
    std::vector<bool> vHidden(v.size()), vGroups{false};
    for (size_t n = v.size(); n-- > 0;) {
        vHidden[n] = v[n].uFlags || vGroups.back();
        if (v[n].uSection == 1) vGroups.push_back(vHidden[n]);
        if (v[n].uSection == 3) vGroups.pop_back();
    }
    double dWorst = 0;
    for (size_t i = 0; i < psd.m_strPicture.size(); ++i) {
        const size_t nPixel = i % psd.m_nPixels;
        const auto paint = [&](double& dColor, double& dAlpha, double dTop, const TPsdLayer& layer) {
            const double dCover = layer.At(0, nPixel) / 255.0 * layer.uOpacity / 255;
            dAlpha += dCover - dAlpha * dCover;
            dColor += dCover > 0 ? (dTop - dColor) * dCover / dAlpha : 0;
        };
        const auto value = [&](size_t n) { return v[n].At(1 + i / psd.m_nPixels, nPixel); };
        double dPaper = 255, dOpaque = 1;
        for (size_t n = 0, nBase = 0; n < v.size(); nBase = ++n) {
            if (v[n].uSection) continue;
            double d = value(n);
            double dAlpha = v[n].At(0, nPixel) / 255.0;
            for (; n + 1 < v.size() && v[n + 1].uClipped; ++n)
                if (!vHidden[n + 1]) paint(d, dAlpha, value(n + 1), v[n + 1]);
            if (!vHidden[nBase]) paint(dPaper, dOpaque, d, v[nBase]);
        }
        dWorst = std::max(dWorst, std::abs(dPaper - static_cast<uint8_t>(psd.m_strPicture[i])));
    }
    return dWorst;
}

class PsdFile : public testing::Test {
protected:
    CPsdReader Export() {
        ExportImage(*m_spCanvas, L"page.PSD", m_files, m_codecs);
        return CPsdReader(m_files.m_mapFiles[L"page.PSD"]);
    }
    CLayerBuffer& Add(CLayerBuffer& parent, const std::wstring& strName, bool bHiddenSet = false) {
        TLayerPtr spLayer = MakeRandomLayer(m_spCanvas, m_random);
        if (bHiddenSet) spLayer = CreateLayerSet(m_spCanvas);
        spLayer->setName(strName);
        spLayer->SetOpacity(9);
        spLayer->SetVisible(!bHiddenSet);
        parent.AddLayer(spLayer, -1, false);
        return *spLayer;
    }

    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
    std::mt19937 m_random{5};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({263, 101});
};

} // namespace

TEST_F(PsdFile, RecordsFollowTheTree) {
    CLayerBuffer& root = m_spCanvas->GetRoot();
    const std::wstring strLong(128, L'漢');
    Add(Add(Add(root, L"線①髙😀é", true), L"inner", true), strLong);
    CLayerBuffer& base = Add(root, L"x" + strLong);
    Add(Add(base, L"clipped"), L"painted into clipped");
    Add(Add(base, L"clipped set", true), L"in it");
    const auto vLayers = Export().m_vLayers;
    std::string str;
    for (const TPsdLayer& layer : vLayers)
        str += layer.strName.substr(0, 5) + (layer.uSection ? " group " : " layer ") +
               std::to_string(layer.uOpacity) + (layer.uClipped ? " clipped" : "") +
               (layer.uFlags == 2 ? " hidden\n" : "\n");
    EXPECT_EQ(str, "</Lay group 255\n</Lay group 255\n\x8A\xBF\x8A\xBF\x8A layer 9\ninner group 255 hidden\n"
                   "\x90\xFC\x87\x40\xFB group 255 hidden\nx\x8A\xBF\x8A\xBF layer 9\n"
                   "clipp layer 9 clipped\nin it layer 9 clipped hidden\n");
    EXPECT_EQ(vLayers[4].strName, "\x90\xFC\x87\x40\xFB\xFC??");
    EXPECT_EQ(vLayers[4].strTitle, u"線①髙😀é");
    EXPECT_EQ(vLayers[2].strName.size(), 254u) << "no half character";
    EXPECT_EQ(vLayers[5].strName.size(), 255u);
}

TEST_F(PsdFile, ReadersSeeOurPicture) {
    for (const bool bColor : {true, false, true}) {
        m_spCanvas = CreateCanvas({263, 101}, bColor); // rows of more than one packet
        FillRandomTree(m_spCanvas, 20, m_random);
        EXPECT_LT(DifferenceIn(Export()), 5);
        const std::string strFile = m_files.m_mapFiles[L"page.PSD"];
        m_spCanvas->ConvertColorMode(!bColor, bColor);
        EXPECT_LT(DifferenceIn(Export()), 5);
        // Light display leaves the file as it is; a colour composite of grey layers brings its colours.
        EXPECT_EQ(m_files.m_mapFiles[L"page.PSD"] == strFile, bColor);
    }
}

TEST_F(PsdFile, FailuresWriteNothing) {
    m_files.m_bReadOnly = true;
    EXPECT_THROW(Export(), fileopen_error);
    EXPECT_THROW((m_spCanvas = CreateCanvas({30001, 1}), Export()), refused_error);
    EXPECT_TRUE(m_files.m_mapFiles.empty());
    CPsdBytes bytes;
    bytes.WriteByte(1);
    EXPECT_THROW(bytes.Extend(UINT32_MAX, 0), refused_error); // a byte over 4 GiB
}
