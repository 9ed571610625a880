#include "core/PathToolBase/PathToolHistory.h"
#include "core/IniConfig/IniConfig.h"
#include "core/PathToolBase/PathParam.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

class PathToolHistory : public testing::Test {
protected:
    PathToolHistory() {
        for (int n = 0; n < 5; ++n) {
            m_vPaths.push_back(MakeLevelStroke(2 + n));
            m_spLayer->InsertPath(m_vPaths.back());
        }
    }
    CReplacePathsHistory::TPaths Paths() const {
        return {m_spLayer->GetPaths().begin(), m_spLayer->GetPaths().end()};
    }
    // The layer's paths while the action is done; undo and redo give the same paths and bytes.
    CReplacePathsHistory::TPaths Done(CHistory& history) {
        const auto vBefore = Paths();
        const TBytes vBytes = m_spLayer->Serialize().GetWhole();
        history.Redo();
        const auto vAfter = Paths();
        for (int n = 0; n < 2; ++n) {
            history.Undo();
            EXPECT_EQ(Paths(), vBefore);
            EXPECT_EQ(m_spLayer->Serialize().GetWhole(), vBytes);
            history.Redo();
            EXPECT_EQ(Paths(), vAfter);
        }
        history.Undo();
        return vAfter;
    }

    const boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({64, 64});
    const boost::shared_ptr<CVectorLayerBuffer> m_spLayer = CreateVectorLayer(m_spCanvas);
    CReplacePathsHistory::TPaths m_vPaths;
    const boost::shared_ptr<CPathObject> m_spNew = MakeStroke();
    const boost::shared_ptr<CPathObject> m_spOther = MakeStroke();
    const boost::shared_ptr<CPathObject> m_spShape = boost::make_shared<CClosedPathObject>();
};

} // namespace

TEST_F(PathToolHistory, PathsComeAndGoAtTheirPlaces) {
    using TPaths = CReplacePathsHistory::TPaths;
    const auto& v = m_vPaths;
    CAddDelPathHistory<0> add(m_spLayer, m_spNew, 3);
    EXPECT_EQ(Done(add), (TPaths{v[0], v[1], v[2], m_spNew, v[3], v[4]}));
    CAddDelPathHistory<1> remove(m_spLayer, v[1], 1);
    EXPECT_EQ(Done(remove), (TPaths{v[0], v[2], v[3], v[4]}));
    CDividePathHistory divide(m_spLayer, v[2], {m_spNew, m_spOther});
    EXPECT_EQ(Done(divide), (TPaths{v[0], v[1], m_spNew, m_spOther, v[3], v[4]}));
    CCombinePathHistory below(L"パスの結合", m_spLayer, {v[3], v[1]}, m_spNew);
    EXPECT_EQ(Done(below), (TPaths{v[0], v[2], m_spNew, v[4]}));
    CCombinePathHistory above(L"パスの結合", m_spLayer, {v[1], v[3]}, m_spNew);
    EXPECT_EQ(Done(above), (TPaths{v[0], m_spNew, v[2], v[4]}));
    remove.Redo();
    remove.Measure();
    add.Measure();
    EXPECT_TRUE(remove.GetBytes() > 1024 && add.GetBytes() == 1024 + 3 * 512);
}

TEST_F(PathToolHistory, WhatIsMissingOrNotOpenIsReported) {
    const auto messageOf = [](const auto& fn) {
        try {
            fn();
        } catch (const internal_error& e) {
            return e.message;
        }
        return std::wstring();
    };
    CAddDelPathHistory<1> remove(m_spLayer, m_spNew, 0);
    EXPECT_EQ(messageOf([&] { remove.Redo(); }), L"CDelPathHistory: object not found");
    const auto combine = [&](const auto& spFirst, const auto& spSecond, const auto& spJoined) {
        return messageOf([&] {
            CCombinePathHistory(L"パスの接続", m_spLayer, {spFirst, spSecond}, spJoined);
        });
    };
    const auto& spOpen = m_vPaths[0];
    EXPECT_EQ(combine(m_spShape, spOpen, m_spNew), L"CCombinePathHistory: strmOrigin isn't OpenPath");
    EXPECT_EQ(combine(spOpen, spOpen, m_spShape), L"CCombinePathHistory: strmOrigin isn't OpenPath");
    EXPECT_EQ(combine(spOpen, m_spShape, m_spNew), L"CCombinePathHistory: strmRemove isn't OpenPath");
    CReplacePathsHistory gone(L"", m_spLayer, {spOpen, m_spOther}, {m_spNew});
    EXPECT_NE(messageOf([&] { gone.Redo(); }), L"");
    EXPECT_EQ(Paths(), m_vPaths);
}

TEST(PathParam, ValuesOutOfRangeAreReplaced) {
    CMemoryFiles files;
    CIniConfig config(L"/v.ini", files);
    const TPathParam param{40, TERM_FLAT, TERM_ROUND, false, true, 128, 20};
    param.Write(config);
    EXPECT_EQ(TPathParam::Read(config), param);
    const auto spSection = config.GetSection(L"PathTool");
    EXPECT_EQ(spSection->GetInt(L"WaveStep", 0), 128);
    for (const auto& [pszKey, nValue] :
         {std::pair{L"DefaultWidth", -1}, {L"DefaultBegin", 4}, {L"WaveStep", 15}})
        spSection->SetInt(pszKey, nValue);
    EXPECT_EQ(TPathParam::Read(config), (TPathParam{8, TERM_SHARP, TERM_ROUND, false, true, 32, 20}));
    EXPECT_FALSE(boost::dynamic_pointer_cast<COpenPathObject>(param.CreatePath()));
}
