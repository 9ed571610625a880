// The block grid and all plane operations that do not depend on the pixel format.
#pragma once

#include "core/Base/Failure.h"
#include "core/GDIBuffer/GDIBuffer.h"
#include "core/GDIBuffer/ScreenMap.h"
#include "core/RasterBuffer/RasterBuffer.h"
#include "core/RasterBuffer/TileGrid.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <vector>

/// `Block` is the final tile class, `Base` CRasterBuffer or a class derived from it.
template <class Block, class Base>
class CRasterBufferImpl : public Base {
public:
    using TBlockPtr = boost::shared_ptr<Block>;

    /// Tiles that other planes still hold lose their owner.
    ~CRasterBufferImpl() override {
        m_grid.ForEachTile([&](size_t, const TBlockPtr& spBlock) {
            if (spBlock->GetOwner() == this) spBlock->SetOwner(nullptr);
        });
    }

    void Create(CSize szBuffer, CSize szBlock) override {
        SELF_CHECK(invalid_argument, szBuffer.cx > 0 && szBuffer.cy > 0 && szBlock.cx > 0 && szBlock.cy > 0);
        const auto blocks = [](int64_t n, int64_t nBlock) {
            return static_cast<int32_t>((n + nBlock - 1) / nBlock);
        };
        const CSize szBlocks{blocks(szBuffer.cx, szBlock.cx), blocks(szBuffer.cy, szBlock.cy)};
        auto spDirty = boost::make_shared<CBoolMatrix>(szBlocks);
        m_grid.Create(spDirty->GetCount());
        this->m_szSize = szBuffer;
        this->m_szBlock = szBlock;
        this->m_szBlocks = szBlocks;
        this->m_spDirty = spDirty;
    }

    boost::shared_ptr<CRasterBlockBuffer> GetBlock(CPoint pt, bool bCreate) override {
        const size_t i = IndexOf(pt);
        if (m_grid[i] || !bCreate) return m_grid[i];
        return m_grid.Entry(i) = boost::static_pointer_cast<Block>(CreateBlock(CornerOf(pt)));
    }

    boost::shared_ptr<CRasterBlockBuffer> GetWritableBlock(CPoint pt) override {
        const TBlockPtr& spBlock = OwnBlock(pt);
        this->m_spDirty->Set(IndexOf(pt));
        return spBlock;
    }

    void Clear() override { m_grid.DropPages(); }

    void Swap(CRasterBuffer& plane) override {
        auto* pOther = dynamic_cast<CRasterBufferImpl*>(&plane);
        SELF_CHECK(invalid_argument, pOther != nullptr && this->IsCompatible(plane));
        for (size_t i = 0; i < m_grid.GetCount(); ++i) {
            if (m_grid[i] == pOther->m_grid[i]) continue;
            TBlockPtr& spHere = m_grid.Entry(i);
            TBlockPtr& spThere = pOther->m_grid.Entry(i);
            spHere.swap(spThere);
            if (spHere) spHere->SetOwner(this);
            if (spThere) spThere->SetOwner(pOther);
        }
        this->m_spDirty->Fill(true);
        pOther->m_spDirty->Fill(true);
    }

    boost::shared_ptr<CRasterBuffer> ShallowCopy() override {
        boost::shared_ptr<CRasterBuffer> spCopy = CreateLike();
        auto& copy = static_cast<CRasterBufferImpl&>(*spCopy);
        m_grid.ForEachTile([&](size_t i, const TBlockPtr& spBlock) { copy.m_grid.Entry(i) = spBlock; });
        return spCopy;
    }

    boost::shared_ptr<CRasterBuffer> DeepCopy() const override {
        boost::shared_ptr<CRasterBuffer> spCopy = CreateLike();
        auto& copy = static_cast<CRasterBufferImpl&>(*spCopy);
        m_grid.ForEachTile(
            [&](size_t i, const TBlockPtr& spBlock) { copy.m_grid.Entry(i) = copy.CloneFor(i, *spBlock); });
        return spCopy;
    }

    boost::shared_ptr<CRasterBlockBuffer>
    SetBlock(CPoint pt, const boost::shared_ptr<CRasterBlockBuffer>& spBlock) override {
        return SetBlockImpl(pt, boost::dynamic_pointer_cast<Block>(spBlock));
    }

    /// Same as SetBlock, for a tile of the right kind.
    virtual TBlockPtr SetBlockImpl(CPoint pt, const TBlockPtr& spBlock) {
        const size_t i = IndexOf(pt);
        TBlockPtr spOld = m_grid[i];
        if (spOld || spBlock) m_grid.Entry(i) = spBlock;
        if (spBlock) spBlock->SetOwner(this);
        this->m_spDirty->Set(i);
        return spOld;
    }

