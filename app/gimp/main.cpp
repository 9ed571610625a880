// The plug-in for GIMP, which starts this program anew for each call.
#include "app/common/Module.h"
#include "app/common/RunWithPlatform.h"
#include "app/common/ScriptSettings.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "host/FilterStart.h"
#include "host/Gimp/GimpImage.h"
#include "host/Gimp/GimpProcedure.h"
#include "host/KeepResult.h"
#include "system/files/SnapshotStore.h"
#include "ui/base/QtApplication.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include <libgimp/gimp.h>

namespace {

int g_nFromGimp = -1; // descriptor

/// Plays the script with separate settings, else runs the user's session. Raises refused_error when the
/// script fails, internal_error when there is no window system.
void RunSession(const TGimpCall& call, CGimpImage& image) {
    const auto run = [&](CModule& module) {
        RunWithPlatform(module, [&](const TPlatform& platform) { FilterStart(image, platform); });
        EndApplication();
    };
    if (call.strScript.empty()) {
        CModule module;
        return run(module);
    }
    if (!std::filesystem::is_regular_file(call.strScript))
        throw refused_error(L"スクリプトがありません: " + FromUtf8(call.strScript));
    CFileStore files;
    const CScriptSettings settings(call.strScript, call.bWindows, files);
    {
        CModule module;
        run(module);
    }
    if (const std::string strFailure = settings.GetFailure(); !strFailure.empty())
        throw refused_error(L"スクリプトが失敗しました: " + FromUtf8(strFailure));
}

/// Passes the result to GIMP. What GIMP cannot take is offered by the next session as an unsaved document.
/// Returns a message for the user, empty when everything is as expected.
std::wstring DeliverResult(CGimpImage& image) {
    const bool bConnected = IsConnected(g_nFromGimp);
    const auto delivery = bConnected ? image.Deliver() : CGimpImage::EDelivery::Refused;
    switch (delivery) {
    case CGimpImage::EDelivery::Drawable:
        return {};
    case CGimpImage::EDelivery::NewLayer:
        return L"元のレイヤーか選択範囲が変わったため、結果を新しいレイヤーに入れました。";
    case CGimpImage::EDelivery::NewImage:
        return L"元の画像が閉じられたため、結果を新しい画像に入れました。";
    case CGimpImage::EDelivery::Refused:
        break;
    }
    CLocations locations;
    CSnapshotStore snapshots(locations);
    const bool bKept = KeepResult(image, image.GetName(), snapshots);
    throw refused_error(bKept ? L"GIMPに結果を渡せませんでした。次に起動したときに復元できます。"
                              : L"GIMPに結果を渡せず、保存もできませんでした。");
}

void Call(int32_t nParams, const GimpParam* pParams) {
    const TGimpCall call = ReadCall(nParams, pParams);
    OutliveGimp();
    gegl_init(nullptr, nullptr);
    CGimpImage image(call.nDrawable);
    if (const std::wstring strObstacle = image.GetObstacle(); !strObstacle.empty())
        throw refused_error(strObstacle);
    RunSession(call, image);
    if (!image.IsChanged()) return;
    const std::wstring strMessage = DeliverResult(image);
    if (call.bShowsImage) gimp_displays_flush();
    if (!strMessage.empty()) gimp_message(ToUtf8(strMessage).c_str());
}

void OnRun(const gchar*, gint nParams, const GimpParam* pParams, gint* pnValues, GimpParam** ppValues) {
    // libgimp's handlers end the process as if it were well, or wait for a debugger. A session that crashes
    // must end at once, so that the next one finds its snapshots.
    for (const int nSignal : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) std::signal(nSignal, SIG_DFL);

    static GimpParam s_aValues[2];
    static std::string s_strError;
    *ppValues = s_aValues;
    *pnValues = 1;
    s_aValues[0].type = GIMP_PDB_STATUS;
    s_aValues[0].data.d_status = GIMP_PDB_SUCCESS;
    try {
        Call(nParams, pParams);
    } catch (const std::exception& e) {
        s_strError = ToUtf8(DescribeException(e));
        *pnValues = 2;
        s_aValues[0].data.d_status = GIMP_PDB_EXECUTION_ERROR;
        s_aValues[1].type = GIMP_PDB_STRING;
        s_aValues[1].data.d_string = s_strError.data();
    }
}

} // namespace

const GimpPlugInInfo PLUG_IN_INFO = {nullptr, nullptr, InstallProcedure, OnRun};

int main(int argc, char** argv) {
    // GIMP's arguments: program, "-gimp", version of the protocol, descriptors for reading and writing, mode.
    if (argc > 3) g_nFromGimp = std::atoi(argv[3]);
    return gimp_main(&PLUG_IN_INFO, argc, argv);
}
