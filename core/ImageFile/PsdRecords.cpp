#include "core/ImageFile/PsdRecords.h"

#include "core/LayerBuffer/LayerSetBuffer.h"

namespace {

class CRecordList {
public:
    void AddChildren(const CLayerBuffer& layer, bool bClipped, bool bVisible) {
        for (const TLayerPtr& spChild : layer.GetChildren())
            Add(*spChild, bClipped, bVisible && spChild->IsVisible());
    }
    std::vector<TPsdRecord> Take() { return std::move(m_vRecords); }

private:
    void Add(CLayerBuffer& layer, bool bClipped, bool bVisible) {
        const bool bSet = dynamic_cast<const CLayerSetBuffer*>(&layer) != nullptr;
        if (bSet && bClipped) {
            // A bracket would end the run of clipped records. A set has no picture of its own, so its
            // children replace it, hidden if it is hidden.
            AddChildren(layer, true, bVisible);
        } else if (bSet) {
            m_vRecords.push_back({EPsdRecord::GroupEnd, &layer, true, false});
            AddChildren(layer, false, true);
            m_vRecords.push_back({EPsdRecord::GroupStart, &layer, bVisible, false});
        } else if (bClipped) {
            // A clipped layer cannot be a clipping base: the layers below it are painted into it.
            m_vRecords.push_back({EPsdRecord::Picture, &layer, bVisible, true});
        } else {
            m_vRecords.push_back({EPsdRecord::Content, &layer, bVisible, false});
            AddChildren(layer, true, true);
        }
    }

    std::vector<TPsdRecord> m_vRecords;
};

} // namespace

std::vector<TPsdRecord> ListPsdRecords(const CLayerBuffer& root) {
    CRecordList records;
    records.AddChildren(root, false, true);
    return records.Take();
}
