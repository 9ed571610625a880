// A plug-in of the tests: a session in which the user changes something in GIMP before the result comes.
#include "host/Gimp/GimpImage.h"
#include "host/Gimp/GimpProcedure.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <libgimp/gimp.h>
#include <unistd.h>

namespace {

int g_nFromGimp = -1;

void ChangeImage(const char* pszWhat, int32_t nImage, int32_t nDrawable) {
    const auto is = [&](const char* psz) { return std::strcmp(pszWhat, psz) == 0; };
    if (is("delete")) gimp_image_remove_layer(nImage, nDrawable);
    if (is("close")) gimp_image_delete(nImage);
    if (is("select")) gimp_image_select_rectangle(nImage, GIMP_CHANNEL_OP_REPLACE, 0, 0, 3, 3);
    if (is("scale")) gimp_layer_scale(nDrawable, 9, 9, FALSE);
    if (is("draw")) {
        uint8_t aBlue[] = {0, 0, 255};
        gimp_drawable_set_pixel(nDrawable, 1, 0, 3, aBlue);
    }
}

// GIMP crashes while the session runs its message loop. The file tells that the session lives on and has
// noticed it.
void CrashGimp() {
    OutliveGimp();
    const bool bConnected = IsConnected(g_nFromGimp);
    kill(getppid(), SIGKILL);
    for (int i = 0; i < 50; ++i) {
        g_usleep(10000);
        g_main_context_iteration(nullptr, FALSE);
    }
    std::ofstream("lives") << bConnected << IsConnected(g_nFromGimp);
    std::_Exit(0);
}

// Parameters: run mode, image, drawable, what the user does. The session makes the drawable's pixel (3, 2)
// red.
void OnRun(const gchar*, gint, const GimpParam* pParams, gint* pnValues, GimpParam** ppValues) {
    static GimpParam s_aValues[2];
    if (std::strcmp(pParams[3].data.d_string, "crash") == 0) CrashGimp();
    gegl_init(nullptr, nullptr);
    CGimpImage image(pParams[2].data.d_drawable);
    image.Open();
    uint8_t aRed[] = {255, 0, 0};
    for (const THostChannel& channel : image.GetChannels())
        image.Write(channel, {3, 2, 4, 3}, {.pData = &aRed[channel.uId]});
    ChangeImage(pParams[3].data.d_string, pParams[1].data.d_image, pParams[2].data.d_drawable);
    *pnValues = 2;
    *ppValues = s_aValues;
    s_aValues[0].type = GIMP_PDB_STATUS;
    s_aValues[0].data.d_status = GIMP_PDB_SUCCESS;
    s_aValues[1].type = GIMP_PDB_INT32;
    s_aValues[1].data.d_int32 = static_cast<gint32>(image.Deliver());
}

void OnQuery() {
    char szName[] = "a";
    const GimpParamDef aParams[] = {{GIMP_PDB_INT32, szName, szName},
                                    {GIMP_PDB_IMAGE, szName, szName},
                                    {GIMP_PDB_DRAWABLE, szName, szName},
                                    {GIMP_PDB_STRING, szName, szName}};
    const GimpParamDef aResults[] = {{GIMP_PDB_INT32, szName, szName}};
    gimp_install_procedure("plug-in-delivery-probe", "", "", "", "", "", nullptr, "", GIMP_PLUGIN, 4, 1,
                           aParams, aResults);
}

} // namespace

const GimpPlugInInfo PLUG_IN_INFO = {nullptr, nullptr, OnQuery, OnRun};

int main(int argc, char** argv) {
    if (argc > 3) g_nFromGimp = std::atoi(argv[3]);
    return gimp_main(&PLUG_IN_INFO, argc, argv);
}
