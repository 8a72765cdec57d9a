#include <QvXmlLib16/QVCriticalSection.h>

CQVCriticalSection::CQVCriticalSection() {
    pthread_mutex_init(&m_mutex, nullptr);
}

CQVCriticalSection::~CQVCriticalSection() {
    pthread_mutex_destroy(&m_mutex);
}

void CQVCriticalSection::Enter() {
    pthread_mutex_lock(&m_mutex);
}

void CQVCriticalSection::Leave() {
    pthread_mutex_unlock(&m_mutex);
}
