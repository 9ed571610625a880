#include "core/PathSelect/StrokeRegion.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

namespace {

// Ink from 0 to 960 and 40 to each side, with round ends 40 long.
const boost::shared_ptr<COpenPathObject> LEVEL = MakeEvenStroke();

bool Holds(const CStrokeRegion& region) { return region.Holds(*LEVEL); }
bool Touches(const CStrokeRegion& region) { return region.Touches(*LEVEL); }

// A U whose gap lies between two points of the stroke's outline.
CStrokeRegion Gap() {
    return CStrokeRegion(std::vector<CPoint>{{-100, -100},
                                             {560, -100},
                                             {560, 200},
                                             {562, 200},
                                             {562, -100},
                                             {1100, -100},
                                             {1100, 300},
                                             {-100, 300}});
}

} // namespace

TEST(StrokeRegion, HoldsInkThatLiesInsideAsAWhole) {
    EXPECT_TRUE(Holds({{-48, -48}, {1008, 48}}));
    EXPECT_TRUE(Holds({{1008, 48}, {-48, -48}})) << "from the other corner";
    EXPECT_FALSE(Holds({{-48, -48}, {1008, 36}}));
    EXPECT_FALSE(Holds({{-20, -48}, {1008, 48}})) << "without the end's ink";
    EXPECT_FALSE(Holds(Gap()));
    EXPECT_TRUE(Touches(Gap()));
    EXPECT_FALSE(Holds(CStrokeRegion(std::vector<CPoint>())));
}

TEST(StrokeRegion, TouchesInkAtOneOfItsPlaces) {
    EXPECT_TRUE(Touches({{300, 30}, {560, 200}}));
    EXPECT_FALSE(Touches({{300, 44}, {560, 200}}));
    EXPECT_TRUE(Touches({{300, -10}, {500, 10}})) << "in the middle of the ink";
    EXPECT_TRUE(Touches({{560, -200}, {562, 200}})) << "across it";
    EXPECT_TRUE(Touches({{-100, -100}, {1100, 100}}));
    EXPECT_FALSE(Touches({{-200, -200}, {-60, 200}}));
    // Between the halves of a ring.
    CClosedPathObject ring;
    for (const CPoint pt : {CPoint{0, 0}, {800, 0}, {800, 800}, {700, 800}, {700, 100}, {0, 100}})
        AddAnchor(ring.GetStream(), pt);
    ring.Update();
    EXPECT_FALSE(CStrokeRegion({100, 200}, {600, 700}).Touches(ring));
    EXPECT_TRUE(CStrokeRegion({100, 200}, {720, 700}).Touches(ring));
}

TEST(StrokeRegion, IsTheInsideByEvenAndOdd) {
    // A bow: its crossing divides two triangles.
    const CStrokeRegion bow(std::vector<CPoint>{{0, 0}, {100, 100}, {100, 0}, {0, 100}});
    for (const CPoint pt : {CPoint{10, 50}, {90, 50}, {50, 50}, {100, 0}}) EXPECT_TRUE(bow.Contains(pt));
    for (const CPoint pt : {CPoint{50, 10}, {50, 90}, {101, 50}, {-1, 50}}) EXPECT_FALSE(bow.Contains(pt));
    EXPECT_EQ(bow.GetBounds(), CRect(0, 0, 101, 101));
}
