// The verbs of the image menu: a command together with the answer to its dialog.
#include "core/Commands/CommandIds.h"
#include "session/scripts/Verbs.h"
#include "session/seam/SessionDialogs.h"

#include <nlohmann/json.hpp>

namespace {

TAction ReadImageVerb(const CScriptValue& value, int nCommand, const char* pszDialog) {
    if (!value.GetJson().is_object()) value.Refuse("must be an object");
    TAnswer answer{.kind = TAnswer::EKind::Dialog, .strDialog = pszDialog};
    ReadDialogFields(value, answer);
    return [=](CPlayer& player) { SendAnswered(player, nCommand, answer); };
}

} // namespace

TAction ReadLevel(const CScriptValue& value) { return ReadImageVerb(value, ID_IMAGE_LEVEL, "CLevelDlg"); }
TAction ReadHue(const CScriptValue& value) { return ReadImageVerb(value, ID_IMAGE_HSV, "CHSBDlg"); }
TAction ReadRescale(const CScriptValue& value) {
    return ReadImageVerb(value, ID_IMAGE_RESOLUTION, "CRescaleDialog");
}
TAction ReadResize(const CScriptValue& value) { return ReadImageVerb(value, ID_IMAGE_SIZE, "CResizeDialog"); }
