#include "ui/base/QtApplication.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/WindowPlacement.h"
#include "ui/base/QtText.h"
#include "ui/base/Style.h"
#include "ui/base/SvgIcon.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QSysInfo>
#include <QThread>
#include <QTranslator>
#include <QWidget>

#include <utility>

namespace {

/// Families with the Japanese characters; a desktop has the first ones or the others.
QStringList JapaneseFamilies() {
    return {QStringLiteral("Noto Sans CJK JP"), QStringLiteral("Yu Gothic UI"), QStringLiteral("Meiryo UI")};
}

QApplication* g_pOwn = nullptr;

/// Qt ends the process when it finds no display, which a plug-in must not do to its host: check before.
bool HasDisplay() {
    return QSysInfo::kernelType() != "linux" || qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ||
           !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void MakeOwnApplication() {
    // Qt keeps references to both for as long as the object lives.
    static int nArguments = 1;
    static char szName[] = "vellumcraft";
    static char* ppszArguments[] = {szName, nullptr};

    // A host decides how its process scales windows.
    if (g_bFilterBuild) QCoreApplication::setAttribute(Qt::AA_PluginApplication);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    g_pOwn = new QApplication(nArguments, ppszArguments);
    // The stroke needs every reported position: do not merge moves. The plug-in has just set this.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    g_pOwn->setApplicationName(QStringLiteral("Vellumcraft"));
    // By this name of the desktop entry a desktop finds the windows' icon and group.
    g_pOwn->setDesktopFileName(QStringLiteral("jp.vellumcraft.Vellumcraft"));
    // The message loop ends by a message of the session, not when the last window closes.
    g_pOwn->setQuitOnLastWindowClosed(false);
    g_pOwn->setStyle(new CQtStyle);

    QFont font = g_pOwn->font();
    font.setFamilies(JapaneseFamilies() << font.family());
    g_pOwn->setFont(font);

    // Texts of Qt's own widgets (the file dialog's columns): Japanese if the translation is installed.
    auto* pTranslator = new QTranslator(g_pOwn);
    if (pTranslator->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        g_pOwn->installTranslator(pTranslator);
}

} // namespace

bool EnsureApplication() {
    if (!QCoreApplication::instance()) {
        if (!HasDisplay()) return false;
        MakeOwnApplication();
    }
    const auto* pApplication = qobject_cast<QApplication*>(QCoreApplication::instance());
    return pApplication && pApplication->thread() == QThread::currentThread();
}

void EndApplication() { delete std::exchange(g_pOwn, nullptr); }

bool OwnsApplication() { return g_pOwn && QCoreApplication::instance() == g_pOwn; }

bool PlacesWindowsItself() { return QGuiApplication::platformName().startsWith(QLatin1String("wayland")); }

QFont WithJapanese(const QFont& font) {
    QStringList lstFamilies = font.families();
    if (lstFamilies.isEmpty()) lstFamilies.append(font.family());
    if (lstFamilies.contains(JapaneseFamilies().front())) return font;
    QFont fontBoth = font;
    fontBoth.setFamilies(lstFamilies << JapaneseFamilies());
    return fontBoth;
}

void PrepareTopLevel(QWidget& widget) {
    widget.setAttribute(Qt::WA_QuitOnClose, false);
    widget.setFont(WithJapanese(widget.font()));
    widget.setWindowIcon(LoadPictureIcon("icons/app.svg"));
}

void FitToScreens(QWidget& window, const std::vector<CRect>& vScreens) {
    const QRect rcFrame = window.frameGeometry();
    const QRect rcFit = ToQt(PlaceOnScreen(FromQt(rcFrame), vScreens));
    if (rcFit == rcFrame) return;
    const QSize szBorders = rcFrame.size() - window.size();
    window.resize(rcFit.size() - szBorders);
    window.move(rcFit.topLeft());
}
