#include "core/Base/Failure.h"
#include "core/PathObject/PathObjectFactory.h"
#include "tests/support/Paths.h"
#include "tests/support/ProjectBytes.h"

namespace {

// Where the values of MakeStroke's payload stand.
constexpr size_t AT_WIDTH = 0, AT_BEGIN = 12, AT_WAVE = 20, AT_WAVE_WIDTH = 25, AT_ANCHORS = 41,
                 AT_ANCHOR = 57, AT_HANDLE = 73, AT_MARK = 165, AT_LEFT = 169, AT_FLAT = 269;

boost::shared_ptr<CPathObject> Read(uint32_t uTag, uint32_t uVersion, const TBytes& vPayload) {
    CSerializer chunk;
    chunk.SetTag(uTag, uVersion);
    chunk.WriteBytes(vPayload.data(), vPayload.size());
    CDeserializer reader = OpenChunk(FileOf(chunk));
    const auto spPath = CreatePathObjectByTag(uTag);
    spPath->Deserialize(reader);
    return spPath;
}

boost::shared_ptr<COpenPathObject> ReadStroke(const TBytes& vPayload, uint32_t uVersion = 1) {
    return boost::dynamic_pointer_cast<COpenPathObject>(Read(COpenPathStream::CHUNK_TAG, uVersion, vPayload));
}

TBytes With(size_t nAt, uint32_t u) {
    TBytes vBytes = BytesOf(*MakeStroke());
    for (size_t n = 0; n < 4; ++n) vBytes[nAt + n] = static_cast<uint8_t>(u >> (24 - 8 * n));
    return vBytes;
}

} // namespace

TEST(PathWire, PathsAreAsTheirPageShowsThem) {
    const auto spStroke = MakeStroke();
    CClosedPathObject shape;
    AddAnchor(shape.GetStream(), {8, 16});
    AddAnchor(shape.GetStream(), {808, 16}, {-240, 0}, {-1, 240});
    EXPECT_EQ(FileOf(spStroke->Serialize()), ListedBytes("A stroke"));
    EXPECT_EQ(FileOf(shape.Serialize()), ListedBytes("A filled shape"));
    const auto spRead = ReadStroke(BytesOf(*spStroke));
    EXPECT_EQ(BytesOf(*spRead), BytesOf(*spStroke));
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        EXPECT_EQ(spRead->GetStream().GetOutline(state), spStroke->GetStream().GetOutline(state));
}

TEST(PathWire, OpacityMarksAreAttached) {
    const auto spStroke = MakeStroke();
    const TBytes vPlain = FileOf(spStroke->Serialize());
    spStroke->GetStream().AddAlphaPoint(0x10000)->SetAlpha(CDualValue<uint32_t>(128));
    spStroke->Update();
    const TBytes vWhole = FileOf(spStroke->Serialize()), vListed = ListedBytes("An attached chunk");
    TBytes vExpected = vPlain;
    vExpected.insert(vExpected.end(), vListed.begin(), vListed.end());
    EXPECT_EQ(vWhole, vExpected);
    const auto read = [](const TBytes& vFile, bool bOld) {
        CDeserializer file(boost::make_shared<TBytes>(vFile)), top;
        bOld ? file.ReadChunk(top) : file.ReadTop(top);
        const auto spPath = boost::make_shared<COpenPathObject>();
        spPath->GetStream().AddAlphaPoint(7); // does not stay
        spPath->Deserialize(top);
        return spPath;
    };
    EXPECT_EQ(BytesOf(*read(vWhole, false)), BytesOf(*spStroke));
    EXPECT_EQ(FileOf(read(vWhole, true)->Serialize()), vPlain);
    const auto with = [&](size_t nAt, uint8_t u) {
        TBytes vBytes = vWhole;
        vBytes[vPlain.size() + nAt] = u;
        return vBytes;
    };
    EXPECT_EQ(FileOf(read(with(19, 'X'), false)->Serialize()), vPlain) << "unknown tag";
    EXPECT_EQ(FileOf(read(with(15, 13), false)->Serialize()), vPlain) << "unknown owner";
    for (const uint8_t uCount : {0, 2}) EXPECT_THROW(read(with(31, uCount), false), deserialize_error);
    const auto spFar = read(with(45, 9), false); // behind the path's end
    EXPECT_EQ(spFar->GetStream().GetAlphaPoints()[0]->GetParameter(), CDualValue<uint32_t>(0x20000));
}

TEST(PathWire, OtherVersionsAreRead) {
    const auto spStroke = MakeStroke();
    spStroke->GetStream().SetWave(true, {16, 7});
    const TBytes vBytes = BytesOf(*spStroke);
    EXPECT_EQ(BytesOf(*ReadStroke(vBytes, 9)), vBytes);
    TBytes vOld = vBytes;
    vOld.erase(vOld.begin() + AT_WAVE, vOld.begin() + AT_WAVE + 9);
    const auto spOld = ReadStroke(vOld, 0);
    EXPECT_EQ(BytesOf(*spOld), BytesOf(*MakeStroke())); // off, 32, 4
}

