// Saving through a process that dies: what stands under the document's name is always a whole document.
#include "core/Base/Text.h"
#include "core/ImageFile/ImageFile.h"
#include "system/FileStore.h"
#include "system/ImageCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

TEST(SaveSafety, AKilledProcessLeavesOneWholeDocument) {
    constexpr int KILLS = 50;
    const CTempFolder folder;
    const std::wstring strPath = FromUtf8(folder.File("頁.vlm").native());
    CFileStore files;
    CImageCodecs codecs(files);
    std::mt19937 random(7);
    // Two documents of very different lengths, told apart by their pixels.
    boost::shared_ptr<CCanvasBuffer> aspCanvas[2];
    std::vector<uint8_t> avPixels[2];
    for (size_t n = 0; n < 2; ++n) {
        aspCanvas[n] = CreateCanvas({190, 96});
        FillRandomTree(aspCanvas[n], n ? 12 : 2, random);
        avPixels[n] = PixelsOf(*aspCanvas[n]->Flatten());
    }
    SaveDocument(*aspCanvas[0], strPath, files);
    std::set<size_t> setSeen;
    for (int nKill = 0; nKill < KILLS; ++nKill) {
        const pid_t id = fork();
        if (id == 0)
            for (size_t n = 1;; n = 1 - n) SaveDocument(*aspCanvas[n], strPath, files);
        usleep(1000 + random() % 40000);
        kill(id, SIGKILL);
        waitpid(id, nullptr, 0);
        const std::vector<uint8_t> vPixels = PixelsOf(*OpenDocument(strPath, files, codecs)->Flatten());
        const size_t nFound = vPixels == avPixels[1] ? 1 : 0;
        ASSERT_EQ(vPixels, avPixels[nFound]) << nKill;
        setSeen.insert(nFound);
    }
    EXPECT_EQ(setSeen.size(), 2u); // the kills fell between the renames too
}
