#include "core/RasterTransform/TransformDrag.h"
#include "core/Tools/Tools.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

std::string FormatCorner(TPosition pt) {
    std::ostringstream text;
    text << pt.x << ',' << pt.y << ' ';
    return text.str();
}

} // namespace

TEST(TransformMap, FoldedAndVanishingCornersAreRefused) {
    const TQuad square = QuadOf({0, 0, 100, 100});
    EXPECT_TRUE(IsQuadUsable(square));
    EXPECT_TRUE(IsQuadUsable({square[1], square[0], square[3], square[2]})) << "flipped";
    const auto with = [&](TPosition pt) { return TQuad{square[0], square[1], pt, square[3]}; };
    EXPECT_TRUE(IsQuadUsable(with({52, 52})));
    for (const TPosition& pt : {TPosition{50, 50}, {30, 30}, {-50, -50}, {0, 100}, {1e9, 1e9}, {NAN, 0}})
        EXPECT_FALSE(IsQuadUsable(with(pt))) << pt.x;
    EXPECT_FALSE(IsQuadUsable(QuadOf({5, 5, 5, 90})));
}

TEST(TransformDrag, CornersFollowTheirModes) {
    using EKind = TTransformGrip::EKind;
    const TQuad square = QuadOf({10, 20, 110, 70}); // 100 by 50
    const auto drag = [&](ETransformMode mode, EKind kind, size_t nCorner, TPosition from, TPosition to,
                          uint32_t flags = 0) {
        const TQuad quad = DragQuad({mode, {kind, nCorner}, square, from}, to, flags);
        std::string str;
        for (const TPosition& pt : quad) str += FormatCorner(pt);
        return str;
    };
    EXPECT_EQ(drag(TRANSFORM_SCALE, EKind::Corner, 2, {109, 70}, {128.7, 90.1}),
              "10,20 130,20 130,90 10,90 ");
    EXPECT_EQ(drag(TRANSFORM_SCALE, EKind::Corner, 2, {110, 70}, {130, 70}, POINTER_ALT),
              "-10,20 130,20 130,70 -10,70 ");
    EXPECT_EQ(drag(TRANSFORM_SCALE, EKind::Corner, 0, {10, 20}, {-90, -30}, POINTER_SHIFT),
              "-90,-30 110,-30 110,70 -90,70 ");
    EXPECT_EQ(drag(TRANSFORM_SCALE, EKind::Corner, 1, {110, 20}, {-40, 20}), "10,20 -40,20 -40,70 10,70 ")
        << "flipped";
    EXPECT_EQ(drag(TRANSFORM_SKEW, EKind::Corner, 1, {110, 20}, {140, 25}), "40,20 140,20 110,70 10,70 ");
    EXPECT_EQ(drag(TRANSFORM_SKEW, EKind::Corner, 1, {110, 20}, {113, 30}), "10,20 110,30 110,80 10,70 ");
    EXPECT_EQ(drag(TRANSFORM_SKEW, EKind::Corner, 1, {110, 20}, {140, 25}, POINTER_ALT),
              "40,20 140,20 80,70 -20,70 ");
    EXPECT_EQ(drag(TRANSFORM_ROTATE, EKind::Corner, 0, {60, 0}, {900, 48}, POINTER_SHIFT),
              "85,-5 85,95 35,95 35,-5 ");
    EXPECT_EQ(drag(TRANSFORM_FREE, EKind::Outside, 0, {60, 0}, {60, 300}), "110,70 10,70 10,20 110,20 ");
    EXPECT_EQ(drag(TRANSFORM_FREE, EKind::Corner, 3, {10, 70}, {5.5, 80}), "10,20 110,20 110,70 5.5,80 ");
    EXPECT_EQ(drag(TRANSFORM_FREE, EKind::Corner, 3, {10, 70}, {0, 80}, POINTER_ALT),
              "10,20 120,10 110,70 0,80 ");
    EXPECT_EQ(drag(TRANSFORM_FREE, EKind::Inside, 0, {50, 50}, {57.4, 52.6}), "17,23 117,23 117,73 17,73 ");
    EXPECT_EQ(drag(TRANSFORM_FREE, EKind::Inside, 0, {50, 50}, {57, 52}, POINTER_SHIFT),
              "17,20 117,20 117,70 17,70 ");
    // 101 by 50: a quarter turn lies half a pixel off, and is moved toward the old place.
    const auto fixed = [&](EFixedTransform change) {
        std::string str;
        for (const TPosition& pt : FixedQuad(QuadOf({10, 20, 111, 70}), change)) str += FormatCorner(pt);
        return str;
    };
    EXPECT_EQ(fixed(EFixedTransform::TurnRight), "85,-5 85,96 35,96 35,-5 ");
    EXPECT_EQ(fixed(EFixedTransform::TurnLeft), "35,96 35,-5 85,-5 85,96 ");
    EXPECT_EQ(fixed(EFixedTransform::TurnHalf), "111,70 10,70 10,20 111,20 ");
    EXPECT_EQ(fixed(EFixedTransform::FlipAcross), "111,20 10,20 10,70 111,70 ");
    EXPECT_EQ(fixed(EFixedTransform::FlipDown), "10,70 111,70 111,20 10,20 ");
}
