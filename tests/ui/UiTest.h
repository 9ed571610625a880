// A session's message loop on real windows without a display, and clients that write down what they hear.
#pragma once

#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"
#include "core/Platform/System.h"
#include "core/Platform/Window.h"
#include "ui/QtPlatform.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <map>
#include <string>
#include <vector>

/// Writes down "name: message wParam lParam" in a log that windows share.
class CTestClient : public IWindowClient {
public:
    CTestClient(std::string strName, std::vector<std::string>& vLog)
        : m_strName(std::move(strName)), m_vLog(vLog) {}

    bool OnMessage(const TMessage& msg) override {
        m_vMessages.push_back(msg);
        m_vLog.push_back(m_strName + ": " + NameOf(msg.id) + " " + std::to_string(msg.wParam));
        return m_fnHandle && m_fnHandle(msg);
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override {
        m_vPainted.push_back(rc);
        if (m_fnPaint) m_fnPaint(target, rc);
    }
    void OnFinalMessage() override { m_vLog.push_back(m_strName + ": final"); }

    /// The messages of one kind.
    std::vector<TMessage> Got(EMessage id) const {
        std::vector<TMessage> vGot;
        for (const TMessage& msg : m_vMessages)
            if (msg.id == id) vGot.push_back(msg);
        return vGot;
    }

    std::function<bool(const TMessage&)> m_fnHandle;
    std::function<void(IPaintTarget&, const CRect&)> m_fnPaint;
    std::vector<TMessage> m_vMessages;
    std::vector<CRect> m_vPainted;

private:
    static std::string NameOf(EMessage id) {
        switch (id) {
        case EMessage::Destroy:
            return "destroy";
        case EMessage::Close:
            return "close";
        case EMessage::MdiActivate:
            return "activate";
        default:
            return std::to_string(static_cast<uint32_t>(id));
        }
    }

    std::string m_strName;
    std::vector<std::string>& m_vLog;
};

class CMemoryFiles : public IFileStore {
public:
    std::optional<std::string> Read(const std::wstring&) override { return {}; }
    bool Replace(const std::wstring& strPath, const std::string& strBytes) override {
        m_mapFiles[strPath] = strBytes;
        return true;
    }
    bool Update(const std::wstring&, const std::function<bool(std::string&)>&) override { return false; }
    std::map<std::wstring, std::string> m_mapFiles;
};

struct CNoLocations : ILocations {
    std::wstring GetAppData() override { return {}; }
    void MakeFolder(const std::wstring&) override {}
};
struct CNoModules : IModules {
    TModuleInfo GetProgram() override { return {}; }
    TModuleInfo GetLibrary(const std::wstring&) override { return {}; }
};
struct CNoCodecs : IImageCodecs {
    uintptr_t Startup() override { return 0; }
    void Shutdown(uintptr_t) override {}
    boost::shared_ptr<IBitmap> CreateBitmap(CSize) override { return {}; }
    boost::shared_ptr<IBitmap> Load(const std::wstring&) override { return {}; }
    bool Save(const std::wstring&, IBitmap&) override { return false; }
    bool CanSave(const std::wstring&) override { return false; }
};

/// The outside and the loop, without a window yet.
class CUiSession {
public:
    /// Takes messages until none is left. `filter` sees each before it is dispatched and may consume it.
    void Turn(const std::function<bool(const TMessage&)>& filter = {}) {
        for (int i = 0; i < 3; ++i) {
            while (m_queue.Peek()) {
                TMessage msg;
                if (m_queue.Get(msg) != 1) return;
                if (!filter || !filter(msg)) m_queue.Dispatch(msg);
            }
        }
    }

    CMessageQueue m_queue;
    CMemoryFiles m_files;
    CNoLocations m_locations;
    CNoModules m_modules;
    CNoCodecs m_codecs;
    CQtPlatform m_platform{m_queue, m_files, m_locations, m_modules, m_codecs};
};

/// A session with a main window that shows.
class CUiTest : public testing::Test, public CUiSession {
protected:
    CUiTest() {
        m_pMain =
            m_platform.GetWindows().CreateMainWindow(m_main, {L"Vellumcraft", MainMenu(), {57600, 0, 57643}});
        m_pMain->Show();
        Turn();
    }
    ~CUiTest() override {
        m_pMain->Destroy();
        Turn();
    }

    /// A client that outlives the windows.
    CTestClient& MakeClient(const std::string& strName) { return m_lstClients.emplace_back(strName, m_vLog); }
    ICanvasWindow* MakeCanvas(CTestClient& client, const std::wstring& strTitle) {
        ICanvasWindow* pWindow =
            m_platform.GetWindows().CreateCanvasWindow(*m_pMain, client, {strTitle, ChildMenu()});
        pWindow->Show();
        Turn();
        return pWindow;
    }

    static std::vector<TMenuItem> MainMenu() {
        return {
            {0, L"ファイル(&F)", {{57600, L"新規作成(&N)\tCtrl+N", {}}, {57616, L"最近使ったファイル", {}}}}};
    }
    static std::vector<TMenuItem> ChildMenu() {
        std::vector<TMenuItem> vMenu = MainMenu();
        vMenu.push_back(
            {0,
             L"編集(&E)",
             {{57643, L"取り消し(&U)...\tF3, Ctrl+Z", {}}, {0, L"", {}}, {12810, L"上下反転", {}}}});
        vMenu.push_back({0, L"ウィンドウ(&W)", {{57650, L"重ねて表示(&C)", {}}}});
        return vMenu;
    }

    QMainWindow& GetWidget() { return *dynamic_cast<QMainWindow*>(m_pMain); }
    QMenu& GetMenu(int idx) { return *GetWidget().menuBar()->actions().at(idx)->menu(); }
    /// The texts of a menu's visible lines, "-" for a separator.
    static QStringList TextsOf(const QWidget& menu) {
        QStringList lstTexts;
        for (const QAction* pAction : menu.actions())
            if (pAction->isVisible())
                lstTexts << (pAction->isSeparator() ? QStringLiteral("-") : pAction->text());
        return lstTexts;
    }

    std::vector<std::string> m_vLog;
    std::list<CTestClient> m_lstClients;
    CTestClient m_main{"main", m_vLog};
    IMainWindow* m_pMain = nullptr;
};
