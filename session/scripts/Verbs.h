// The verbs of session scripts. A new verb needs a reading function, which checks its value and returns the
// line's action, and an entry in the table of Verbs.cpp.
#pragma once

#include "session/scripts/Script.h"

#include <span>

class CPlayer;
struct TAnswer;

struct TVerb {
    const char* pszName;
    TAction (*pfnRead)(const CScriptValue& value); ///< raises script_error
    EStepKind kind = EStepKind::Plain;
    bool bPast = false; ///< bypasses the platform interface, so that a recorder cannot observe it
};

/// All verbs.
std::span<const TVerb> GetVerbs();

/// Reads a dialog's fields by name.
void ReadDialogFields(const CScriptValue& value, TAnswer& answer);
/// Gives a command whose dialog takes this answer. Raises step_failure when none opens.
void SendAnswered(CPlayer& player, int nCommand, TAnswer answer);

/// Commands, windows, keys, time.
TAction ReadCommand(const CScriptValue& value);
TAction ReadTry(const CScriptValue& value);
TAction ReadView(const CScriptValue& value);
TAction ReadActivate(const CScriptValue& value);
TAction ReadClose(const CScriptValue& value);
TAction ReadKey(const CScriptValue& value);
TAction ReadKeys(const CScriptValue& value);
TAction ReadWait(const CScriptValue& value);
/// Tools, pen, mouse.
TAction ReadTool(const CScriptValue& value);
TAction ReadPen(const CScriptValue& value);
TAction ReadMouse(const CScriptValue& value);
TAction ReadPacket(const CScriptValue& value);
TAction ReadPointer(const CScriptValue& value);
TAction ReadWheel(const CScriptValue& value);
TAction ReadProximity(const CScriptValue& value);
TAction ReadTablet(const CScriptValue& value);
TAction ReadPanel(const CScriptValue& value);
/// Settings and answers.
TAction ReadSet(const CScriptValue& value);
TAction ReadAnswer(const CScriptValue& value);
TAction ReadCancelWork(const CScriptValue& value);
/// Files.
TAction ReadOpen(const CScriptValue& value);
TAction ReadSave(const CScriptValue& value);
TAction ReadExport(const CScriptValue& value);
TAction ReadScreenshot(const CScriptValue& value);
TAction ReadDump(const CScriptValue& value);
TAction ReadClipboard(const CScriptValue& value);
/// The image menu.
TAction ReadLevel(const CScriptValue& value);
TAction ReadHue(const CScriptValue& value);
TAction ReadRescale(const CScriptValue& value);
TAction ReadResize(const CScriptValue& value);
/// The document.
TAction ReadLayer(const CScriptValue& value);
TAction ReadMark(const CScriptValue& value);
TAction ReadExpect(const CScriptValue& value);
