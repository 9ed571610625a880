#include "core/PathErase/PathEraser.h"
#include "core/Commands/CommandIds.h"
#include "tests/support/PathSession.h"
#include "tests/support/Paths.h"

namespace {

using TLabels = std::vector<std::wstring>;

/// Even strokes of half-width 40, 960 long, with round ends, which stand out by 40.
class PathEraser : public testing::Test, protected CPathSession {
protected:
    void Play(EEraseMode mode, const std::function<void()>& fn) {
        CPathSession::Play(TOOL_PATH_ERASER, [&] {
            Tool().SetMode(mode);
            Tool().SetRadius(40);
            fn();
        });
    }
    CPathEraser& Tool() { return dynamic_cast<CPathEraser&>(*g_wpActiveTool.lock()); }
    boost::shared_ptr<COpenPathObject> Add(CPoint pt) {
        const auto spPath = MakeEvenStroke(pt);
        Layer().InsertPath(spPath);
        return spPath;
    }
    size_t Count() const { return Layer().GetPaths().size(); }
    bool HasInk(CPoint pt) {
        for (const auto& spPath : Layer().GetPaths())
            if (spPath->HasInkAt(pt)) return true;
        return false;
    }
};

} // namespace

TEST_F(PathEraser, TheTouchedPartGoesAndTheRestStaysAsItWas) {
    Add({160, 160});
    Add({160, 400});
    Add({160, 800});
    Play(ERASE_TOUCHED, [&] {
        const TBytes vStart = Bytes();
        const auto vPicture = Picture();
        Click({640, 400});
        ASSERT_EQ(Count(), 4u);
        EXPECT_EQ(Labels(), TLabels{L"ベクター消しゴム"});
        // The disc of 40 and the paint of 40: the caps of the new ends touch the disc.
        EXPECT_NEAR(Anchors(1).back().x, 560, 1);
        EXPECT_NEAR(Anchors(2).front().x, 720, 1);
        EXPECT_EQ(Anchors(1).front(), (CPoint{160, 400}));
        EXPECT_EQ(Anchors(3).front(), (CPoint{160, 800})) << "the pieces take the stroke's place";
        EXPECT_TRUE(HasInk({590, 400}) && HasInk({690, 400}));
        EXPECT_FALSE(HasInk({608, 400}) || HasInk({672, 400}) || HasInk({640, 430}) || HasInk({640, 370}));
        const auto vErased = Picture();
        size_t nChanged = 0, nOutside = 0;
        for (size_t n = 0; n < vErased.size(); ++n) {
            const size_t nPixel = n / (vErased.size() / (400 * 300)), x = nPixel % 400, y = nPixel / 400;
            if (vErased[n] == vPicture[n]) continue;
            ++nChanged;
            nOutside += x < 69 || x > 91 || y < 44 || y > 55;
        }
        EXPECT_GT(nChanged, 100u);
        EXPECT_EQ(nOutside, 0u);
        const TBytes vAfter = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Picture(), vPicture);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vAfter);
        EXPECT_EQ(Picture(), vErased);
    });
}

TEST_F(PathEraser, ADragTakesAllOnItsWayAsOneStep) {
    for (int n = 0; n < 6; ++n) Add({160, 200 + 240 * n});
    Play(ERASE_TOUCHED, [&] {
        const TBytes vStart = Bytes();
        Layer().SelectPath(Layer().GetPaths().front());
        // A fast hand: one event, from above the first to below the fourth; then back beside them.
        Press({400, 40});
        Move({400, 1080});
        EXPECT_EQ(Count(), 10u) << "seen at once";
        EXPECT_TRUE(Labels().empty());
        EXPECT_FALSE(Layer().GetSelectedPath());
        Move({640, 1080});
        Move({640, 40});
        Release({1000, 40});
        EXPECT_EQ(Count(), 14u);
        EXPECT_EQ(Labels(), TLabels{L"ベクター消しゴム"});
        EXPECT_FALSE(Canvas().GetHistory().IsUnfinished());
        const TBytes vAfter = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Layer().GetSelectedPath(), Layer().GetPaths().front());
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vAfter);
        Click({400, 240}); // nothing there any more
        EXPECT_EQ(Labels().size(), 1u);
    });
}
