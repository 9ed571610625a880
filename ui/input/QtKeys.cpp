#include "ui/input/QtKeys.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace {

struct TKeyCode {
    int nQtKey;
    int nVirtualKey;
};

/// Keys that are neither letters, digits nor function keys.
constexpr TKeyCode KEY_CODES[] = {
    {Qt::Key_Backspace, 0x08},    {Qt::Key_Tab, VK_Tab},
    {Qt::Key_Backtab, VK_Tab},    {Qt::Key_Clear, 0x0C},
    {Qt::Key_Return, 0x0D},       {Qt::Key_Enter, 0x0D},
    {Qt::Key_Shift, VK_Shift},    {Qt::Key_Control, VK_Control},
    {Qt::Key_Alt, VK_Alt},        {Qt::Key_Pause, 0x13},
    {Qt::Key_CapsLock, 0x14},     {Qt::Key_Kana_Lock, 0x15},
    {Qt::Key_Kanji, 0x19},        {Qt::Key_Zenkaku_Hankaku, 0x19},
    {Qt::Key_Escape, 0x1B},       {Qt::Key_Henkan, 0x1C},
    {Qt::Key_Muhenkan, 0x1D},     {Qt::Key_Space, 0x20},
    {Qt::Key_PageUp, 0x21},       {Qt::Key_PageDown, 0x22},
    {Qt::Key_End, 0x23},          {Qt::Key_Home, VK_Home},
    {Qt::Key_Left, 0x25},         {Qt::Key_Up, 0x26},
    {Qt::Key_Right, 0x27},        {Qt::Key_Down, 0x28},
    {Qt::Key_Print, 0x2C},        {Qt::Key_Insert, 0x2D},
    {Qt::Key_Delete, 0x2E},       {Qt::Key_Help, 0x2F},
    {Qt::Key_Meta, 0x5B},         {Qt::Key_Super_L, 0x5B},
    {Qt::Key_Super_R, 0x5C},      {Qt::Key_Menu, 0x5D},
    {Qt::Key_NumLock, 0x90},      {Qt::Key_ScrollLock, 0x91},
    {Qt::Key_Semicolon, 0xBA},    {Qt::Key_Colon, 0xBA},
    {Qt::Key_Plus, 0xBB},         {Qt::Key_Equal, 0xBB},
    {Qt::Key_Comma, 0xBC},        {Qt::Key_Less, 0xBC},
    {Qt::Key_Minus, 0xBD},        {Qt::Key_Underscore, 0xBD},
    {Qt::Key_Period, 0xBE},       {Qt::Key_Greater, 0xBE},
    {Qt::Key_Slash, 0xBF},        {Qt::Key_Question, 0xBF},
    {Qt::Key_QuoteLeft, 0xC0},    {Qt::Key_AsciiTilde, 0xC0},
    {Qt::Key_At, 0xC0},           {Qt::Key_BracketLeft, 0xDB},
    {Qt::Key_BraceLeft, 0xDB},    {Qt::Key_Backslash, 0xDC},
    {Qt::Key_Bar, 0xDC},          {Qt::Key_yen, 0xDC},
    {Qt::Key_BracketRight, 0xDD}, {Qt::Key_BraceRight, 0xDD},
    {Qt::Key_Apostrophe, 0xDE},   {Qt::Key_QuoteDbl, 0xDE},
    {Qt::Key_AsciiCircum, 0xDE},
};

constexpr TKeyCode KEYPAD_CODES[] = {
    {Qt::Key_Asterisk, 0x6A}, {Qt::Key_Plus, 0x6B},   {Qt::Key_Comma, 0x6C},
    {Qt::Key_Minus, 0x6D},    {Qt::Key_Period, 0x6E}, {Qt::Key_Slash, 0x6F},
};

template <size_t N>
int Find(const TKeyCode (&codes)[N], int nQtKey) {
    const auto it = std::find_if(std::begin(codes), std::end(codes),
                                 [&](const TKeyCode& code) { return code.nQtKey == nQtKey; });
    return it == std::end(codes) ? 0 : it->nVirtualKey;
}

} // namespace

int VirtualKeyOf(const QKeyEvent& event) {
    const int nKey = event.key();
    // A keyboard on the screen has its keys anywhere: what gives a letter is one.
    if (nKey >= Qt::Key_A && nKey <= Qt::Key_Z) return nKey;
    if (event.modifiers() & Qt::KeypadModifier) {
        if (nKey >= Qt::Key_0 && nKey <= Qt::Key_9) return 0x60 + (nKey - Qt::Key_0);
        if (const int nVirtualKey = Find(KEYPAD_CODES, nKey)) return nVirtualKey;
    } else if (event.nativeScanCode() >= 10 && event.nativeScanCode() <= 19) {
        // The digit row by position (10 is "1", 19 is "0"): Shift changes it differently in each layout.
        return '0' + static_cast<int>(event.nativeScanCode() - 9) % 10;
    }
    if (nKey >= Qt::Key_0 && nKey <= Qt::Key_9) return nKey;
    if (nKey >= Qt::Key_F1 && nKey <= Qt::Key_F24) return 0x70 + (nKey - Qt::Key_F1);
    return Find(KEY_CODES, nKey);
}

bool CQtKeyState::IsKeyDown(int nVirtualKey) {
    return nVirtualKey >= 0 && nVirtualKey < 256 && m_seen.test(static_cast<size_t>(nVirtualKey));
}

void CQtKeyState::Press(int nVirtualKey, bool bDown) {
    if (nVirtualKey > 0 && nVirtualKey < 256) m_present.set(static_cast<size_t>(nVirtualKey), bDown);
}

void CQtKeyState::SyncModifiers(Qt::KeyboardModifiers modifiers) {
    Press(VK_Shift, modifiers.testFlag(Qt::ShiftModifier));
    Press(VK_Control, modifiers.testFlag(Qt::ControlModifier));
    Press(VK_Alt, modifiers.testFlag(Qt::AltModifier));
}

void CQtKeyState::Clear() {
    m_present.reset();
    m_seen.reset();
}
