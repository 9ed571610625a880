#include "app/session/Worker.h"
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

#include <windows.h>

namespace {

// The batch gets a console without a window, and this process joins it to press Ctrl+C there.
class CInterrupt : public CProgramTest {
protected:
    CInterrupt() {
        FreeConsole();
        SetConsoleCtrlHandler(nullptr, FALSE); // inherited by the batch
    }
    ~CInterrupt() override {
        SetConsoleCtrlHandler(nullptr, FALSE);
        AttachConsole(ATTACH_PARENT_PROCESS);
    }
    bool WaitFor(const char* pszSaid) {
        for (int n = 0; n < 2000 && !Says(pszSaid); ++n) {
            Sleep(10);
            m_strSaid = m_files.Read(Path("said")).value_or("");
        }
        return Says(pszSaid);
    }
};

TEST_F(CInterrupt, EndsTheRunningPageAndBeginsNoOther) {
    for (int n = 0; n < 6; ++n)
        SavePicture("pages/" + std::to_string(n) + ".png", QImage(25, 20, QImage::Format_RGB32));
    Write("script", "{\"wait\":1}");
    Write("temp/mark", "");
    const std::string strFolder = Utf8Of(m_folder.GetPath()), strOldTemp = GetVariable("TMP");
    SetVariable("TMP", strFolder + "/temp");
    const TProcessId id = StartWorker({VELLUM_SESSION, "--jobs", "1", "--each", strFolder + "/pages/*.png",
                                       "--out-dir", strFolder + "/done", strFolder + "/script"},
                                      m_folder.File("said"));
    SetVariable("TMP", strOldTemp);
    EXPECT_TRUE(WaitFor("0.png: done")) << m_strSaid;
    EXPECT_TRUE(AttachConsole(GetProcessId(reinterpret_cast<HANDLE>(id)))) << GetLastError();
    // The next worker: with the batch and this process it makes three.
    DWORD aProcesses[4];
    for (int n = 0; n < 1000 && GetConsoleProcessList(aProcesses, 4) != 3; ++n) Sleep(10);
    SetConsoleCtrlHandler(nullptr, TRUE);
    EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)) << GetLastError();
    FreeConsole();
    const TEnded ended = WaitForWorker();
    EXPECT_TRUE(WaitFor(" seconds")) << m_strSaid;
    EXPECT_EQ(DescribeEnd(ended, m_folder.File("none")), "exit code 1");
    EXPECT_TRUE(Says(" 4 not begun, ")) << m_strSaid;
    EXPECT_TRUE(std::filesystem::exists(m_folder.File("done/0.png")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.File("done/1.png"))) << "its worker is ended too";
    const auto temp = std::filesystem::directory_iterator(m_folder.File("temp"));
    EXPECT_EQ(std::ranges::distance(temp), 1) << "something is left behind";
}

} // namespace
