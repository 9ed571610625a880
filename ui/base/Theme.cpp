#include "ui/base/Theme.h"

#include <QApplication>
#include <QPalette>

namespace {

struct TShade {
    QPalette::ColorRole role;
    int nDark, nLight; ///< grey levels: a hue beside the picture affects how its colours are perceived
};

constexpr TShade SHADES[] = {
    {QPalette::Window, 0x38, 0xEF},
    {QPalette::WindowText, 0xE4, 0x00},
    {QPalette::Base, 0x2A, 0xFF},
    {QPalette::AlternateBase, 0x32, 0xF7},
    {QPalette::Text, 0xE4, 0x00},
    {QPalette::PlaceholderText, 0x8C, 0x80},
    {QPalette::Button, 0x44, 0xEF},
    {QPalette::ButtonText, 0xE4, 0x00},
    {QPalette::BrightText, 0xFF, 0xFF},
    {QPalette::ToolTipBase, 0x4C, 0xFC},
    {QPalette::ToolTipText, 0xEC, 0x00},
    {QPalette::Light, 0x58, 0xFF},
    {QPalette::Midlight, 0x4C, 0xCA},
    {QPalette::Mid, 0x2C, 0xB8},
    {QPalette::Dark, 0x20, 0x9F},
    {QPalette::Shadow, 0x10, 0x76},
    {QPalette::HighlightedText, 0xFF, 0xFF},
};
constexpr QPalette::ColorRole TEXTS[] = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText};
constexpr int DISABLED_DARK = 0x80, DISABLED_LIGHT = 0xBE;
constexpr QColor HIGHLIGHT(0x30, 0x8C, 0xC6);
constexpr QColor LINK_DARK(0x6D, 0xB1, 0xF0), LINK_LIGHT(0x00, 0x00, 0xFF);

QColor Grey(int nLevel) { return {nLevel, nLevel, nLevel}; }

QPalette MakePalette(bool bDark) {
    QPalette palette;
    for (const TShade& shade : SHADES) palette.setColor(shade.role, Grey(bDark ? shade.nDark : shade.nLight));
    palette.setColor(QPalette::Highlight, HIGHLIGHT);
    palette.setColor(QPalette::Link, bDark ? LINK_DARK : LINK_LIGHT);
    const QColor clrDisabled = Grey(bDark ? DISABLED_DARK : DISABLED_LIGHT);
    for (const QPalette::ColorRole role : TEXTS) palette.setColor(QPalette::Disabled, role, clrDisabled);
    palette.setColor(QPalette::Disabled, QPalette::Base, palette.color(QPalette::Window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, palette.color(QPalette::Mid));
    return palette;
}

} // namespace

bool IsDarkPalette(const QPalette& palette) {
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

CQtTheme::CQtTheme(const std::function<decltype(WatchDesktopScheme)>& fnWatch)
    : m_pDesktop(fnWatch([this] { Apply(); })) {}

void CQtTheme::Choose(ETheme theme) {
    m_theme = theme;
    Apply();
}

void CQtTheme::Apply() {
    QApplication::setPalette(QPalette()); // the desktop's
    const bool bDesktop = IsDarkPalette(QApplication::palette());
    const bool bDark =
        m_theme == ETheme::System ? m_pDesktop->IsDark().value_or(bDesktop) : m_theme == ETheme::Dark;
    if (bDark != bDesktop) QApplication::setPalette(MakePalette(bDark));
}
