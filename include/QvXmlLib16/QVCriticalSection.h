#pragma once

#include <QvXmlLib16/Export.h>

#include <pthread.h>

// A POSIX mutex: created by the constructor, destroyed by the destructor.
class QVXML_API CQVCriticalSection {
public:
    CQVCriticalSection();
    ~CQVCriticalSection();
    CQVCriticalSection(const CQVCriticalSection&) = delete;
    CQVCriticalSection& operator=(const CQVCriticalSection&) = delete;

    void Enter();
    void Leave();

    // Holds the section for the lifetime of a scope.
    class CScopedLock {
    public:
        explicit CScopedLock(CQVCriticalSection& section) : m_section(section) { section.Enter(); }

        ~CScopedLock() { m_section.Leave(); }

        CScopedLock(const CScopedLock&) = delete;
        CScopedLock& operator=(const CScopedLock&) = delete;

    private:
        CQVCriticalSection& m_section;
    };

private:
    pthread_mutex_t m_mutex;
};
