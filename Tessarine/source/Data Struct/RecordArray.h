#pragma once
#include "Assert.h"
#include "BlockAllocator.h"
#include "Memory.h"
#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace tessarine
{
/// Growable array that owns records at stable addresses.
///
/// Slot i holds the record that was made as the i-th, or null once it was deleted; slots are never reused.
/// Records lie in large blocks, one behind the other in the order of their creation, so that a mesh which was
/// built in one go is also walked in memory order. The memory of a deleted record is used again.
///
/// Needs   Records that can be copied, and moved without throwing.
/// Fails   An index beyond the slots is an assertion. Without memory, std::bad_alloc: nothing has changed.
template <class T>
class RecordArray
{
    struct FreeCell
    {
        FreeCell* next;
    };
    using Block = std::shared_ptr<std::byte>;

    /// The slots, and where in which blocks the next record goes. The records themselves stay in the blocks.
    struct Store
    {
        BlockVector<T*> slots;
        std::vector<Block> blocks;
        std::byte* next = nullptr;
        std::byte* end = nullptr;
        FreeCell* freeCells = nullptr;

        Store() = default;
        Store(const Store&) = default;
        Store& operator=(const Store&) = delete;
        Store(Store&& other) noexcept : Store() { Swap(other); }
        Store& operator=(Store&& other) noexcept
        {
            Store taken(std::move(other));
            Swap(taken);
            return *this;
        }
        ~Store() = default;

        void Swap(Store& other) noexcept
        {
            slots.swap(other.slots);
            blocks.swap(other.blocks);
            std::swap(next, other.next);
            std::swap(end, other.end);
            std::swap(freeCells, other.freeCells);
        }

        void DestroyRecords() noexcept { DestroyRecords(slots); }

        static void DestroyRecords(std::span<T* const> records) noexcept
        {
            for (T* pRecord : records)
            {
                if (pRecord != nullptr)
                {
                    pRecord->T::~T();
                }
            }
        }
    };

public:
    /// The array as it was at one moment, records and all. It holds the blocks, so that they outlive the
    /// array's own use of them.
    ///
    /// Needs   Of several checkpoints of one array, the younger is restored or dropped first.
    class Checkpoint
    {
    public:
        Checkpoint() = default;
        Checkpoint(Checkpoint&& other) noexcept
            : m_Store(std::move(other.m_Store)),
              m_Copies(std::move(other.m_Copies)),
              m_FreeCells(std::move(other.m_FreeCells)),
              m_bHoldsRecords(std::exchange(other.m_bHoldsRecords, false))
        {
        }
        Checkpoint& operator=(Checkpoint&& other) noexcept
        {
            Checkpoint taken(std::move(other));
            m_Store.Swap(taken.m_Store);
            m_Copies.swap(taken.m_Copies);
            m_FreeCells.swap(taken.m_FreeCells);
            std::swap(m_bHoldsRecords, taken.m_bHoldsRecords);
            return *this;
        }
        Checkpoint(const Checkpoint&) = delete;
        Checkpoint& operator=(const Checkpoint&) = delete;
        ~Checkpoint()
        {
            if (m_bHoldsRecords)
            {
                m_Store.DestroyRecords();
            }
        }

    private:
        friend class RecordArray;

        Store m_Store;
        BlockVector<T> m_Copies;        ///< of Save: the live records in slot order
        std::vector<void*> m_FreeCells; ///< of Save: the free memory, first to be used first
        bool m_bHoldsRecords = false;   ///< of Take: the records themselves are in the blocks
    };

    /// How far the array has come at one moment, without the records.
    class Mark
    {
        friend class RecordArray;

        std::size_t m_nSlots = 0;
        std::size_t m_nBlocks = 0;
        std::byte* m_pNext = nullptr;
        std::byte* m_pEnd = nullptr;
        std::vector<void*> m_FreeCells; ///< first to be used first
    };

    RecordArray() = default;
    RecordArray(const RecordArray&) = delete;
    RecordArray& operator=(const RecordArray&) = delete;
    ~RecordArray() { m_Store.DestroyRecords(); }

    /// Appends a default-constructed record.
    T* Create()
    {
        if (m_Store.slots.size() == m_Store.slots.capacity())
        {
            m_Store.slots.reserve(std::max<std::size_t>(16, 2 * m_Store.slots.size()));
        }
        T* pRecord = m_Store.freeCells != nullptr ? CreateInFreeCell() : CreateAtEnd();
        m_Store.slots.push_back(pRecord);
        return pRecord;
    }

    /// Destroys the record and leaves null in its slot. A null slot stays as it is.
    void Delete(std::size_t index)
    {
        T* pRecord = (*this)[index];
        if (pRecord == nullptr)
        {
            return;
        }
        m_Store.slots[index] = nullptr;
        pRecord->T::~T();
        m_Store.freeCells = ::new (static_cast<void*>(pRecord)) FreeCell{m_Store.freeCells};
    }

    /// Destroys all records and gives back the memory.
    void Clear() noexcept
    {
        m_Store.DestroyRecords();
        m_Store = Store();
    }

    std::size_t size() const { return m_Store.slots.size(); }
    bool empty() const { return m_Store.slots.empty(); }

    T* operator[](std::size_t index) const
    {
        ASSERT(index < m_Store.slots.size());
        return m_Store.slots[index];
    }

    auto begin() const { return m_Store.slots.begin(); }
    auto end() const { return m_Store.slots.end(); }

    /// Makes room for `count` records in all, as one block.
    void Reserve(std::size_t count)
    {
        if (count > m_Store.slots.capacity())
        {
            m_Store.slots.reserve(std::max(count, size() + size() / 2));
        }
        const auto room = static_cast<std::size_t>(m_Store.end - m_Store.next) / sizeof(T);
        if (count > size() + room)
        {
            AddBlock(count - size());
        }
    }

    /// A copy of all live records.
    Checkpoint Save() const
    {
        Checkpoint saved;
        saved.m_Store.slots = m_Store.slots;
        saved.m_Store.blocks = m_Store.blocks;
        saved.m_Store.next = m_Store.next;
        saved.m_Store.end = m_Store.end;
        saved.m_Copies.reserve(static_cast<std::size_t>(
            std::count_if(begin(), end(), [](const T* pRecord) { return pRecord != nullptr; })));
        for (const T* pRecord : m_Store.slots)
        {
            if (pRecord != nullptr)
            {
                saved.m_Copies.push_back(*pRecord);
            }
        }
        saved.m_FreeCells = ListFreeCells();
        return saved;
    }

    /// Moves everything out; the array is empty afterwards.
    Checkpoint Take() noexcept
    {
        Checkpoint taken;
        taken.m_Store.Swap(m_Store);
        taken.m_bHoldsRecords = true;
        return taken;
    }

    /// Drops what the array holds now and brings every record back at its old address with its old value.
    void Restore(Checkpoint&& checkpoint) noexcept
    {
        static_assert(std::is_nothrow_move_constructible_v<T>);
        m_Store.DestroyRecords();
        m_Store = std::move(checkpoint.m_Store);
        if (!std::exchange(checkpoint.m_bHoldsRecords, false))
        {
            PutCopiesBack(checkpoint);
        }
    }

    Mark GetMark() const
    {
        Mark mark;
        mark.m_nSlots = m_Store.slots.size();
        mark.m_nBlocks = m_Store.blocks.size();
        mark.m_pNext = m_Store.next;
        mark.m_pEnd = m_Store.end;
        mark.m_FreeCells = ListFreeCells();
        return mark;
    }

    /// Destroys the records that were made since the mark; the next record gets the number that it would have got
    /// then, and the address as well where the block of it was there.
    ///
    /// Needs   No record that was there has been deleted since, and the array has not been cleared, taken or
    ///         restored.
    void Rewind(const Mark& mark) noexcept
    {
        const auto firstNew = m_Store.slots.begin() + static_cast<std::ptrdiff_t>(mark.m_nSlots);
        Store::DestroyRecords({firstNew, m_Store.slots.end()});
        m_Store.slots.erase(firstNew, m_Store.slots.end());
        m_Store.blocks.erase(m_Store.blocks.begin() + static_cast<std::ptrdiff_t>(mark.m_nBlocks),
                             m_Store.blocks.end());
        m_Store.next = mark.m_pNext;
        m_Store.end = mark.m_pEnd;
        ChainFreeCells(mark.m_FreeCells);
    }

private:
    static constexpr std::size_t kFirstBlockBytes = std::size_t{4} << 10U;
    static constexpr std::size_t kLargestBlockBytes = std::size_t{1} << 20U;
    static_assert(sizeof(T) >= sizeof(FreeCell) && alignof(T) >= alignof(FreeCell));
    static_assert(alignof(T) <= kBlockAlignment);

    T* CreateAtEnd()
    {
        if (m_Store.next == m_Store.end)
        {
            AddBlock(std::max<std::size_t>(1, NextBlockBytes() / sizeof(T)));
        }
        T* pRecord = ::new (static_cast<void*>(m_Store.next)) T();
        m_Store.next += sizeof(T);
        return pRecord;
    }

    /// The cell is not used again when the record cannot be made: its link may be overwritten by then.
    T* CreateInFreeCell()
    {
        FreeCell* pCell = m_Store.freeCells;
        m_Store.freeCells = pCell->next;
        return ::new (static_cast<void*>(pCell)) T();
    }

    /// Each block is as large as all before it, within limits: small arrays stay small.
    std::size_t NextBlockBytes() const
    {
        return std::clamp(size() * sizeof(T), kFirstBlockBytes, kLargestBlockBytes);
    }

    void AddBlock(std::size_t records)
    {
        const std::size_t bytes = records * sizeof(T);
        const Block block(static_cast<std::byte*>(AllocateBlock(bytes)), &FreeBlock);
        m_Store.blocks.push_back(block);
        m_Store.next = block.get();
        m_Store.end = block.get() + bytes;
    }

    void PutCopiesBack(Checkpoint& checkpoint) noexcept
    {
        auto copy = checkpoint.m_Copies.begin();
        for (T* pRecord : m_Store.slots)
        {
            if (pRecord != nullptr)
            {
                ::new (static_cast<void*>(pRecord)) T(std::move(*copy++));
            }
        }
        checkpoint.m_Copies.clear();
        ChainFreeCells(checkpoint.m_FreeCells);
        checkpoint.m_FreeCells.clear();
    }

    /// The first to be used first.
    std::vector<void*> ListFreeCells() const
    {
        std::vector<void*> cells;
        for (FreeCell* pCell = m_Store.freeCells; pCell != nullptr; pCell = pCell->next)
        {
            cells.push_back(pCell);
        }
        return cells;
    }

    void ChainFreeCells(const std::vector<void*>& cells) noexcept
    {
        m_Store.freeCells = nullptr;
        for (auto cell = cells.rbegin(); cell != cells.rend(); ++cell)
        {
            m_Store.freeCells = ::new (*cell) FreeCell{m_Store.freeCells};
        }
    }

    Store m_Store;
};
}
