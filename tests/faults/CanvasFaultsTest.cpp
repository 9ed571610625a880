#include "core/ImageOperation/RescaleCanvas.h"
#include "core/RasterMove/SelectionCommands.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

#include <gtest/gtest.h>

TEST(CanvasFaults, AChangeOfSizeIsDoneOrNot) {
    const auto spCanvas = CreateCanvas({130, 100});
    std::mt19937 random(5);
    spCanvas->GetRoot().AddLayer(MakeRandomLayer(spCanvas, random), -1, false);
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->InsertPath(MakeStroke());
    spCanvas->GetRoot().AddLayer(spVector, -1, false);
    SelectAll(spCanvas);
    const auto state = [&] {
        return std::tuple(SaveToBytes(*spCanvas), spCanvas->GetSize(), spCanvas->GetPlace(),
                          spCanvas->GetSelect(), spCanvas->GetHistory().GetUndoList().size());
    };
    const auto before = state();
    for (const bool bRescale : {false, true}) {
        uint64_t uFail = 0;
        for (bool bDone = false; !bDone;) {
            const CFailingMemory memory(++uFail);
            try {
                if (bRescale)
                    RescaleCanvas(spCanvas, {97, 120}, ERescaleMode::Bicubic);
                else
                    ResizeCanvas(spCanvas, {150, 80}, ShiftChange({7, -9}), L"画像サイズ変更");
                bDone = true;
            } catch (const std::bad_alloc&) {
                const CUnfailingMemory unfailing;
                ASSERT_TRUE(state() == before) << uFail;
            }
        }
        EXPECT_GT(uFail, 50u);
        spCanvas->GetHistory().Undo();
        EXPECT_TRUE(state() == before);
    }
}
