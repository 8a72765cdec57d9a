#include "xml/TreeStore.h"

#include "xml/XmlMessages.h"

#include <QvXmlLib16/QvException.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace QvXmlLib16::detail {

namespace {

// The word in front of every node: its store, or null for a heap node; the low bit is set
// while an unlinked node holds a reference to its store.
constexpr std::uintptr_t kHoldsStore = 1;

std::uintptr_t& HeaderOf(const void* node) {
    return const_cast<std::uintptr_t*>(static_cast<const std::uintptr_t*>(node))[-1];
}

} // namespace

// ---- CTreeStore ----

CTreeStore::~CTreeStore() {
    for (std::vector<CXmlAttribute*>* attributes : m_attributeLists)
        attributes->~vector();
    while (m_chunks) {
        Chunk* next = m_chunks->next;
        ::operator delete(m_chunks);
        m_chunks = next;
    }
}

void* CTreeStore::TakeFromNewChunk(std::size_t size) {
    // A block over a quarter of the largest chunk gets a chunk to itself, and the current
    // chunk stays in use.
    if (size > kLargestChunk / 4) {
        Chunk* chunk = static_cast<Chunk*>(::operator new(sizeof(Chunk) + size));
        chunk->next = m_chunks;
        m_chunks = chunk;
        return chunk + 1;
    }
    const std::size_t capacity = std::max(m_nextChunk, size);
    m_nextChunk = std::min(m_nextChunk * 2, kLargestChunk);
    Chunk* chunk = static_cast<Chunk*>(::operator new(sizeof(Chunk) + capacity));
    chunk->next = m_chunks;
    m_chunks = chunk;
    char* block = reinterpret_cast<char*>(chunk + 1);
    m_cursor = block + size;
    m_end = block + capacity;
    return block;
}

std::vector<CXmlAttribute*>* CTreeStore::NewAttributeList() {
    using List = std::vector<CXmlAttribute*>;
    // Still empty, an unregistered list holds nothing: a failed push loses no memory.
    List* list = new (Allocate(sizeof(List))) List();
    m_attributeLists.push_back(list);
    return list;
}

char* CTreeStore::GrowText(char* block, std::size_t oldSize, std::size_t newSize) {
    const std::size_t more = newSize - oldSize;
    if (block + oldSize == m_cursor && static_cast<std::size_t>(m_end - m_cursor) >= more) {
        m_cursor += more;
        return block;
    }
    char* grown = AllocateText(newSize);
    std::memcpy(grown, block, oldSize);
    return grown;
}

void KeepStoreFor(const void* node) noexcept {
    std::uintptr_t& header = HeaderOf(node);
    CTreeStore* store = reinterpret_cast<CTreeStore*>(header & ~kHoldsStore);
    if (store && !(header & kHoldsStore)) {
        store->AddRef();
        header |= kHoldsStore;
    }
}

// ---- CTreeNodeStorage ----

void* CTreeNodeStorage::operator new(std::size_t size) {
    return operator new(size, nullptr);
}

void* CTreeNodeStorage::operator new(std::size_t size, CTreeStore* store) {
    const std::size_t total = size + sizeof(std::uintptr_t);
    auto* header =
        static_cast<std::uintptr_t*>(store ? store->Allocate(total) : ::operator new(total));
    *header = reinterpret_cast<std::uintptr_t>(store);
    return header + 1;
}

void CTreeNodeStorage::operator delete(void* node) noexcept {
    if (!node)
        return;
    const std::uintptr_t header = HeaderOf(node);
    if (header == 0)
        ::operator delete(&HeaderOf(node));
    else if (header & kHoldsStore)
        reinterpret_cast<CTreeStore*>(header & ~kHoldsStore)->Release();
}

void CTreeNodeStorage::operator delete(void* node, CTreeStore*) noexcept {
    operator delete(node);
}

// ---- CCompactText ----

// Text that grows keeps at least doubling, so text arriving in many pieces is appended in
// amortised constant time; the first block is made to measure.
void CCompactText::Reserve(CTreeStore* store, std::size_t capacity) {
    if (capacity <= m_capacity)
        return;
    constexpr std::size_t kLimit = std::numeric_limits<std::uint32_t>::max();
    if (capacity > kLimit)
        throw CQvException(msg::kTextTooLong);
    if (m_size > 0)
        capacity = std::min(std::max<std::size_t>(capacity, 2 * std::size_t{m_capacity}), kLimit);
    char* grown;
    if (store) {
        grown =
            m_data ? store->GrowText(m_data, m_capacity, capacity) : store->AllocateText(capacity);
    } else {
        grown = static_cast<char*>(std::realloc(m_data, capacity));
        if (!grown)
            throw std::bad_alloc();
    }
    m_data = grown;
    m_capacity = static_cast<std::uint32_t>(capacity);
}

void CCompactText::Append(CTreeStore* store, const char* bytes, std::size_t count) {
    if (count == 0)
        return;
    std::memcpy(Extend(store, count), bytes, count);
}

void CCompactText::Free(CTreeStore* store) noexcept {
    if (!store)
        std::free(m_data);
    m_data = nullptr;
    m_size = m_capacity = 0;
}

} // namespace QvXmlLib16::detail
