#pragma once

#include <QvXmlLib16/XmlElement.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace QvXmlLib16::detail {

// The arena behind a document's tree: nodes and their text are carved from large chunks, so
// building a tree costs no allocation per node and freeing it a handful. Deleting a node
// placed here only runs its destructor; the memory goes with the store. Nodes here hold
// uncounted names and no memory the store does not free, so a whole tree can be dropped
// without visiting it. The document holds one reference; an element unlinked from the tree
// holds another until it is deleted, so it stays valid even when the document goes first.
// Not thread-safe apart from the count: a tree is built by one thread.
class CTreeStore {
public:
    explicit CTreeStore(const CXmlDocument* document) : m_document(document) {}

    ~CTreeStore();
    CTreeStore(const CTreeStore&) = delete;
    CTreeStore& operator=(const CTreeStore&) = delete;

    void AddRef() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }

    void Release() noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    // Aligned for a node: nodes hold pointers and sizes, nothing wider.
    void* Allocate(std::size_t size) { return Take(size, alignof(void*)); }

    char* AllocateText(std::size_t size) { return static_cast<char*>(Take(size, 1)); }

    const CXmlDocument* GetDocument() const { return m_document; }

    // An empty attribute list for an element, destroyed with the store.
    std::vector<CXmlAttribute*>* NewAttributeList();

    // Grows a text block to newSize, in place when it is the newest block of its chunk.
    char* GrowText(char* block, std::size_t oldSize, std::size_t newSize);

private:
    static constexpr std::size_t kFirstChunk = 4 * 1024;
    static constexpr std::size_t kLargestChunk = 1024 * 1024;

    struct Chunk {
        Chunk* next;
    };

    void* Take(std::size_t size, std::size_t align) {
        const std::size_t pad = (0 - reinterpret_cast<std::uintptr_t>(m_cursor)) & (align - 1);
        if (static_cast<std::size_t>(m_end - m_cursor) < size + pad)
            return TakeFromNewChunk(size);
        char* block = m_cursor + pad;
        m_cursor = block + size;
        return block;
    }

    void* TakeFromNewChunk(std::size_t size);

    const CXmlDocument* m_document;
    std::atomic<long> m_references{1};
    Chunk* m_chunks = nullptr;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
    std::size_t m_nextChunk = kFirstChunk;
    std::vector<std::vector<CXmlAttribute*>*> m_attributeLists;
};

// A name as a node keeps it: uncounted in a store, counted on the heap.
inline CSharedName NodeName(const CSharedName& name, const CTreeStore* store) {
    return store ? name.Borrowed() : name;
}

// Makes an unlinked node keep its store alive until the node is deleted.
void KeepStoreFor(const void* node) noexcept;

// A byte sink over a node's compact text, for the text appenders.
class CTextSink {
public:
    CTextSink(CCompactText& text, CTreeStore* store) : m_text(text), m_store(store) {}

    void append(const char* bytes, std::size_t count) { m_text.Append(m_store, bytes, count); }

    void push_back(char c) { m_text.Append(m_store, &c, 1); }

    // count more bytes for the caller to write, and the unused tail of them back.
    char* Extend(std::size_t count) { return m_text.Extend(m_store, count); }

    void GiveBack(std::size_t count) { m_text.GiveBack(count); }

private:
    CCompactText& m_text;
    CTreeStore* m_store;
};

} // namespace QvXmlLib16::detail
