// A window's client that stores the messages that it gets.
#pragma once

#include "core/Platform/Window.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

using TLog = std::vector<std::string>;
using TParams = std::vector<std::pair<int64_t, int64_t>>; ///< wParam and lParam

/// Writes its window's life, "name close", to a log that windows share.
class CTestClient : public IWindowClient {
public:
    CTestClient(std::string strName, TLog& vLog) : m_strName(std::move(strName)), m_vLog(vLog) {}

    bool OnMessage(const TMessage& msg) override {
        m_mapParams[msg.id].emplace_back(msg.wParam, msg.lParam);
        if (msg.id == EMessage::MdiActivate) Note(msg.wParam ? "on" : "off");
        if (msg.id == EMessage::Close) Note("close");
        if (msg.id == EMessage::Destroy) Note("destroy");
        return m_fnHandle && m_fnHandle(msg);
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override {
        m_vPainted.push_back(rc);
        if (m_fnPaint) m_fnPaint(target, rc);
    }
    void OnFinalMessage() override { Note("final"); }

    /// The messages of one kind.
    const TParams& Got(EMessage id) { return m_mapParams[id]; }

    std::function<bool(const TMessage&)> m_fnHandle;
    std::function<void(IPaintTarget&, const CRect&)> m_fnPaint;
    std::vector<CRect> m_vPainted;

private:
    void Note(const std::string& strWhat) { m_vLog.push_back(m_strName + " " + strWhat); }

    std::string m_strName;
    TLog& m_vLog;
    std::map<EMessage, TParams> m_mapParams;
};
