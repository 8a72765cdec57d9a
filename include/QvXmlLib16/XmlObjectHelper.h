#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

// Checks shared by the metadata and the generated-class driver.
class QVXML_API CXmlObjectHelper {
public:
    // Whether the whole of value matches the XML Schema pattern. Patterns are compiled once
    // and cached for every thread. A pattern that is not valid, or whose matching exceeds the
    // backtracking limits, throws CQvException "Invalid Regular Expression: %ls Error: '%ls'".
    static bool TestRegEx(const std::wstring& pattern, const std::wstring& value);
};

} // namespace QvXmlLib16
