// Snapshots in memory: they outlive sessions, but not the process.
#pragma once

#include "core/Platform/Snapshots.h"

#include <map>

/// Nothing is ever left: a session without a disk cannot break off and be found later.
class CSessionSnapshots : public ISnapshotStore {
public:
    struct TKept {
        std::string strBytes;
        TSnapshotNote note;
    };

    void Write(uint32_t uKey, std::string strBytes, const TSnapshotNote& note) override {
        m_mapKept[uKey] = {std::move(strBytes), note};
    }
    void Remove(uint32_t uKey) override { m_mapKept.erase(uKey); }
    bool IsBusy() override { return false; }
    bool TakeFailure() override { return false; }
    std::vector<TLeftSnapshot> FindLeft() override { return {}; }
    std::optional<std::string> Read(const std::wstring&) override { return std::nullopt; }
    void Adopt(const std::wstring&, uint32_t) override {}
    std::wstring SetAside(const std::wstring&) override { return {}; }
    void Drop(const std::wstring&) override {}
    void ReleaseLeft() override {}

    const std::map<uint32_t, TKept>& GetKept() const { return m_mapKept; }

private:
    std::map<uint32_t, TKept> m_mapKept;
};
