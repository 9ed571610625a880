#include "host/KeepResult.h"
#include "core/Base/Color.h"
#include "core/ImageFile/ImageFile.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "host/HostImage.h"
#include "system/environment/Locations.h"
#include "system/files/SnapshotStore.h"
#include "tests/support/Planes.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

/// A translucent picture whose red is its column.
class CColumns : public IHostImage {
public:
    CRect GetRect() override { return {-5, 7, 115, 57}; }
    std::vector<THostChannel> GetChannels() override { return {{ctRed, 0}, {ctTransparency, 1}}; }
    bool Open() override { return true; }
    void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override {
        for (int32_t y = 0; y < rc.Height(); ++y)
            for (int32_t x = 0; x < rc.Width(); ++x)
                memory.pData[(memory.nBitOffset + y * memory.nRowBits + x * memory.nColBits) / 8] =
                    static_cast<uint8_t>(channel.uId == 0 ? rc.left + x + 5 : 200);
    }
    void Write(const THostChannel&, const CRect&, const TPixelMemory&) override {}
};

TEST(KeepResult, TheNextSessionFindsTheResultAsADocument) {
    CTestSettings folder;
    CLocations locations;
    {
        CSnapshotStore ended(locations);
        CColumns image;
        ASSERT_TRUE(KeepResult(image, L"線画.xcf", ended));
    }
    CSnapshotStore store(locations);
    const auto vLeft = store.FindLeft();
    ASSERT_EQ(vLeft.size(), 1U);
    EXPECT_EQ(vLeft[0].note.strTitle, L"線画.xcf");
    const auto spCanvas = ReadProject(store.Open(vLeft[0].strName), vLeft[0].note.strTitle);
    ASSERT_EQ(spCanvas->GetRoot().GetChildren().size(), 1U);
    EXPECT_EQ(spCanvas->GetRoot().GetActiveChild(), spCanvas->GetRoot().GetChildren().front());
    const auto spFlat = spCanvas->Flatten();
    ASSERT_EQ(spFlat->GetSize(), CSize(120, 50));
    EXPECT_EQ(PixelAt(*spFlat, {100, 49}), MakeColor(100, 0, 0) | 200U << 24);
}

} // namespace
