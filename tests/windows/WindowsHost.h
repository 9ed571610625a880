// A host for Windows that loads the filter module from a folder of its own.
#pragma once

#include "app/common/ScriptSettings.h"
#include "host/PictureHost/PictureHost.h"
#include "system/files/FilePath.h"
#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <windows.h>

#undef FindResource // the application's own function

constexpr int SIDE = 100;
constexpr size_t MIDDLE = 50 * SIDE + 50;
/// A black line of the mouse through the middle.
constexpr char DRAW[] = R"({"wait":2000}
{"mouse":{"message":"ldown","x":80,"y":400}}
{"mouse":{"x":400,"y":400}}
{"mouse":{"x":720,"y":400}}
{"mouse":{"message":"lup","x":720,"y":400}}
{"wait":500}
{"answer":{"box":"no"}}
{"command":"file-close"}
)";

inline THostPicture WhitePicture() {
    const THostPicture::TPlane vWhite(SIDE * SIDE, 255);
    return {CRect({0, 0}, {SIDE, SIDE}), vWhite, vWhite, vWhite, {}, {}};
}

class CWindowsHost : public testing::Test {
protected:
    CWindowsHost() : m_pathModule(m_folder.GetPath() / PathOf(L"プラグイン 𠮷") / "vellumcraft.8bf") {
        std::filesystem::create_directories(m_pathModule.parent_path());
        std::filesystem::copy_file(PathOf(std::string_view(VELLUM_MODULE)), m_pathModule);
    }
    HMODULE Load() {
        const HMODULE hModule = LoadLibraryW(m_pathModule.c_str());
        EXPECT_TRUE(hModule) << GetLastError();
        return hModule;
    }
    static hostabi::PluginMainProc MainOf(HMODULE hModule) {
        return reinterpret_cast<hostabi::PluginMainProc>(
            reinterpret_cast<void*>(GetProcAddress(hModule, "PluginMain")));
    }
    bool IsLoaded() const { return GetModuleHandleW(m_pathModule.c_str()) != nullptr; }
    std::filesystem::path WriteScript(const char* pszLines) {
        const auto path = m_folder.File("script.jsonl");
        CFileStore().Replace(TextOf(path), pszLines);
        return path;
    }

    CTempFolder m_folder;
    const std::filesystem::path m_pathModule;
};
