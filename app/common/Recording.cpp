#include "app/common/Recording.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Dialogs.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"

#include <cstdio>

std::wstring FindRecordPath(CIniConfig& config) {
    if (const std::string strPath = GetVariable(RECORD_VARIABLE); !strPath.empty()) return FromUtf8(strPath);
    return config.GetSection(L"Session")->GetString(L"Record", L"");
}

CRecording::CRecording(const TPlatform& platform, std::wstring strPath)
    : m_platform(platform), m_strPath(std::move(strPath)) {
    if (!m_strPath.empty())
        m_recorder.emplace(platform, [this](std::string_view strLine) { return Write(strLine); });
}

CRecording::~CRecording() {
    if (m_file && m_file->IsOpen() && m_recorder->HasFailed())
        std::fprintf(stderr, "vellumcraft: %s: the end of the session could not be recorded\n",
                     ToUtf8(m_strPath).c_str());
}

void CRecording::NoteLine(const std::string& strLine) {
    if (m_recorder) m_recorder->NoteLine(strLine);
}

bool CRecording::Write(std::string_view strLine) {
    if (m_file) return m_file->Write(strLine);
    m_file.emplace(PathOf(m_strPath));
    if (m_file->IsOpen()) return m_file->Write(strLine);
    m_platform.boxes.Show(nullptr, DescribeFileFailure(g_strFileNotOpened, m_strPath, m_file->GetFailure()),
                          L"Vellumcraft - Error", EBoxKind::Error);
    return false;
}
