#include "core/ImageOperation/PixelOperation.h"
#include "core/ImageOperation/RescaleCanvas.h"
#include "core/RasterMove/SelectionCommands.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>

TEST(CanvasFaults, AnOperationOnTheImageIsDoneOrNot) {
    const auto spCanvas = CreateCanvas({130, 100});
    std::mt19937 random(5);
    const auto spLayer = MakeRandomLayer(spCanvas, random);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->InsertPath(MakeStroke());
    spCanvas->GetRoot().AddLayer(spVector, -1, false);
    SelectAll(spCanvas);
    const TPixelOperation fnLevels = LevelOperation(MakeLevelTable({100, 101, 1}), 15);
    const std::function<void()> aChanges[] = {
        [&] { EXPECT_TRUE(ChangePixels(spLayer, fnLevels, L"レベル補正")); },
        [&] {
            ResizeCanvas(spCanvas, {150, 80}, ShiftChange({7, -9}), L"画像サイズ変更");
        },
        [&] {
            RescaleCanvas(spCanvas, {97, 120}, ERescaleMode::Bicubic);
        }};
    const auto state = [&] {
        return std::tuple(SaveToBytes(*spCanvas), spCanvas->GetSize(), spCanvas->GetPlace(),
                          spCanvas->GetSelect(), spCanvas->GetHistory().GetUndoList().size());
    };
    const auto before = state();
    for (const auto& fnChange : aChanges) {
        bool bDone = false;
        uint64_t uFail = 0;
        while (!bDone) {
            const CFailingMemory memory(++uFail);
            try {
                fnChange();
                bDone = true;
            } catch (const std::bad_alloc&) {
                const CUnfailingMemory unfailing;
                ASSERT_TRUE(state() == before) << uFail;
            }
        }
        EXPECT_GT(uFail, 5u);
        spCanvas->GetHistory().Undo();
        EXPECT_TRUE(state() == before);
    }
}
