#include "core/PathWidthTool/PathMarks.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>

TEST(DragFaults, LettingGoTakesNoMemoryAndADragThatCannotBeginChangesNothing) {
    using TBegin = std::function<boost::shared_ptr<CDualValue<CPoint>>(COpenPathStream&)>;
    const auto anchor = [](auto& s, int n) { return *std::next(s.GetControlPoints().begin(), n); };
    const std::vector<TBegin> vDrags{
        [&](auto& s) { return anchor(s, 1)->DragAnchorPoint(false); },
        [&](auto& s) { return anchor(s, 1)->DragForeHandle(true); },
        [&](auto& s) { return anchor(s, 2)->DragBackHandle(true); }, // it has none yet
        [](auto& s) { return s.GetWidthPoints()[0]->DragAnchorPoint(false); },
        [](auto& s) { return s.GetWidthPoints()[0]->DragHandleImpl(true, true); },
        [](auto& s) { return s.GetTransPoints()[1]->DragAnchorPoint(false); },
        [](auto& s) { return s.GetTransPoints()[1]->DragHandleImpl(true); },
        [](auto& s) {
            return boost::static_pointer_cast<COpenPathRoundTerm>(s.GetTerm(true))->DragGrowHandle(false);
        },
        [](auto& s) {
            return boost::static_pointer_cast<COpenPathFlatTerm>(s.GetTerm(false))
                ->DragHandleImpl(true, true);
        }};
    for (size_t idx = 0; idx < vDrags.size(); ++idx) {
        SCOPED_TRACE(idx);
        const auto spPath = MakeStroke();
        COpenPathStream& stream = spPath->GetStream();
        const TBytes vBytes = BytesOf(*spPath);
        boost::shared_ptr<CDualValue<CPoint>> spCopy;
        for (uint64_t uFail = 1; !spCopy; ++uFail) {
            const CFailingMemory memory(uFail);
            try {
                spCopy = vDrags[idx](stream);
            } catch (const std::bad_alloc&) {
                EXPECT_FALSE(anchor(stream, 2)->HasBack());
            }
        }
        EXPECT_EQ(BytesOf(*spPath), vBytes);
        spCopy->Set((*spCopy)[STATE_COMMITTED] + CPoint{70, 90});
        {
            const CFailingMemory memory(1, {.bOn = true});
            spCopy.reset();
            EXPECT_EQ(CFailingMemory::GetCount(), 0u);
        }
        EXPECT_NE(BytesOf(*spPath), vBytes);
    }
}

TEST(DragFaults, AChangeOfMarksIsDoneOrNot) {
    const auto spPath = MakeStroke();
    const TBytes vBefore = BytesOf(*spPath);
    CHistoryStream history;
    // Repeats an operation with another allocation that fails, or all from it on, until it succeeds.
    const auto withFaults = [&](const TBytes& vAfter, TFailing failing, const std::function<void()>& fn) {
        const TBytes vNow = BytesOf(*spPath);
        const size_t nUndo = history.GetUndoList().size();
        bool bDone = false;
        for (uint64_t uFail = 1; !bDone; ++uFail) {
            SCOPED_TRACE(uFail);
            try {
                const CFailingMemory memory(uFail, failing);
                fn();
                bDone = true;
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(BytesOf(*spPath) == vNow);
                EXPECT_EQ(history.GetUndoList().size(), nUndo);
            }
        }
        EXPECT_TRUE(BytesOf(*spPath) == vAfter);
    };
    const auto spOther = MakeStroke(); // the marks' values after the removal
    COpenPathStream& other = spOther->GetStream();
    other.SetWidthPoints({other.GetWidthPoints()[1]});
    const auto fnRegister = [&](const auto& sp) { history.Register(sp); };
    withFaults(BytesOf(*spOther), {},
               [&] { RemoveMark(spPath, *spPath->GetStream().GetWidthPoints().front(), fnRegister); });
    for (const bool bOn : {false, true}) {
        withFaults(vBefore, {.bOn = bOn}, [&] { history.Undo(); });
        withFaults(BytesOf(*spOther), {.bOn = bOn}, [&] { history.Redo(); });
        const auto spFresh = MakeStroke();
        spFresh->GetStream().SetWidthPoints({spFresh->GetStream().GetWidthPoints()[1]});
        spFresh->Update();
        EXPECT_TRUE(spPath->GetStream().GetShape(STATE_COMMITTED) ==
                    spFresh->GetStream().GetShape(STATE_COMMITTED));
    }
}