    bool HasBlock(CPoint pt) const override { return FindBlock(pt) != nullptr; }

    void AddTilesTo(CBoolMatrix& matrix) const override {
        const auto nColumns = static_cast<size_t>(this->m_szBlocks.cx);
        m_grid.ForEachTile([&](size_t i, const TBlockPtr&) {
            matrix.Add(static_cast<int32_t>(i % nColumns), static_cast<int32_t>(i / nColumns));
        });
    }

    void ShareBlock(CPoint pt, const boost::shared_ptr<CRasterBlockBuffer>& spBlock) override {
        ShareBlockImpl(pt, boost::dynamic_pointer_cast<Block>(spBlock));
    }

    /// Same as ShareBlock, for a tile of the right kind.
    void ShareBlockImpl(CPoint pt, const TBlockPtr& spBlock) {
        const size_t i = IndexOf(pt);
        if (m_grid[i] || spBlock) m_grid.Entry(i) = spBlock;
    }

    boost::shared_ptr<CRasterBlockBuffer> RenewBlock(CPoint pt) override {
        TBlockPtr& spEntry = m_grid.Entry(IndexOf(pt));
        if (spEntry && !IsShared(spEntry))
            spEntry->Clear();
        else
            spEntry = boost::static_pointer_cast<Block>(CreateBlock(CornerOf(pt)));
        return spEntry;
    }

    void DrawToScreen(CGDIBuffer& target, CPoint ptOrigin, const TViewState& view) override {
        const CScreenMap map(this->m_szSize, ptOrigin, view, target.GetSize());
        this->ForEachBlockIn(map.ToCanvas(map.GetTargetRect()), [&](CPoint pt) {
            if (!this->m_spDirty->At(IndexOf(pt))) DrawBlockToScreen(target, map, pt);
        });
    }

    void DrawBlockToScreen(CGDIBuffer& target, const CScreenMap& map, CPoint pt) const override {
        if (const TBlockPtr& spBlock = m_grid[IndexOf(pt)])
            spBlock->DrawToScreen(target, map);
        else
            target.FillGrey(map.ToTarget(CRect(CornerOf(pt), this->m_szBlock)), 255);
    }

    void ReadBitmap(CBitmapSession& session, IProgress& progress) override {
        this->ForEachBlock([&](CPoint pt) {
            progress.Advance();
            OwnBlock(pt)->ReadBitmap(session);
        });
    }

    void WriteBitmap(CBitmapSession& session, IProgress& progress) override {
        this->ForEachBlock([&](CPoint pt) {
            progress.Advance();
            this->GetBlockOrBlank(pt)->WriteBitmap(session);
        });
    }

    boost::shared_ptr<CRasterBlockBuffer> ExtractBlock(const CRect& rc, bool bCut,
                                                       const CRasterBlockBuffer* pMask) override {
        SELF_CHECK(invalid_argument, !rc.IsEmpty());
        auto spResult = boost::make_shared<Block>();
        spResult->Create(rc.Size(), rc.TopLeft());
        spResult->SetOwner(this);
        this->ForEachBlockIn(rc, [&](CPoint pt) {
            if (!m_grid[IndexOf(pt)]) return;
            const auto spTile = bCut ? GetWritableBlock(pt) : GetBlock(pt, false);
            // A tile that is shared by several blocks has the position of one of them.
            spTile->ExtractTo(*spResult, rc.TopLeft() + (spTile->GetPosition() - pt), bCut, pMask);
        });
        spResult->ClearOutside(RectFrom(rc.TopLeft()));
        return spResult;
    }

    void PasteBlock(const CRasterBlockBuffer& src, CPoint pt) override {
        SELF_CHECK(invalid_argument, dynamic_cast<const Block*>(&src) != nullptr);
        this->ForEachBlockIn(CRect(pt, src.GetSize()), [&](CPoint ptBlock) {
            const auto spTile = GetWritableBlock(ptBlock);
            spTile->PasteFrom(src, pt);
            spTile->ClearOutside(RectFrom(ptBlock));
        });
    }

    size_t GetBytes(const CRasterBuffer* pBeside) const override {
        const auto* pOther = dynamic_cast<const CRasterBufferImpl*>(pBeside);
        const bool bBeside = pOther && this->IsCompatible(*pOther);
        size_t nBytes = 0;
        m_grid.ForEachTile([&](size_t i, const TBlockPtr& spBlock) {
            if (!bBeside || pOther->m_grid[i] != spBlock) nBytes += spBlock->GetBytes();
        });
        return nBytes;
    }

