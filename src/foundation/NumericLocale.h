#pragma once

#include <locale.h>

namespace QvXmlLib16::detail {

// Runs fn with the calling thread switched to the C locale, so that wcstod and swprintf use a
// full stop whatever locale the application chose. Only this thread is affected.
template <class Fn>
auto RunInCLocale(Fn&& fn) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(0));
    if (!cLocale)
        return fn();

    struct Restore {
        locale_t previous;

        ~Restore() { uselocale(previous); }
    } restore{uselocale(cLocale)};

    return fn();
}

} // namespace QvXmlLib16::detail
