// Snapshots in memory: they outlive sessions, but not the process.
#pragma once

#include "core/Platform/Snapshots.h"

#include <map>

/// FindLeft finds nothing: a session without a disk cannot crash and be found later.
class CSessionSnapshots : public ISnapshotStore {
public:
    struct TKept {
        std::string strBytes;
        TSnapshotNote note;
    };

    void Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) override {
        TKept kept{{}, note};
        fnFill([&](std::string_view str) { return kept.strBytes += str, true; });
        m_mapKept[uKey] = std::move(kept);
    }
    bool Finish(uint32_t uKey) override { return m_mapKept.contains(uKey); }
    void Remove(uint32_t uKey) override { m_mapKept.erase(uKey); }
    bool IsBusy() override { return false; }
    bool TakeFailure() override { return false; }
    std::vector<TLeftSnapshot> FindLeft() override { return {}; }
    std::unique_ptr<IFileReader> Open(const std::wstring&) override { return nullptr; }
    void Adopt(const std::wstring&, uint32_t) override {}
    std::wstring SetAside(const std::wstring&) override { return {}; }
    void Drop(const std::wstring&) override {}
    void ReleaseLeft() override {}

    const std::map<uint32_t, TKept>& GetKept() const { return m_mapKept; }

private:
    std::map<uint32_t, TKept> m_mapKept;
};
