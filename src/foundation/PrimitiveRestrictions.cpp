#include <QvXmlLib16/PrimitiveRestrictions.h>

namespace QvXmlLib16 {

namespace {

std::wstring TextOrAbsent(const wchar_t* text) {
    return text ? std::wstring(text) : std::wstring();
}

} // namespace

CPrimitiveRestrictions::CPrimitiveRestrictions() = default;

CPrimitiveRestrictions::CPrimitiveRestrictions(const wchar_t* pattern, long long minLength,
                                               long long maxLength, const wchar_t* minInclusive,
                                               const wchar_t* maxInclusive,
                                               const wchar_t* minExclusive,
                                               const wchar_t* maxExclusive, long long length,
                                               long long totalDigits, long long fractionDigits)
    : m_pattern(TextOrAbsent(pattern)),
      m_minLength(minLength),
      m_maxLength(maxLength),
      m_minInclusive(TextOrAbsent(minInclusive)),
      m_maxInclusive(TextOrAbsent(maxInclusive)),
      m_minExclusive(TextOrAbsent(minExclusive)),
      m_maxExclusive(TextOrAbsent(maxExclusive)),
      m_length(length),
      m_totalDigits(totalDigits),
      m_fractionDigits(fractionDigits) {}

CPrimitiveRestrictions::~CPrimitiveRestrictions() = default;

} // namespace QvXmlLib16
