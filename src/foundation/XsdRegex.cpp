#include "foundation/XsdRegex.h"

#include "foundation/FoundationMessages.h"
#include "foundation/UnicodeBlocks.h"

#include <QvXmlLib16/ConvertUTF.h>
#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace QvXmlLib16::detail {

namespace {

// Backtracking budget of one match: enough for any sane facet, small enough that a
// catastrophic pattern fails in milliseconds.
constexpr uint32_t kMatchLimit = 1000000;
constexpr uint32_t kDepthLimit = 10000;
constexpr size_t kCacheLimit = 4096;

struct BadPattern {
    std::wstring reason;
};

std::string Hex(unsigned c) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "\\x{%X}", c);
    return buffer;
}

bool IsSurrogate(unsigned c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

// Literal characters: ASCII letters and digits as they are, everything else by code point, so
// nothing can be mistaken for PCRE syntax (XML Schema's '^' and '$' are ordinary characters).
std::string Literal(unsigned c) {
    if (IsSurrogate(c) || c > 0x10FFFF)
        throw BadPattern{L"character outside Unicode"};
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
        return std::string(1, static_cast<char>(c));
    return Hex(c);
}

// A set of characters as PCRE class content, or the complement of one (PCRE cannot negate
// an arbitrary set inside a class, so those stay apart until the class is assembled).
struct CharSet {
    std::string members;
    bool complement = false;
};

const char kNameStart[] = "\\p{L}\\p{Nl}_:";
const char kNameChar[] = "\\p{L}\\p{M}\\p{Nd}\\p{Nl}\\x{B7}._:\\x{2D}";
const char kSpace[] = "\\x{20}\\t\\n\\r";

bool IsCategory(const std::string& name) {
    static const char* const kCategories[] = {"L",  "Lu", "Ll", "Lt", "Lm", "Lo", "M",  "Mn", "Mc",
                                              "Me", "N",  "Nd", "Nl", "No", "P",  "Pc", "Pd", "Ps",
                                              "Pe", "Pi", "Pf", "Po", "Z",  "Zs", "Zl", "Zp", "S",
                                              "Sm", "Sc", "Sk", "So", "C",  "Cc", "Cf", "Co", "Cn"};
    for (const char* category : kCategories) {
        if (name == category)
            return true;
    }
    return false;
}

// Ranges of a block; surrogate blocks contribute nothing, as no UTF-8 value can hold one.
std::string BlockRanges(const std::string& name) {
    std::string ranges;
    bool known = false;
    for (const UnicodeBlock& block : kUnicodeBlocks) {
        if (name != block.name)
            continue;
        known = true;
        if (!IsSurrogate(block.first))
            ranges += Hex(block.first) + "-" + Hex(block.last);
    }
    if (!known)
        throw BadPattern{L"unknown block name"};
    return ranges;
}

class Translator {
public:
    explicit Translator(const std::wstring& pattern) : m_p(pattern.c_str()) {}

    std::string Run() {
        std::string out = "^(?:" + RegExp() + ")$";
        if (*m_p)
            throw BadPattern{*m_p == L')' ? L"unmatched ')'" : L"unexpected character"};
        return out;
    }

private:
    std::string RegExp() {
        std::string out = Branch();
        while (*m_p == L'|') {
            ++m_p;
            out += "|" + Branch();
        }
        return out;
    }

    std::string Branch() {
        std::string out;
        while (*m_p && *m_p != L'|' && *m_p != L')') {
            out += Atom();
            out += Quantifier();
        }
        return out;
    }

    std::string Atom() {
        const wchar_t c = *m_p++;
        switch (c) {
        case L'(': {
            std::string inner = RegExp();
            if (*m_p != L')')
                throw BadPattern{L"missing ')'"};
            ++m_p;
            return "(?:" + inner + ")";
        }
        case L'[': return ClassExpression();
        case L'.': return "[^\\n\\r]";
        case L'\\': return EscapeOutsideClass();
        case L'?':
        case L'*':
        case L'+':
        case L'{': throw BadPattern{L"quantifier without an atom"};
        case L']': throw BadPattern{L"unescaped ']'"};
        default: return Literal(static_cast<unsigned>(c));
        }
    }

    std::string Quantifier() {
        switch (*m_p) {
        case L'?':
        case L'*':
        case L'+': return std::string(1, static_cast<char>(*m_p++));
        case L'{': break;
        default: return std::string();
        }
        ++m_p;
        std::string out = "{" + Digits(true);
        if (*m_p == L',') {
            ++m_p;
            out += "," + Digits(false);
        }
        if (*m_p != L'}')
            throw BadPattern{L"malformed quantifier"};
        ++m_p;
        return out + "}";
    }

    std::string Digits(bool required) {
        std::string digits;
        while (*m_p >= L'0' && *m_p <= L'9')
            digits += static_cast<char>(*m_p++);
        if (required && digits.empty())
            throw BadPattern{L"malformed quantifier"};
        return digits;
    }

    std::string EscapeOutsideClass() {
        unsigned single;
        CharSet set;
        if (Escape(single, set))
            return Literal(single);
        return Assemble(set.complement, set.members, {}, std::string());
    }

    // After a backslash: true with the character for a single-character escape, false with
    // the set for a multi-character one.
    bool Escape(unsigned& single, CharSet& set) {
        const wchar_t c = *m_p++;
        switch (c) {
        case L'n': single = '\n'; return true;
        case L'r': single = '\r'; return true;
        case L't': single = '\t'; return true;
        case L'\\':
        case L'|':
        case L'.':
        case L'?':
        case L'*':
        case L'+':
        case L'(':
        case L')':
        case L'{':
        case L'}':
        case L'-':
        case L'[':
        case L']':
        case L'^': single = static_cast<unsigned>(c); return true;
        case L's': set = {kSpace, false}; return false;
        case L'S': set = {kSpace, true}; return false;
        case L'i': set = {kNameStart, false}; return false;
        case L'I': set = {kNameStart, true}; return false;
        case L'c': set = {kNameChar, false}; return false;
        case L'C': set = {kNameChar, true}; return false;
        case L'd': set = {"\\p{Nd}", false}; return false;
        case L'D': set = {"\\P{Nd}", false}; return false;
        // Everything but punctuation, separators and other characters.
        case L'w': set = {"\\p{L}\\p{M}\\p{N}\\p{S}", false}; return false;
        case L'W': set = {"\\p{P}\\p{Z}\\p{C}", false}; return false;
        case L'p':
        case L'P': set = Property(c == L'P'); return false;
        default: throw BadPattern{L"invalid escape"};
        }
    }

    CharSet Property(bool negated) {
        if (*m_p != L'{')
            throw BadPattern{L"malformed property escape"};
        std::string name;
        for (++m_p; *m_p && *m_p != L'}'; ++m_p) {
            if (*m_p > 0x7E)
                throw BadPattern{L"malformed property escape"};
            name += static_cast<char>(*m_p);
        }
        if (*m_p != L'}')
            throw BadPattern{L"malformed property escape"};
        ++m_p;
        if (name.compare(0, 2, "Is") == 0)
            return {BlockRanges(name.substr(2)), negated};
        if (!IsCategory(name))
            throw BadPattern{L"unknown property name"};
        return {(negated ? "\\P{" : "\\p{") + name + "}", false};
    }

    // After '[': a group, possibly negated, possibly minus another class; up to its ']'.
    std::string ClassExpression() {
        const bool negated = *m_p == L'^';
        if (negated)
            ++m_p;
        std::string members;
        std::vector<std::string> complements;
        std::string subtracted;
        bool first = true;
        for (;;) {
            const wchar_t c = *m_p;
            if (!c)
                throw BadPattern{L"missing ']'"};
            if (c == L']' && !first)
                break;
            if (c == L'-' && m_p[1] == L'[' && !first) {
                m_p += 2;
                subtracted = ClassExpression();
                if (*m_p != L']')
                    throw BadPattern{L"subtraction must end the class"};
                break;
            }
            if (c == L'[')
                throw BadPattern{L"unescaped '[' in a class"};
            ClassItem(members, complements);
            first = false;
        }
        ++m_p;
        return Assemble(negated, members, complements, subtracted);
    }

    void ClassItem(std::string& members, std::vector<std::string>& complements) {
        unsigned from;
        if (*m_p == L'\\') {
            ++m_p;
            CharSet set;
            if (!Escape(from, set)) {
                if (set.complement)
                    complements.push_back(set.members);
                else
                    members += set.members;
                return;
            }
        } else {
            from = static_cast<unsigned>(*m_p++);
        }
        // A '-' that is not followed by ']' or '[' makes a range.
        if (*m_p == L'-' && m_p[1] != L']' && m_p[1] != L'[' && m_p[1]) {
            ++m_p;
            unsigned to;
            if (*m_p == L'\\') {
                ++m_p;
                CharSet set;
                if (!Escape(to, set))
                    throw BadPattern{L"range ends in a class escape"};
            } else {
                to = static_cast<unsigned>(*m_p++);
            }
            if (to < from)
                throw BadPattern{L"range out of order"};
            members += Literal(from) + "-" + Literal(to);
            return;
        }
        members += Literal(from);
    }

    // [members] alone when possible; otherwise a union of alternatives, each one character
    // wide, with negation and subtraction as lookaheads.
    static std::string Assemble(bool negated, const std::string& members,
                                const std::vector<std::string>& complements,
                                const std::string& subtracted) {
        std::string core;
        if (complements.empty()) {
            if (members.empty())
                core = negated ? "(?s:.)" : "(?!)";
            else
                core = (negated ? "[^" : "[") + members + "]";
        } else {
            std::string alternatives = members.empty() ? std::string() : "[" + members + "]";
            for (const std::string& complement : complements)
                alternatives += (alternatives.empty() ? "[^" : "|[^") + complement + "]";
            core = negated ? "(?!" + alternatives + ")(?s:.)" : "(?:" + alternatives + ")";
        }
        if (subtracted.empty())
            return core;
        return "(?:(?!" + subtracted + ")" + core + ")";
    }

    const wchar_t* m_p;
};

std::wstring PcreError(int code) {
    PCRE2_UCHAR buffer[256];
    if (pcre2_get_error_message(code, buffer, sizeof buffer) < 0)
        return L"unknown error";
    const char* text = reinterpret_cast<const char*>(buffer);
    return std::wstring(text, text + std::char_traits<char>::length(text));
}

[[noreturn]] void ThrowBadPattern(const std::wstring& pattern, const std::wstring& reason) {
    throw CQvException(FormatString(msg::kInvalidRegexFmt, pattern.c_str(), reason.c_str()));
}

std::string Utf8(const std::wstring& text, bool& complete) {
    const unsigned long size = UnicodeToUTF8(text.data(), text.size(), nullptr, 0);
    std::string out(size, '\0');
    const unsigned long written =
        UnicodeToUTF8(text.data(), text.size(), reinterpret_cast<unsigned char*>(out.data()), size);
    complete = (size > 0 || text.empty()) && written == size;
    return out;
}

struct CodeDeleter {
    void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};

struct MatchContextDeleter {
    void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
};

struct MatchDataDeleter {
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};

using CompiledPattern = std::shared_ptr<pcre2_code>;

// Compiled patterns shared by every thread; a compiled pattern is read-only, so only the
// map needs the lock.
class PatternCache {
public:
    CompiledPattern Get(const std::wstring& pattern) {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            const auto it = m_patterns.find(pattern);
            if (it != m_patterns.end())
                return it->second;
        }
        CompiledPattern compiled = Compile(pattern);
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_patterns.size() >= kCacheLimit)
            m_patterns.clear(); // facets are few; this only bounds pathological callers
        return m_patterns.emplace(pattern, compiled).first->second;
    }

