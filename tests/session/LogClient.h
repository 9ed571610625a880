// A window's client that writes down what it is told, "name message", in a log that windows share.
#pragma once

#include "core/Platform/Window.h"

using TLog = std::vector<std::string>;

class CLogClient : public IWindowClient {
public:
    CLogClient(std::string strName, TLog& vLog) : m_strName(std::move(strName)), m_vLog(vLog) {}

    bool OnMessage(const TMessage& msg) override {
        if (msg.id == EMessage::MdiActivate) Note(msg.wParam ? "on" : "off");
        if (msg.id == EMessage::Destroy) Note("destroy");
        if (msg.id == EMessage::Close) Note("close");
        if (msg.id == EMessage::Timer) Note("timer", msg.wParam);
        if (msg.id == EMessage::Size) Note("size", msg.wParam, msg.lParam);
        return m_bRefuses;
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override {
        Note("paint", rc.left, rc.top, rc.right, rc.bottom);
        const std::vector<uint8_t> vPixels(static_cast<size_t>(rc.right) * 4 * static_cast<size_t>(rc.bottom),
                                           200);
        target.Blit(vPixels.data(), rc.right * 4, {rc.right, rc.bottom}, rc);
    }
    void OnFinalMessage() override { Note("final"); }

    bool m_bRefuses = false; ///< handles everything, so that no Close destroys the window

private:
    void Note(const std::string& strWhat, auto... nNumbers) {
        m_vLog.push_back(((m_strName + " " + strWhat) + ... + (" " + std::to_string(nNumbers))));
    }

    std::string m_strName;
    TLog& m_vLog;
};
