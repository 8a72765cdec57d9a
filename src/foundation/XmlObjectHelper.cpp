#include "foundation/XsdRegex.h"

#include <QvXmlLib16/XmlObjectHelper.h>

namespace QvXmlLib16 {

bool CXmlObjectHelper::TestRegEx(const std::wstring& pattern, const std::wstring& value) {
    return detail::MatchXsdPattern(pattern, value);
}

} // namespace QvXmlLib16
