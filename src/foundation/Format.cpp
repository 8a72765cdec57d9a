#include <QvXmlLib16/Format.h>

#include <cctype>
#include <climits>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <vector>

namespace QvXmlLib16 {

namespace {

// What one pass over the format learns: a first guess of the output size (large enough for the
// library's own templates) and whether a %n conversion has to be neutralised.
struct FormatScan {
    size_t estimate = 0;
    bool hasPercentN = false;
};

size_t ReadNumber(const wchar_t*& p) {
    size_t n = 0;
    while (*p >= L'0' && *p <= L'9') {
        if (n < 100000000)
            n = n * 10 + static_cast<size_t>(*p - L'0');
        ++p;
    }
    return n;
}

size_t StringItemLength(size_t length, bool hasPrecision, size_t precision, size_t width) {
    if (hasPrecision && length > precision)
        length = precision;
    return length > width ? length : width;
}

// Walks the conversions, consuming the arguments in step with vswprintf so that string
// arguments can be measured.
FormatScan ScanFormat(const wchar_t* format, va_list args) {
    FormatScan scan;
    for (const wchar_t* p = format; *p; ++p) {
        if (*p != L'%') {
            scan.estimate += 4;
            continue;
        }
        ++p;
        if (*p == L'%') {
            scan.estimate += 4;
            continue;
        }
        size_t width = 0, precision = 0;
        bool hasPrecision = false;
        for (; *p && std::wcschr(L"#-+0 '", *p); ++p)
            scan.estimate += (*p == L'#') ? 2 : 0;
        if (*p == L'*') {
            int w = va_arg(args, int);
            width = w < 0 ? static_cast<size_t>(-static_cast<long long>(w)) : size_t(w);
            ++p;
        } else {
            width = ReadNumber(p);
        }
        if (*p == L'.') {
            ++p;
            hasPrecision = true;
            if (*p == L'*') {
                int pr = va_arg(args, int);
                precision = pr < 0 ? 0 : size_t(pr);
                hasPrecision = pr >= 0;
                ++p;
            } else {
                precision = ReadNumber(p);
            }
        }
        int longs = 0;
        bool wide = false, longDouble = false, size64 = false;
        for (;; ++p) {
            if (*p == L'l') {
                ++longs;
                wide = true;
            } else if (*p == L'h') {
                continue;
            } else if (*p == L'L' || *p == L'q') {
                longDouble = true;
                size64 = true;
            } else if (*p == L'z' || *p == L'j' || *p == L't') {
                size64 = true;
            } else {
                break;
            }
        }
        const size_t numeric = width + precision;
        switch (*p) {
        case L'c':
        case L'C':
            (void)va_arg(args, unsigned int);
            scan.estimate += hasPrecision && precision < 2 ? precision : 2;
            break;
        case L's':
        case L'S': {
            // In wide printf a bare %s reads a narrow string; %ls and %S read wide ones.
            const bool isWide = wide || *p == L'S';
            size_t length;
            if (isWide) {
                const wchar_t* s = va_arg(args, const wchar_t*);
                length = s ? std::wcslen(s) : 6;
            } else {
                const char* s = va_arg(args, const char*);
                length = s ? std::strlen(s) : 6;
            }
            scan.estimate += StringItemLength(length ? length : 1, hasPrecision, precision, width);
            break;
        }
        case L'd':
        case L'i':
        case L'o':
        case L'u':
        case L'x':
        case L'X':
            if (longs > 0 || size64)
                (void)va_arg(args, long long);
            else
                (void)va_arg(args, int);
            scan.estimate += numeric > 32 ? numeric : 32;
            break;
        case L'p':
            (void)va_arg(args, void*);
            scan.estimate += numeric > 32 ? numeric : 32;
            break;
        case L'e':
        case L'E':
        case L'g':
        case L'G':
        case L'a':
        case L'A':
            if (longDouble)
                (void)va_arg(args, long double);
            else
                (void)va_arg(args, double);
            scan.estimate += numeric > 128 ? numeric : 128;
            break;
        case L'f':
        case L'F':
            // The integer part of a double has at most 309 digits.
            if (longDouble)
                (void)va_arg(args, long double);
            else
                (void)va_arg(args, double);
            scan.estimate += 330 + numeric + (longDouble ? 4600 : 0);
            break;
        case L'n': scan.hasPercentN = true; break;
        case L'\0': return scan;
        default: break;
        }
        if (!*p)
            break;
    }
    return scan;
}

// Rewrites every %n conversion as the literal text "%n": it must never write through an
// argument, and the library's file messages carry it as a placeholder.
std::wstring NeutralisePercentN(const wchar_t* format) {
    std::wstring out;
    for (const wchar_t* p = format; *p; ++p) {
        if (*p != L'%') {
            out += *p;
            continue;
        }
        if (p[1] == L'%') {
            out += L"%%";
            ++p;
            continue;
        }
        const wchar_t* end = p + 1;
        while (*end && std::wcschr(L"#-+0 '*.0123456789hlLqjzt", *end))
            ++end;
        if (*end == L'n') {
            out.append(L"%%").append(p + 1, end + 1);
            p = end;
        } else {
            out += L'%';
        }
    }
    return out;
}

} // namespace

std::wstring FormatV(const wchar_t* format, va_list args) {
    if (!format || !*format)
        return std::wstring();
    va_list scanArgs;
    va_copy(scanArgs, args);
    const FormatScan scan = ScanFormat(format, scanArgs);
    va_end(scanArgs);

    std::wstring safeFormat;
    if (scan.hasPercentN) {
        safeFormat = NeutralisePercentN(format);
        format = safeFormat.c_str();
    }

    // Grow until vswprintf succeeds. It also fails on a narrow argument the locale cannot
    // convert, so growth stops well past anything the estimate allows for.
    const size_t limit = scan.estimate * 8 + 65536;
    std::vector<wchar_t> buffer(scan.estimate + 1 > 256 ? scan.estimate + 1 : 256);
    for (;;) {
        va_list attempt;
        va_copy(attempt, args);
        buffer[0] = L'\0';
        const int written = std::vswprintf(buffer.data(), buffer.size(), format, attempt);
        va_end(attempt);
        if (written >= 0)
            return std::wstring(buffer.data(), static_cast<size_t>(written));
        if (buffer.size() >= limit) {
            buffer.back() = L'\0';
            return std::wstring(buffer.data());
        }
        buffer.assign(buffer.size() * 2, L'\0');
    }
}

std::wstring FormatString(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring result = FormatV(format, args);
    va_end(args);
    return result;
}

// What "%0*d" prints, without the formatter: dates print several of these per value.
std::wstring PadZero(int value, unsigned char width) {
    wchar_t digits[16];
    wchar_t* p = digits + 16;
    unsigned magnitude =
        value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
    do {
        *--p = static_cast<wchar_t>(L'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    const size_t count = static_cast<size_t>(digits + 16 - p);
    const size_t sign = value < 0 ? 1 : 0;
    const size_t zeros = width > count + sign ? width - count - sign : 0;
    std::wstring text;
    text.reserve(sign + zeros + count);
    if (sign)
        text += L'-';
    text.append(zeros, L'0');
    return text.append(p, count);
}

std::wstring TrimTrainingZeros(std::wstring s) {
    size_t keep = s.size();
    while (keep > 1 && s[keep - 1] == L'0')
        --keep;
    s.resize(keep);
    return s;
}

std::wstring ToFracString(unsigned short millis, unsigned short micros, unsigned short nanos) {
    if (nanos != 0)
        return L"." + PadZero(millis, 3) + PadZero(micros, 3)
               + TrimTrainingZeros(PadZero(nanos, 3));
    if (micros != 0)
        return L"." + PadZero(millis, 3) + TrimTrainingZeros(PadZero(micros, 3));
    if (millis != 0)
        return L"." + TrimTrainingZeros(PadZero(millis, 3));
    return std::wstring();
}

namespace {

template <class String>
void FindReplaceImpl(String& s, const String& find, const String& replace) {
    if (find.empty())
        return;
    // After a replacement at pos, nothing before pos - (find.size() - 1) can have changed, so
    // rescanning from there finds what a rescan from the start would.
    const bool replaceHoldsFind = replace.find(find) != String::npos;
    size_t from = 0;
    for (;;) {
        const size_t pos = s.find(find, from);
        if (pos == String::npos)
            return;
        s.replace(pos, find.size(), replace);
        if (replaceHoldsFind)
            from = pos + replace.size();
        else
            from = pos >= find.size() - 1 ? pos - (find.size() - 1) : 0;
    }
}

} // namespace

void FindReplace(std::string& s, const std::string& find, const std::string& replace) {
    FindReplaceImpl(s, find, replace);
}

void FindReplace(std::wstring& s, const std::wstring& find, const std::wstring& replace) {
    FindReplaceImpl(s, find, replace);
}

std::string UnicodeToMultiByte(const wchar_t* text) {
    std::string out;
    if (!text)
        return out;
    char buffer[MB_LEN_MAX];
    for (const wchar_t* p = text; *p; ++p) {
        std::mbstate_t state{};
        const size_t n = std::wcrtomb(buffer, *p, &state);
        if (n == static_cast<size_t>(-1))
            out += '?';
        else
            out.append(buffer, n);
    }
    const size_t nul = out.find('\0');
    if (nul != std::string::npos)
        out.resize(nul);
    return out;
}

char* strupr(char* s) {
    if (!s)
        return s;
    for (char* p = s; *p; ++p)
        *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
    return s;
}

long _filelength(FILE* f) {
    if (!f)
        return -1;
    const long position = std::ftell(f);
    if (position < 0 || std::fseek(f, 0, SEEK_END) != 0)
        return -1;
    const long length = std::ftell(f);
    std::fseek(f, position, SEEK_SET);
    return length;
}

} // namespace QvXmlLib16
