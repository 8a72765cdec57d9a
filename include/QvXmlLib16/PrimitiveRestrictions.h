#pragma once

#include <QvXmlLib16/Export.h>

#include <string>

namespace QvXmlLib16 {

// The facets of one primitive member. Bounds stay text and are read with the value type's
// parser at each check. Absent: an empty string, or -1 for the counts.
class QVXML_API CPrimitiveRestrictions {
public:
    CPrimitiveRestrictions();
    // Null strings and -1 mean absent; the order is the one generated code and the primitive
    // collections use.
    CPrimitiveRestrictions(const wchar_t* pattern, long long minLength, long long maxLength,
                           const wchar_t* minInclusive, const wchar_t* maxInclusive,
                           const wchar_t* minExclusive, const wchar_t* maxExclusive,
                           long long length, long long totalDigits, long long fractionDigits);
    CPrimitiveRestrictions(const CPrimitiveRestrictions&) = default;
    CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions&) = default;
    virtual ~CPrimitiveRestrictions();

    std::wstring m_pattern;
    long long m_minLength = -1;
    long long m_maxLength = -1;
    std::wstring m_minInclusive;
    std::wstring m_maxInclusive;
    std::wstring m_minExclusive;
    std::wstring m_maxExclusive;
    long long m_length = -1;
    long long m_totalDigits = -1;
    long long m_fractionDigits = -1;
};

} // namespace QvXmlLib16