    boost::shared_ptr<CRasterBlockBuffer> CreateBlock(CPoint pt) override {
        auto spBlock = boost::make_shared<Block>();
        spBlock->Create(this->m_szBlock, pt);
        spBlock->SetOwner(this);
        return spBlock;
    }

    boost::shared_ptr<CRasterBuffer> CreateLike() const override {
        return this->CreateSized(this->m_szSize, this->m_szBlock);
    }

    void Deserialize(CDeserializer& reader) override;
    void LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) override;
    CSerializer Serialize() const override;

    /// The tile that contains a pixel, null where there is none or the pixel is outside the grid.
    const Block* FindBlock(CPoint pt) const {
        const bool bInside = pt.x >= 0 && pt.y >= 0 && pt.x < this->m_szBlocks.cx * this->m_szBlock.cx &&
                             pt.y < this->m_szBlocks.cy * this->m_szBlock.cy;
        return bInside ? m_grid[IndexOf(pt)].get() : nullptr;
    }

    /// The same as a pointer that can be shared with another plane or block.
    TBlockPtr FindShared(CPoint pt) const { return FindBlock(pt) ? m_grid[IndexOf(pt)] : TBlockPtr(); }

protected:
    /// The plane chunk's tag.
    virtual uint32_t GetChunkTag() const = 0;

private:
    size_t IndexOf(CPoint pt) const {
        return static_cast<size_t>(pt.y / this->m_szBlock.cy) * static_cast<size_t>(this->m_szBlocks.cx) +
               static_cast<size_t>(pt.x / this->m_szBlock.cx);
    }
    CPoint CornerOf(CPoint pt) const {
        return {pt.x - pt.x % this->m_szBlock.cx, pt.y - pt.y % this->m_szBlock.cy};
    }
    /// The plane's rectangle relative to one of its pixels.
    CRect RectFrom(CPoint pt) const { return CRect(CPoint{-pt.x, -pt.y}, this->m_szSize); }
    /// True when other pointers share an entry's tile: an undo snapshot, a chunk that is being written or
    /// another block.
    static bool IsShared(const TBlockPtr& spEntry) { return spEntry.use_count() > 1; }
    /// Returns the block's tile, created or cloned so that it is not shared.
    const TBlockPtr& OwnBlock(CPoint pt) {
        const size_t i = IndexOf(pt);
        TBlockPtr& spEntry = m_grid.Entry(i);
        if (!spEntry)
            spEntry = boost::static_pointer_cast<Block>(CreateBlock(CornerOf(pt)));
        else if (IsShared(spEntry))
            spEntry = CloneFor(i, *spEntry);
        return spEntry;
    }
    /// Clones a tile for index `i` of this plane.
    TBlockPtr CloneFor(size_t i, const Block& block) {
        auto spClone = boost::static_pointer_cast<Block>(block.Clone());
        spClone->SetOwner(this);
        spClone->SetPosition(CornerAt(i));
        return spClone;
    }
    CPoint CornerAt(size_t i) const {
        return this->BlockCorner(static_cast<int32_t>(i % static_cast<size_t>(this->m_szBlocks.cx)),
                                 static_cast<int32_t>(i / static_cast<size_t>(this->m_szBlocks.cx)));
    }

    void ReadTiles(CDeserializer& reader);
    void ReadTile(size_t i, CDeserializer& chunk);
    void LeaveTile(size_t i, const CDeserializer& chunk);
    CSerializer WriteTiles() const;

    /// A tile in the image that the plane was read from.
    struct TLeftTile {
        size_t i;
        CDeserializer chunk;
    };

    CTileGrid<Block> m_grid;        ///< row by row
    std::vector<TLeftTile> m_vLeft; ///< by index
};

/// A plane of straight-alpha tiles: the common part of colour and grey planes beyond the grid. `Plane` is
/// the final class.
template <class Plane, class Block>
class CStraightAlphaBuffer : public CRasterBufferImpl<Block, CRasterBuffer> {
public:
    boost::shared_ptr<CRasterBuffer> CreateSized(CSize szBuffer, CSize szBlock) const override {
        auto spPlane = boost::make_shared<Plane>();
        spPlane->Create(szBuffer, szBlock);
        return spPlane;
    }
    void SetOpacity(uint8_t uOpacity) override { m_uOpacity = uOpacity; }
    uint8_t GetOpacity() const override { return m_uOpacity; }
    /// Uses this plane's opacity, whatever plane owns the tile.
    void BlendBlockInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override {
        if (const Block* pBlock = this->FindBlock(dest.GetPosition()))
            pBlock->BlendWith(dest, m_uOpacity, pMask);
    }

protected:
    uint32_t GetChunkTag() const override { return Plane::CHUNK_TAG; }

private:
    uint8_t m_uOpacity = 255;
};

