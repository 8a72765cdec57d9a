#pragma once

#include <QvXmlLib16/Export.h>

// Empty base that names its derived class; kept as a hook for instance tracking.
class QVXML_API CInstanceMonitor {
public:
    explicit CInstanceMonitor(const wchar_t* /*className*/) {}
};
