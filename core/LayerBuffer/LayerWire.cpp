#include "core/LayerBuffer/LayerWire.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathObject/PathObjectFactory.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <vector>

namespace {

constexpr uint32_t TAG_LAYER_BASE = MakeTag("LAYB");
/// Paths whose outlines one thread builds at a time.
constexpr size_t PATHS_OF_PART = 64;

// Memory of an empty layer on a canvas of `nBlocks` blocks: itself, and a flag a block for each plane.
uint64_t EmptyLayerBytes(size_t nBlocks) { return 4096 + uint64_t{5} * nBlocks; }

// A layer of the kind that a chunk of that tag holds; raises deserialize_error for any other tag.
TLayerPtr CreateLayerByTag(uint32_t uTag) {
    if (uTag == CRasterLayerBuffer::CHUNK_TAG) return boost::make_shared<CRasterLayerBuffer>();
    if (uTag == CVectorLayerBuffer::CHUNK_TAG) return boost::make_shared<CVectorLayerBuffer>();
    if (uTag == CLayerSetBuffer::CHUNK_TAG) return boost::make_shared<CLayerSetBuffer>();
    throw deserialize_error();
}

void ReadBase(CLayerBuffer& layer, CDeserializer& reader) {
    CDeserializer base;
    reader.ReadChunk(base);
    DeserializeBase(layer, base);
}

} // namespace

CSerializer SerializeBase(const CLayerBuffer& layer) {
    CSerializer writer;
    writer.SetTag(TAG_LAYER_BASE, 1);
    const auto nCount = static_cast<int32_t>(layer.GetChildren().size());
    const TLayerPtr spActive = layer.GetActiveChild();
    const int idxActive = spActive ? layer.IndexOf(*spActive) : -1;
    writer.WriteInt32(nCount);
    writer.WriteString(layer.GetName());
    writer.WriteBool(layer.IsVisible());
    writer.WriteByte(layer.GetOpacity());
    writer.WriteInt32(idxActive < 0 ? nCount : idxActive);
    for (const TLayerPtr& spChild : layer.GetChildren()) writer.WriteChunk(spChild->Serialize());
    return writer;
}

void DeserializeBase(CLayerBuffer& layer, CDeserializer& reader) {
    reader.ExpectTag(TAG_LAYER_BASE);
    // The root's chunk lies in two others and in the file; a layer's chunk and this one in it add two each.
    if (reader.GetDepth() > 3 + 2 * MAX_LAYER_NESTING) throw deserialize_error();
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    const std::wstring strName = reader.ReadString();
    const bool bVisible = reader.ReadBool();
    layer.InitState(strName, bVisible, reader.ReadByte());
    // The first version of the chunk knew no active child.
    const uint32_t uActive = reader.GetVersion() >= 1 ? static_cast<uint32_t>(reader.ReadInt32()) : uCount;
    if (uActive > uCount) throw deserialize_error();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        // A few dozen bytes make a layer, so what layers take by themselves is limited.
        chunk.Claim(EmptyLayerBytes(layer.GetDrawBuffer()->GetDirty().GetCount()));
        const TLayerPtr spChild = CreateLayerByTag(chunk.GetTag());
        spChild->Deserialize(chunk, layer.GetCanvas());
        layer.InitChild(spChild, u == uActive);
    }
    reader.ExpectEnd();
}

CSerializer CLayerSetBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteChunk(SerializeBase(*this));
    return writer;
}

void CLayerSetBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    ReadBase(*this, reader);
    reader.ExpectEnd();
}

CSerializer CRasterLayerBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteChunk(SerializeBase(*this));
    writer.WriteChunk(GetSettled()->Serialize());
    return writer;
}

void CRasterLayerBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    ReadBase(*this, reader);
    CDeserializer plane;
    reader.ReadChunk(plane);
    reader.ExpectEnd();
    // The file may hold the pixels in the other mode than its canvas's.
    boost::shared_ptr<CRasterBuffer> spPlane;
    if (plane.GetTag() == CColorRasterBuffer::CHUNK_TAG)
        spPlane = boost::make_shared<CColorRasterBuffer>();
    else if (plane.GetTag() == CMonoRasterBuffer::CHUNK_TAG)
        spPlane = boost::make_shared<CMonoRasterBuffer>();
    else
        throw deserialize_error();
    spPlane->Deserialize(plane);
    if (!(spPlane->GetSize() == GetSize()) || !spPlane->IsCompatible(*m_pRaster)) throw deserialize_error();
    SetRaster(spPlane);
    if (reader.LeavesTiles()) m_spLeft = spPlane;
}

CSerializer CVectorLayerBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_lstPaths.size()));
    writer.WriteInt32(static_cast<int32_t>(GetLayerColor()));
    writer.WriteChunk(SerializeBase(*this));
    for (const auto& spPath : m_lstPaths) writer.WriteChunk(spPath->Serialize());
    return writer;
}

void CVectorLayerBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    SetLayerColor(static_cast<TColor>(reader.ReadInt32()) & 0xFFFFFF);
    ReadBase(*this, reader);
    std::vector<boost::shared_ptr<CPathObject>> vPaths;
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        vPaths.push_back(CreatePathObjectByTag(chunk.GetTag()));
        vPaths.back()->Read(chunk);
    }
    reader.ExpectEnd();
    // Nearly all of the time goes into the outlines, which know nothing of each other.
    const size_t nParts = (vPaths.size() + PATHS_OF_PART - 1) / PATHS_OF_PART;
    ForEachIndex(nParts, AvailableThreads(), [&](size_t nPart) {
        const size_t nEnd = std::min((nPart + 1) * PATHS_OF_PART, vPaths.size());
        for (size_t n = nPart * PATHS_OF_PART; n < nEnd; ++n) vPaths[n]->FinishRead();
    });
    for (const auto& spPath : vPaths) InsertPath(spPath);
}