constexpr uint32_t TAG_TILES = MakeTag("RASB");

template <class Block, class Base>
void CRasterBufferImpl<Block, Base>::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(GetChunkTag());
    const CSize szBuffer = reader.ReadSize();
    const CSize szBlock = reader.ReadSize();
    CDeserializer tiles;
    reader.ReadChunk(tiles);
    reader.ExpectEnd();
    // An empty grid also uses memory, so the geometry is checked before it is created.
    const auto valid = [](CSize sz) { return sz.cx > 0 && sz.cy > 0 && sz.cx <= 0xFFFF && sz.cy <= 0xFFFF; };
    if (!valid(szBuffer) || !valid(szBlock)) throw deserialize_error();
    const auto blocks = [](int32_t n, int32_t nBlock) { return static_cast<uint64_t>(n / nBlock) + 1; };
    reader.Claim(blocks(szBuffer.cx, szBlock.cx) * blocks(szBuffer.cy, szBlock.cy));
    Create(szBuffer, szBlock);
    ReadTiles(tiles);
    this->m_spDirty->Fill(false);
}

template <class Block, class Base>
void CRasterBufferImpl<Block, Base>::ReadTiles(CDeserializer& reader) {
    reader.ExpectTag(TAG_TILES);
    if (!(reader.ReadSize() == this->m_szSize)) throw deserialize_error();
    if (!(reader.ReadSize() == this->m_szBlock)) throw deserialize_error();
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    Clear();
    for (uint32_t n = 0; n < uCount; ++n) {
        const uint32_t uIndex = static_cast<uint32_t>(reader.ReadInt32());
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        if (uIndex >= m_grid.GetCount() || m_grid[uIndex]) throw deserialize_error();
        if (reader.LeavesTiles())
            LeaveTile(uIndex, chunk);
        else
            ReadTile(uIndex, chunk);
    }
    reader.ExpectEnd();
    std::ranges::sort(m_vLeft, {}, &TLeftTile::i);
    if (std::ranges::adjacent_find(m_vLeft, {}, &TLeftTile::i) != m_vLeft.end()) throw deserialize_error();
}

template <class Block, class Base>
void CRasterBufferImpl<Block, Base>::ReadTile(size_t i, CDeserializer& chunk) {
    auto spBlock = boost::make_shared<Block>();
    spBlock->Deserialize(chunk);
    if (!(spBlock->GetSize() == this->m_szBlock)) throw deserialize_error();
    // The index determines the tile's position; a position that differs is corrected.
    spBlock->SetPosition(CornerAt(i));
    spBlock->SetOwner(this);
    m_grid.Entry(i) = spBlock;
}

template <class Block, class Base>
void CRasterBufferImpl<Block, Base>::LeaveTile(size_t i, const CDeserializer& chunk) {
    Block block;
    CDeserializer head(chunk);
    block.ReadHead(head);
    if (!(block.GetSize() == this->m_szBlock)) throw deserialize_error();
    head.Claim(sizeof(TLeftTile));
    m_vLeft.push_back({i, chunk});
}

template <class Block, class Base>
void CRasterBufferImpl<Block, Base>::LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) {
    const size_t i = IndexOf(pt);
    const auto it = std::ranges::lower_bound(m_vLeft, i, {}, &TLeftTile::i);
    if (it == m_vLeft.end() || it->i != i) return;
    CDeserializer chunk = it->chunk.Through(spImage);
    ReadTile(i, chunk);
}

template <class Block, class Base>
CSerializer CRasterBufferImpl<Block, Base>::Serialize() const {
    CSerializer writer;
    writer.SetTag(GetChunkTag(), 0);
    writer.WriteSize(this->m_szSize);
    writer.WriteSize(this->m_szBlock);
    writer.WriteChunk(WriteTiles());
    return writer;
}

template <class Block, class Base>
CSerializer CRasterBufferImpl<Block, Base>::WriteTiles() const {
    CSerializer writer;
    writer.SetTag(TAG_TILES, 0);
    writer.WriteSize(this->m_szSize);
    writer.WriteSize(this->m_szBlock);
    int32_t nCount = 0;
    m_grid.ForEachTile([&](size_t, const TBlockPtr&) { ++nCount; });
    writer.WriteInt32(nCount);
    m_grid.ForEachTile([&](size_t i, const TBlockPtr& spBlock) {
        writer.WriteInt32(static_cast<int32_t>(i));
        writer.WriteChunk(spBlock->Serialize());
    });
    return writer;
}
