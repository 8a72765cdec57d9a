#pragma once

#include <utility>

namespace QvXmlLib16 {

// Counted reference to an object with AddRef()/Release() (every CXmlObjectBase). Counts start
// at 0, so never wrap an object the caller still owns in a CSmartPtr that could be its only
// reference: dropping it deletes the object.
template <class T>
class CSmartPtr {
public:
    CSmartPtr() = default;

    CSmartPtr(T* p) : m_p(p) { Acquire(); }

    CSmartPtr(const CSmartPtr& other) : m_p(other.m_p) { Acquire(); }

    CSmartPtr(CSmartPtr&& other) noexcept : m_p(other.m_p) { other.m_p = nullptr; }

    template <class U>
    CSmartPtr(const CSmartPtr<U>& other) : m_p(other.Ptr()) {
        Acquire();
    }

    ~CSmartPtr() { Drop(); }

    CSmartPtr& operator=(const CSmartPtr& other) { return *this = other.m_p; }

    CSmartPtr& operator=(CSmartPtr&& other) noexcept {
        if (this != &other) {
            T* old = m_p;
            m_p = other.m_p;
            other.m_p = nullptr;
            if (old)
                old->Release();
        }
        return *this;
    }

    CSmartPtr& operator=(T* p) {
        // AddRef first: p may be kept alive only through the reference being replaced.
        if (p)
            p->AddRef();
        T* old = m_p;
        m_p = p;
        if (old)
            old->Release();
        return *this;
    }

    T* operator->() const { return m_p; }

    T& operator*() const { return *m_p; }

    T* Ptr() const { return m_p; }

    operator T*() const { return m_p; }

    bool IsNull() const { return m_p == nullptr; }

private:
    void Acquire() {
        if (m_p)
            m_p->AddRef();
    }

    void Drop() {
        if (m_p)
            m_p->Release();
        m_p = nullptr;
    }

    T* m_p = nullptr;
};

} // namespace QvXmlLib16
