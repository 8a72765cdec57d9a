#pragma once

#include "foundation/FastTls.h"

#include <string>

namespace QvXmlLib16::detail {

// Element text and attribute values are widened into one buffer per thread before they are
// converted, so reading a value allocates nothing of its own once the buffer has grown. What
// it holds is valid until the next value is read on the thread: a reader is done with it
// before it calls the generated class.
inline std::wstring& ReadScratch() {
    QVXML_FAST_TLS thread_local std::wstring scratch;
    return scratch;
}

} // namespace QvXmlLib16::detail
