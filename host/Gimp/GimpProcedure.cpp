#include "host/Gimp/GimpProcedure.h"

#include "core/Base/Failure.h"

#include <array>

#include <libgimp/gimp.h>
#include <poll.h>

namespace {

constexpr char PROCEDURE[] = "plug-in-vellumcraft";
constexpr int32_t FIXED_PARAMS = 3; // run mode, image, drawable

// The script's path is kept by GIMP until it is closed.
std::string GetLastScript() {
    std::string strScript(static_cast<size_t>(gimp_get_data_size(PROCEDURE)), '\0');
    if (!strScript.empty()) gimp_get_data(PROCEDURE, strScript.data());
    return strScript.c_str();
}

void SetLastScript(const std::string& strScript) {
    gimp_set_data(PROCEDURE, strScript.c_str(), static_cast<guint32>(strScript.size() + 1));
}

} // namespace

void InstallProcedure() {
    // libgimp's record has pointers to non-const characters; it does not change them.
    const auto param = [](GimpPDBArgType type, const char* pszName, const char* pszText) {
        return GimpParamDef{type, const_cast<gchar*>(pszName), const_cast<gchar*>(pszText)};
    };
    const std::array aParams{
        param(GIMP_PDB_INT32, "run-mode",
              "{ RUN-INTERACTIVE (0), RUN-NONINTERACTIVE (1), RUN-WITH-LAST-VALS (2) }"),
        param(GIMP_PDB_IMAGE, "image", "The image"),
        param(GIMP_PDB_DRAWABLE, "drawable", "The layer, mask or channel to draw on"),
        param(GIMP_PDB_STRING, "script",
              "Path of a session script; \"\" for none. Without windows there must be one")};
    gimp_install_procedure(PROCEDURE, "線画を描く",
                           "Vellumcraftのウィンドウでレイヤーに描きます。閉じると結果がレイヤーに戻ります。",
                           "Vellumcraft", "Vellumcraft", "2026", "Vellumcraft...", "RGB*, GRAY*", GIMP_PLUGIN,
                           static_cast<gint>(aParams.size()), 0, aParams.data(), nullptr);
    gimp_plugin_menu_register(PROCEDURE, "<Image>/Filters");
    gimp_plugin_icon_register(PROCEDURE, GIMP_ICON_TYPE_ICON_NAME,
                              reinterpret_cast<const guint8*>("jp.vellumcraft.Vellumcraft"));
}

TGimpCall ReadCall(int32_t nParams, const _GimpParam* pParams) {
    if (nParams < FIXED_PARAMS) throw refused_error(L"値が足りません。");
    const int32_t nMode = pParams[0].data.d_int32;
    TGimpCall call;
    call.nDrawable = pParams[2].data.d_drawable;
    call.bShowsImage = nMode != GIMP_RUN_NONINTERACTIVE;
    if (nMode == GIMP_RUN_WITH_LAST_VALS)
        call.strScript = GetLastScript();
    else if (nParams > FIXED_PARAMS && pParams[FIXED_PARAMS].data.d_string)
        call.strScript = pParams[FIXED_PARAMS].data.d_string;
    call.bWindows = nMode == GIMP_RUN_INTERACTIVE || (call.bShowsImage && call.strScript.empty());
    if (!call.bWindows && call.strScript.empty())
        throw refused_error(L"ウィンドウなしで実行するには、スクリプトのパスが必要です。");
    SetLastScript(call.strScript);
    return call;
}

void OutliveGimp() {
    GSource* const pWatch =
        g_main_context_find_source_by_funcs_user_data(nullptr, &g_io_watch_funcs, nullptr);
    if (pWatch) g_source_destroy(pWatch);
}

bool IsConnected(int nDescriptor) {
    pollfd descriptor{.fd = nDescriptor, .events = POLLIN, .revents = 0};
    return poll(&descriptor, 1, 0) >= 0 && (descriptor.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0;
}