private:
    static CompiledPattern Compile(const std::wstring& pattern) {
        std::string translated;
        try {
            translated = TranslateXsdPattern(pattern);
        } catch (const BadPattern& bad) {
            ThrowBadPattern(pattern, bad.reason);
        }
        int error = 0;
        PCRE2_SIZE offset = 0;
        pcre2_code* code =
            pcre2_compile(reinterpret_cast<PCRE2_SPTR>(translated.c_str()), translated.size(),
                          PCRE2_UTF | PCRE2_DOLLAR_ENDONLY, &error, &offset, nullptr);
        if (!code)
            ThrowBadPattern(pattern, PcreError(error));
        pcre2_jit_compile(code, PCRE2_JIT_COMPLETE); // falls back to the interpreter
        return CompiledPattern(code, CodeDeleter());
    }

    std::mutex m_mutex;
    std::unordered_map<std::wstring, CompiledPattern> m_patterns;
};

PatternCache& Cache() {
    static PatternCache cache;
    return cache;
}

} // namespace

std::string TranslateXsdPattern(const std::wstring& pattern) {
    try {
        return Translator(pattern).Run();
    } catch (const BadPattern& bad) {
        ThrowBadPattern(pattern, bad.reason);
    }
}

bool MatchXsdPattern(const std::wstring& pattern, const std::wstring& value) {
    const CompiledPattern code = Cache().Get(pattern);
    bool complete = false;
    const std::string subject = Utf8(value, complete);
    if (!complete)
        return false; // a lone surrogate: no pattern can match it
    thread_local std::unique_ptr<pcre2_match_context, MatchContextDeleter> context([] {
        pcre2_match_context* c = pcre2_match_context_create(nullptr);
        pcre2_set_match_limit(c, kMatchLimit);
        pcre2_set_depth_limit(c, kDepthLimit);
        return c;
    }());
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code.get(), nullptr));
    const int rc = pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(subject.data()),
                               subject.size(), 0, 0, data.get(), context.get());
    if (rc == PCRE2_ERROR_NOMATCH)
        return false;
    if (rc < 0)
        ThrowBadPattern(pattern, PcreError(rc));
    return pcre2_get_ovector_pointer(data.get())[0] == 0;
}

} // namespace QvXmlLib16::detail