TEST(PathWire, AbsentAndOddValuesAreRead) {
    const auto hasFore = [](const TBytes& v) {
        return ReadStroke(v)->GetStream().GetControlPoints().front()->HasFore();
    };
    EXPECT_TRUE(hasFore(With(AT_HANDLE, 1)));
    EXPECT_FALSE(hasFore(With(AT_HANDLE, 0)) || hasFore(With(AT_HANDLE, 0xFFFFFFFF)));
    const auto spNone = ReadStroke(With(AT_LEFT, 0xFFFFFFFF));
    const auto spMark = spNone->GetStream().GetWidthPoints().front();
    EXPECT_FALSE(spMark->HasSide(SIDE_LEFT));
    EXPECT_EQ(spMark->GetWidth(SIDE_LEFT, STATE_COMMITTED), 0u);
    EXPECT_EQ(BytesOf(*spNone), With(AT_LEFT, 0xFFFFFFFF));
    EXPECT_EQ(*spMark->LeftHandle(), CDualValue<uint32_t>(0));
    EXPECT_TRUE(spMark->HasSide(SIDE_LEFT));
    EXPECT_EQ(BytesOf(*ReadStroke(With(AT_MARK, 0xFFFFFFFF))), With(AT_MARK, 0x20000)); // the path's end
    EXPECT_EQ(BytesOf(*ReadStroke(With(AT_FLAT, 3))), With(AT_FLAT, 10));
    TBytes vFar = With(AT_ANCHOR, 0xFF800000);
    EXPECT_EQ(BytesOf(*ReadStroke(vFar)), vFar);
}

TEST(PathWire, BrokenPathsAreRefused) {
    const TBytes vWhole = BytesOf(*MakeStroke());
    const auto refuse = [](size_t nAt, std::initializer_list<uint32_t> lstValues) {
        for (const uint32_t u : lstValues)
            EXPECT_THROW(ReadStroke(With(nAt, u)), deserialize_error) << nAt << ' ' << u;
    };
    refuse(AT_WIDTH, {0x100001});
    refuse(4, {0x7FFFFFFF, 1});
    refuse(8, {0xFFFFFFFF, 3});
    refuse(AT_BEGIN, {0, 4, TERM_FLAT});
    refuse(AT_WAVE_WIDTH, {0x100001});
    refuse(AT_ANCHORS, {2, 0xFFFFFFFF});
    refuse(AT_ANCHOR, {0x800001, 0xFF7FFFFF});
    refuse(AT_HANDLE, {0x800001});
    for (size_t n = 0; n < vWhole.size(); n += 3)
        EXPECT_THROW(ReadStroke({vWhole.data(), vWhole.data() + n}), deserialize_error) << n;
    EXPECT_THROW(Read(CPathControlPoint::CHUNK_TAG, 0, {}), deserialize_error);
    CSerializer chunk;
    chunk.SetTag(CClosedPathStream::CHUNK_TAG, 1);
    chunk.WriteBytes(vWhole.data(), vWhole.size());
    CDeserializer other = OpenChunk(FileOf(chunk));
    EXPECT_THROW(COpenPathObject().Deserialize(other), deserialize_error);
    EXPECT_THROW(Read(CClosedPathStream::CHUNK_TAG, 0, vWhole), deserialize_error);
}

TEST(PathWire, SmallPathsCannotTakeGigabytes) {
    COpenPathObject wave;
    for (int32_t n = 0; n < 120; ++n) AddAnchor(wave.GetStream(), {n % 2 ? 0x20000 : 0, n});
    wave.GetStream().SetWave(true, {1, 1});
    EXPECT_THROW(ReadStroke(BytesOf(wave)), deserialize_error);
    wave.GetStream().SetWave(false, {1, 1});
    EXPECT_EQ(BytesOf(*ReadStroke(BytesOf(wave))), BytesOf(wave));
    // Parameters number no more anchors.
    CClosedPathStream shape;
    for (int n = 0; n < 0xFFFF; ++n) shape.AppendControlPoint({n, n});
    EXPECT_THROW(shape.AppendControlPoint({}), refused_error);
    TBytes vBytes = shape.Serialize().GetPayload();
    EXPECT_EQ(Read(CClosedPathStream::CHUNK_TAG, 0, vBytes)->GetStream().ControlPointCount(), 0xFFFFu);
    vBytes.insert(vBytes.end(), vBytes.end() - 36, vBytes.end());
    vBytes[13] = 1, vBytes[14] = vBytes[15] = 0; // one more
    const uint32_t uLength = static_cast<uint32_t>(vBytes.size()) - 12;
    for (size_t n = 0; n < 4; ++n) vBytes[8 + n] = static_cast<uint8_t>(uLength >> (24 - 8 * n));
    EXPECT_THROW(Read(CClosedPathStream::CHUNK_TAG, 0, vBytes), deserialize_error);
}
